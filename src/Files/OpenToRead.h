#ifndef FILES_OPENTOREAD_H
#define FILES_OPENTOREAD_H

#include <QFile>
#include <QString>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/*!
    \brief How files are opened that must stay as they are, their access times included.

    All of it is in the header: library and reader share no library that has it.
*/
namespace Files {

//! No error of the system says that a thing may be opened but is a folder, a pipe or a device.
inline constexpr int kNotRegular = -1;

struct Opened
{
    int descriptor = -1; //!< Whoever asked for it closes it.
    int error = 0; //!< Without a descriptor: the system's error number, or kNotRegular.
    qint64 sizeBytes = 0;
};

//! Opens the regular file \a path; its access time stays where the system grants that.
inline Opened openToRead(const QString &path)
{
    const QByteArray native = QFile::encodeName(path);
    // Without O_NONBLOCK a pipe would wait here for somebody to write into it.
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;
    int descriptor = ::open(native.constData(), kFlags | O_NOATIME);
    if (descriptor < 0 && errno == EPERM) // only the file's owner may ask for O_NOATIME
        descriptor = ::open(native.constData(), kFlags);
    if (descriptor < 0)
        return { -1, errno, 0 };
    struct stat status
    {
    };
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        return { descriptor, 0, status.st_size };
    ::close(descriptor);
    return { -1, kNotRegular, 0 };
}

} // namespace Files

#endif
