#ifndef DATAEXPORT_PLATFORM_NATIVEFILE_P_H
#define DATAEXPORT_PLATFORM_NATIVEFILE_P_H

#include <QDateTime>
#include <QString>

/*!
    \brief A file by its descriptor, for copying tens of thousands of them: one system call an
    operation, nothing buffered, nothing asked twice.

    After an operation that failed error() tells the system's error number.
*/
class NativeFile
{
public:
    NativeFile() = default;
    ~NativeFile();

    NativeFile(const NativeFile &) = delete;
    NativeFile &operator=(const NativeFile &) = delete;

    //! Opens the regular file \a path and leaves its access time alone where the system grants
    //! that.
    bool openForReading(const QString &path);

    //! Creates \a path; error() is EEXIST when something of that name is there.
    bool create(const QString &path);

    //! Creates \a path or empties the file of that name; a link of that name gives way to the file.
    bool replace(const QString &path);

    //! Marks the open file as one that somebody is at work on, where the file system knows of that.
    void lock();

    //! Up to \a size bytes into \a buffer: their number, 0 at the end, -1 after an error. The end
    //! is where the file ended when it was opened, or where it was cut since.
    qint64 read(char *buffer, qint64 size);

    //! All of the \a size bytes at \a data.
    bool write(const char *data, qint64 size);

    //! Waits until the disk has what was written, where the file system knows of that.
    bool sync();

    //! Sets the time of the last change. A file system without such times is no error.
    void setModified(const QDateTime &date);

    //! Closes the file; false when what was written did not all arrive.
    bool close();

    //! Gives the descriptor away; -1 when closed.
    int release();

    //! Bytes of the file \a path; 0 when there is none.
    static qint64 sizeBytes(const QString &path);

    int error() const { return m_error; }

    //! The text of error(), for a person.
    QString errorString() const;

private:
    bool adopt(int descriptor);

    int m_descriptor = -1;
    int m_error = 0;
    qint64 m_left = 0; //!< Bytes of an open source that are still to be read.
};

#endif
