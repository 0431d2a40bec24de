#include "Files/OpenToRead.h"
#include "platform/NativeFile_p.h"
#include "platform/Translation_p.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

// From here on it pays to tell the system that all of a file will be read.
constexpr qint64 kLongFile = 512LL * 1024;

} // namespace

NativeFile::~NativeFile()
{
    close();
}

bool NativeFile::openForReading(const QString &path)
{
    const Files::Opened opened = Files::openToRead(path);
    m_descriptor = opened.descriptor;
    if (m_descriptor < 0) {
        m_error = opened.error;
        return false;
    }
    m_left = opened.sizeBytes;
    if (m_left > kLongFile)
        ::posix_fadvise(m_descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    return true;
}

bool NativeFile::create(const QString &path)
{
    const QByteArray native = QFile::encodeName(path);
    return adopt(::open(native.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
}

bool NativeFile::replace(const QString &path)
{
    const QByteArray native = QFile::encodeName(path);
    constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    if (adopt(::open(native.constData(), kFlags, 0666)))
        return true;
    return m_error == ELOOP && ::unlink(native.constData()) == 0 && create(path);
}

void NativeFile::lock()
{
    ::flock(m_descriptor, LOCK_EX | LOCK_NB);
}

qint64 NativeFile::read(char *buffer, qint64 size)
{
    while (m_left > 0) {
        const ssize_t count = ::read(m_descriptor, buffer, static_cast<std::size_t>(size));
        if (count >= 0) {
            m_left -= count;
            return count;
        }
        if (errno != EINTR) {
            m_error = errno;
            return -1;
        }
    }
    return 0;
}

bool NativeFile::write(const char *data, qint64 size)
{
    while (size > 0) {
        const ssize_t count = ::write(m_descriptor, data, static_cast<std::size_t>(size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            m_error = count < 0 ? errno : ENOSPC;
            return false;
        }
        data += count;
        size -= count;
    }
    return true;
}

bool NativeFile::sync()
{
    if (::fsync(m_descriptor) == 0 || errno == EINVAL || errno == ENOSYS)
        return true;
    m_error = errno;
    return false;
}

void NativeFile::setModified(const QDateTime &date)
{
    const qint64 ms = date.toMSecsSinceEpoch();
    timespec times[2] {};
    times[0].tv_nsec = UTIME_OMIT;
    times[1].tv_sec = ms >= 0 ? ms / 1000 : -((999 - ms) / 1000);
    times[1].tv_nsec = (ms - times[1].tv_sec * 1000) * 1000000;
    ::futimens(m_descriptor, times);
}

bool NativeFile::close()
{
    const int descriptor = release();
    if (descriptor < 0 || ::close(descriptor) == 0)
        return true;
    m_error = errno;
    return false;
}

int NativeFile::release()
{
    return std::exchange(m_descriptor, -1);
}

qint64 NativeFile::sizeBytes(const QString &path)
{
    struct stat status
    {
    };
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_size : 0;
}

QString NativeFile::errorString() const
{
    return m_error == Files::kNotRegular ? DataExport::tr("it is not a regular file")
                                         : qt_error_string(m_error);
}

bool NativeFile::adopt(int descriptor)
{
    m_descriptor = descriptor;
    if (descriptor < 0)
        m_error = errno;
    return descriptor >= 0;
}
