#ifndef DATAEXPORT_EXPORT_CFILEEXPORTER_H
#define DATAEXPORT_EXPORT_CFILEEXPORTER_H

#include "export/CIDataExporter.h"

#include <QDateTime>
#include <QMap>

class CICopyStep;
class CIProgressCallback;
class QIODevice;

/*!
    \brief Sink: copies files into the data type's folder, one sub-folder a group.

    \par Names
    Made safe with CUtils::safeFileName(), without leading dots, at most 255 bytes, and numbered
    when taken: no file is ever replaced. Folders of groups likewise, but not numbered. Hardened, a
    file gets its name when it is complete.
    \par Cancelling
    The progress callback is asked after every 16384 bytes. A cancelled copy leaves no file and is
    not a failure: it answers true.
    \par Report
    Every file that could not be copied or with which the copy step failed, and every other file.
    \par Memory
    Constant, whatever the size of a file.
*/
class DATAEXPORT_EXPORT CFileExporter : public CIDataExporter
{
public:
    CFileExporter();
    ~CFileExporter() override;

    /*!
        Copies the file \a srcPath under a name made from \a name. \return false when the source
        cannot be read or the target cannot be written; then no target is left.
    */
    bool exportData(const QString &srcPath, const QString &name) override;
    using CIDataExporter::exportData;

    /*!
        Writes what \a source gives up to its end, as exportData() copies a file. \a source is open
        for reading, or the reason why it is not stands in its errorString(), as a sentence; null
        stands for a missing file. A sequential device ends with -1 and no reason of its own.
    */
    bool exportStream(QIODevice *source, const QString &name);

    //! Does nothing: copied files depend on no other. \return true.
    bool exportDepends(const QString &srcPath, const QString &name) override;

    //! Writes \a data as a file. \return whether all bytes were written.
    bool exportDepends(const QByteArray &data, const QString &name) override;

    //! Takes \a outDir as the current folder. \return true.
    bool openExporter(const QDir &outDir) override;

    //! Hardened and \a ok, returns when the disk has what was written. \return true.
    bool closeExporter(bool ok) override;

    //! The callback that is told of copied bytes; null for none. Borrowed.
    void setExportProgress(CIProgressCallback *progress);

    //! Something to do with each file that is copied; null, the default, for nothing. Borrowed.
    void setCopyStep(CICopyStep *step);
    CICopyStep *copyStep() const { return m_copyStep; } //!< As set; null at first.

    //! The date that the files from now on bear; an invalid one leaves them the time of writing.
    void setFileDate(const QDateTime &date);

    /*!
        Goes into the sub-folder of \a group, which is made when needed. \return false when that is
        impossible (a group without a name, a file or, hardened, a link in the way, a folder that is
        gone): the current folder is as it was.
    */
    bool intoSubDir(const QString &group);

    //! Leaves the sub-folder again.
    bool backFromSubDir();

    //! Absolute path in the current folder that the next file called \a name goes to.
    QString makeOutputFileName(const QString &name) const;

    //! Tells the callback of \a bytes more. \return false when the work is to stop.
    bool progressFileCopy(int bytes);

private:
    template <class Source>
    bool writeFile(const QString &name, Source &source);
    bool enterFolder(const QString &path, bool isKnown);
    void tellWritten(const QString &name, const QString &path);
    bool fail(const QString &name, const CIExportReport::Fault &fault);
    QString reportName(const QString &name) const;

    QString m_rootPath; //!< Folder of the data type, absolute.
    QString m_curPath; //!< Folder that files go to now, absolute.
    QMap<QString, QString> m_subDirs; //!< Group to the folder made for it.
    CIProgressCallback *m_progress = nullptr;
    CICopyStep *m_copyStep = nullptr;
    bool m_hasWritten = false;
    QString m_group; //!< Group whose folder is the current one; empty outside of any.
    QDateTime m_fileDate;
};

#endif
