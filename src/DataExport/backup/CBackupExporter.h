#ifndef DATAEXPORT_BACKUP_CBACKUPEXPORTER_H
#define DATAEXPORT_BACKUP_CBACKUPEXPORTER_H

#include "DataExport_global.h"
#include "export/CIExportReport.h"

#include <QList>
#include <QString>

class BkBackup;
class BkData;
class CICopyStep;
class CIProgressCallback;
class QDir;

// Within the library an export function that a build leaves out is a null pointer, and its data
// types are skipped. Whoever calls one from elsewhere is told by the linker.
#ifdef DataExport_EXPORTS
#define DATAEXPORT_MAY_BE_ABSENT [[gnu::weak]]
#else
#define DATAEXPORT_MAY_BE_ABSENT
#endif

/*!
    \brief The entry of the library: exports a whole backup, one folder per data type.

    \par Order of the data types
    Photos, videos, shared albums, contacts, messages and their attachments, tables, voicemail,
    bookmarks, chats and their attachments, recordings, books, music, note attachments, documents.
    \par Progress
    100 units for each selected item; exportBackup() starts the range and finishes it.
    \par Errors
    A data type that fails loses its folder and the next one goes on; the report tells of it. Only
    a cancellation ends the walk.
    \par Owner
    Everything that is handed in is borrowed.
    \par Thread
    All work is done on the caller's thread.
*/
class DATAEXPORT_EXPORT CBackupExporter
{
public:
    CBackupExporter();
    ~CBackupExporter();

    CBackupExporter(const CBackupExporter &) = delete;
    CBackupExporter &operator=(const CBackupExporter &) = delete;

    //! Whether media files are read through their protection, as a device in DFU mode leaves them.
    void setFromDFU(bool fromDFU);
    bool fromDFU() const; //!< As set; false at first.

    //! Who is told what could not be exported; null (as at first) for nobody.
    void setReport(CIExportReport *report);
    CIExportReport *report() const; //!< As set.

    //! Something to do with each file that is copied; null, the default, for nothing. Borrowed.
    void setCopyStep(CICopyStep *step);
    CICopyStep *copyStep() const; //!< As set.

    /*!
        Whether pages are proof against the text of strangers: encoded wherever it would stand as
        it is, links to well-known schemes only, no scripts, no loads from elsewhere. Line breaks in
        vCard fields of one line become blanks. Off, pages show such text as the backup holds it.
    */
    void setHardened(bool hardened);
    bool isHardened() const; //!< As set; false at first.

    //! Leaves out what would be written as one of \a outputs. None is left out at first; copies
    //! never are.
    void setOmitted(const QList<CIExportReport::Output> &outputs);
    bool isOmitted(CIExportReport::Output output) const; //!< As set.

    /*!
        Exports every non-empty data set of \a backup into its folder in \a dir. \a progress may be
        null. \return true, also after failures or a cancellation.
    */
    bool exportBackup(BkBackup *backup, const QDir &dir, CIProgressCallback *progress);

    /*!
        \name Export functions
        Each exports one data set into the folder \a typeName of \a dir. \a exporter gives the
        settings and the report; null is possible. \return false when the output did not open or a
        step failed: then the folder is gone.
    */
    //!\{
    //! Copies the files of a file data set.
    static bool exportFile(BkData *data,
                           const QDir &dir,
                           const QString &owner,
                           const QString &typeName,
                           CIProgressCallback *progress,
                           CBackupExporter *exporter);
    //! Contacts as a page, as CSV and as vCards.
    DATAEXPORT_MAY_BE_ABSENT static bool exportContact(BkData *data,
                                                       const QDir &dir,
                                                       const QString &owner,
                                                       const QString &typeName,
                                                       CIProgressCallback *progress,
                                                       CBackupExporter *exporter);
    //! Messages as a page and as CSV.
    DATAEXPORT_MAY_BE_ABSENT static bool exportSMS(BkData *data,
                                                   const QDir &dir,
                                                   const QString &owner,
                                                   const QString &typeName,
                                                   CIProgressCallback *progress,
                                                   CBackupExporter *exporter);
    //! A table as a page.
    DATAEXPORT_MAY_BE_ABSENT static bool exportHtml(BkData *data,
                                                    const QDir &dir,
                                                    const QString &owner,
                                                    const QString &typeName,
                                                    CIProgressCallback *progress,
                                                    CBackupExporter *exporter);
    //! Bookmarks, reading list and history as a page.
    DATAEXPORT_MAY_BE_ABSENT static bool exportBookmark(BkData *data,
                                                        const QDir &dir,
                                                        const QString &owner,
                                                        const QString &typeName,
                                                        CIProgressCallback *progress,
                                                        CBackupExporter *exporter);
    //! WhatsApp chats as a page and as CSV.
    DATAEXPORT_MAY_BE_ABSENT static bool exportWhatsapp(BkData *data,
                                                        const QDir &dir,
                                                        const QString &owner,
                                                        const QString &typeName,
                                                        CIProgressCallback *progress,
                                                        CBackupExporter *exporter);
    //!\}

private:
    bool m_fromDFU = false;
    bool m_hardened = false;
    CIExportReport *m_report = nullptr;
    CICopyStep *m_copyStep = nullptr;
    QList<CIExportReport::Output> m_omitted;
};

#endif
