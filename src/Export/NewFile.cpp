#include "Export/NewFile.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Export {

namespace {

constexpr mode_t kForAll = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;

mode_t currentMask()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mask;
}

} // namespace

NewFile::NewFile(const QString &folder)
    : m_path(QFile::encodeName(folder) + "/.dataexport-XXXXXX.part")
{
    constexpr int kSuffixLength = 5;
    m_descriptor = ::mkostemps(m_path.data(), kSuffixLength, O_CLOEXEC);
    if (m_descriptor < 0) {
        m_error = errno;
        m_path.clear();
        return;
    }
    // A file system without modes leaves all files alike.
    static_cast<void>(::fchmod(m_descriptor, kForAll & ~currentMask()));
}

NewFile::~NewFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    if (!m_path.isEmpty())
        ::unlink(m_path.constData());
}

int NewFile::write(QByteArrayView bytes)
{
    if (m_error == 0)
        m_error = writeAll(m_descriptor, bytes);
    return m_error;
}

int NewFile::moveTo(const QString &path, bool replace)
{
    if (m_error != 0)
        return m_error;
    const QByteArray target = QFile::encodeName(path);
    // A disk may take all bytes and find out only now that it has no room for them.
    const bool isOnDisk =
        ::fsync(m_descriptor) == 0 || errno == EINVAL || errno == EROFS; // pipes, some file systems
    if (!isOnDisk || ::close(std::exchange(m_descriptor, -1)) != 0) {
        m_error = errno;
    } else if (replace) {
        m_error = ::rename(m_path.constData(), target.constData()) == 0 ? 0 : errno;
    } else if (::renameat2(
                   AT_FDCWD, m_path.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE)
               != 0) {
        m_error = errno;
        struct stat there = {};
        // Not every file system knows how to refuse.
        if ((m_error == EINVAL || m_error == ENOSYS) && ::lstat(target.constData(), &there) != 0)
            m_error = ::rename(m_path.constData(), target.constData()) == 0 ? 0 : errno;
    }
    if (m_error == 0)
        m_path.clear();
    return m_error;
}

int writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count =
            ::write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        bytes = bytes.sliced(count);
    }
    return 0;
}

bool isOfWholeDisk(int number)
{
    static constexpr std::array kHopeless { ENOSPC, EDQUOT, EROFS,  EIO,
                                            ENODEV, ENXIO,  ESTALE, ENOTCONN };
    return std::find(kHopeless.begin(), kHopeless.end(), number) != kHopeless.end();
}

QString errorText(int number)
{
    return QString::fromLocal8Bit(std::strerror(number));
}

} // namespace Export
