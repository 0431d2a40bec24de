#ifndef DATAEXPORT_PLATFORM_OUTPUTFILE_P_H
#define DATAEXPORT_PLATFORM_OUTPUTFILE_P_H

#include "platform/NativeFile_p.h"

class QDir;

/*!
    \brief A file being written, which is gone again unless it is completed.

    Staged, it gets its name when it is whole: until then it has a temporary one in the same folder,
    so that whatever ends the program leaves an earlier file of that name as it was. Nothing is
    written through a link.

    After an operation that failed error() tells the system's error number.
*/
class OutputFile
{
public:
    enum class Way { Direct, Staged };
    enum class Existing { Keep, Replace };

    OutputFile() = default;
    ~OutputFile() { discard(); }

    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    //! Opens what is to become the file \a path.
    bool open(const QString &path, Way way, Existing existing);

    /*!
        Opens a hidden file that says of what is put into \a folder that it is of no use yet. It is
        for discard(), once that has changed; if it is still there when no run holds it any more,
        its run was killed.
    */
    bool openClaim(const QString &folder);

    //! Whether it is open, or waits for a free name.
    bool isOpen() const { return !m_current.isEmpty(); }

    bool write(const char *data, qint64 size) { return m_file.write(data, size); }

    //! Appends what is left of \a source. \return false when writing failed, or reading: then
    //! \a source has the error.
    bool copyFrom(NativeFile &source);

    bool sync() { return m_file.sync(); }
    void setModified(const QDateTime &date) { m_file.setModified(date); }

    /*!
        Closes the file and gives it its name. When that fails because another file that is to be
        kept has got the name meanwhile (error() is EEXIST), moveTo() may try another one; after any
        other failure the file is gone.
    */
    bool complete() { return moveTo(m_path); }

    //! complete() under the name \a path, in the same folder.
    bool moveTo(const QString &path);

    //! Removes the file. Does nothing when it is completed, or not open.
    void discard();

    //! Where the file is to lie, or lies.
    const QString &path() const { return m_path; }
    int error() const { return m_error != 0 ? m_error : m_file.error(); }
    QString errorString() const;

    //! Removes from \a folder what a run that was killed left there under temporary names.
    static void removeLeftovers(const QDir &folder);

    //! Whether a run that was killed had a claim on \a folder.
    static bool hasAbandonedClaim(const QDir &folder);
    static void removeAbandonedClaims(const QDir &folder);

    //! Waits until the disk has the entries of \a folder.
    static void syncFolder(const QString &folder);

    //! Waits until the disk has all that was written to the file system of \a folder.
    //! \return the system's error number, 0 when all arrived.
    static int syncFileSystem(const QString &folder);

private:
    bool openStaged();
    bool fail(int error);

    NativeFile m_file;
    QString m_path;
    QString
        m_current; // where it lies now; empty when it is not there, or nobody's business any more
    Existing m_existing = Existing::Keep;
    int m_error = 0; // of what is not m_file's
};

#endif
