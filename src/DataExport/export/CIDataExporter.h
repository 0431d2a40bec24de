#ifndef DATAEXPORT_EXPORT_CIDATAEXPORTER_H
#define DATAEXPORT_EXPORT_CIDATAEXPORTER_H

#include "export/CIExportReport.h"

#include <QDir>
#include <QString>
#include <QStringList>

class QByteArray;

/*!
    \brief Sink: where a translator's text, files and images go. Each subclass decides how they land
    on disk.

    \par Order
    Set-up of the subclass, initExporter() or initExporterWithSubDir(), any number of items
    (itemExportBegin(), exportData() and exportDepends(), itemExportEnd()), then finish() exactly
    once, also after a failed initExporter(). One object serves one export.
    \par Results
    All of them: true means success. A sink says nothing in words but to its report.
    \par Owner
    Whoever made it, as a rule the stack of an export function. The report is borrowed.
    \par Thread
    Reentrant, not thread-safe: one object, one thread.
*/
class DATAEXPORT_EXPORT CIDataExporter
{
public:
    //! A sink of \a output, which the report is told of at the end.
    explicit CIDataExporter(CIExportReport::Output output = CIExportReport::Output::Page);
    virtual ~CIDataExporter();

    CIDataExporter(const CIDataExporter &) = delete;
    CIDataExporter &operator=(const CIDataExporter &) = delete;

    //! An item called \a itemName starts. false: the sink does not take it. \return true here.
    virtual bool itemExportBegin(const QString &itemName);

    //! Writes \a text; the file sink copies the file whose path is \a text, as \a name.
    virtual bool exportData(const QString &text, const QString &name) = 0;

    //! Takes the file at \a srcPath, which the output needs (an image), as \a name.
    virtual bool exportDepends(const QString &srcPath, const QString &name) = 0;

    //! The same with the file's bytes.
    virtual bool exportDepends(const QByteArray &data, const QString &name) = 0;

    //! The item ends. \return true here.
    virtual bool itemExportEnd();

    //! Opens the output in the folder \a outDir, which exists.
    virtual bool openExporter(const QDir &outDir) = 0;

    //! Closes the output, also one that never opened; \a ok false discards it.
    virtual bool closeExporter(bool ok) = 0;

    //! Where the output finds the data that exportDepends() took as \a name. \return
    //! "image/" + \a name here.
    virtual QString dependsPath(const QString &name) const;

    //! initExporterWithSubDir() without a sub-folder.
    bool initExporter(const QDir &dir, const QString &name, const QString &folder);

    /*!
        Makes \a folder (the data type's display name) in \a dir, in it \a subDir unless that is
        empty, and opens the output there. \a name is the backup's owner, for titles and file names.
        \return false when the folder lies outside \a dir or cannot be made, when a hardened sink
        finds a link in its place, or the output does not open.
    */
    bool initExporterWithSubDir(const QDir &dir,
                                const QString &name,
                                const QString &folder,
                                const QString &subDir);

    //! The two-argument exportData() with an empty name.
    bool exportData(const QString &text);

    /*!
        Closes the output and tells the report how it ended. With \a ok false it then removes the
        data type's whole folder, whatever else lies in it; a hardened sink removes only what it
        made itself, but for copies and cards that are complete, and discards a page or a table also
        when it was stopped. \return what closing answered.
    */
    bool finish(bool ok);

    //! Tells the report that the output of the data type \a folder is not written at all.
    void skip(const QString &folder);

    //! Not all items come through: whoever walks them was asked to stop. Until finish().
    void setStopped();

    //! Tells \a report (may be null, as at first) of every fault from now on.
    void setReport(CIExportReport *report);

    //! What it writes.
    CIExportReport::Output output() const { return m_output; }

    /*!
        Whether text of strangers is kept from becoming mark-up (false at first): what pages
        otherwise take as it is is encoded, links lead to well-known schemes only, and the page
        forbids scripts and loads from elsewhere. Also whether files get their names when they are
        complete, so that earlier ones survive a run that is not. Set before the output opens.
    */
    void setHardened(bool hardened);
    bool isHardened() const; //!< As set.

    //! Hands a fault with \a itemName to the report, if there is one.
    void reportFailure(const QString &itemName, const CIExportReport::Fault &fault);

    //! Tells the report, if there is one, that \a itemName is completely in the output.
    void reportExported(const QString &itemName);

protected:
    //! The output could not be written to its end, which reportFailure() told.
    void setFailed();

    //! Waits until the disk has all that was written in \a folder; reports what it refuses.
    void syncAll(const QString &folder);

    //! Why openExporter() answers false, in place of a reason in general.
    void setOpenFault(const CIExportReport::Fault &fault);

    QDir m_dir; //!< Target folder of the export.
    QString m_name; //!< The backup's owner.
    QString m_folder; //!< Output folder of the data type, relative to m_dir.

private:
    bool makeFolders(const QString &path);
    bool failToOpen(const CIExportReport::Fault &fault);
    bool failToOpen(const QString &reason);
    void reportEnd(CIExportReport::End end);

    const CIExportReport::Output m_output;
    CIExportReport *m_report = nullptr;
    QString m_typeName; //!< As m_folder, and also when the folder could not be made.
    QStringList m_madeFolders;
    CIExportReport::Fault m_openFault;
    bool m_hardened = false;
    bool m_stopped = false;
    bool m_failed = false;
};

#endif
