#include "PhoneBackup/base/FolderReader.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace PhoneBackup {

FolderReader::FolderReader(const QString &path)
{
    open(AT_FDCWD, QFile::encodeName(path), 0);
}

FolderReader::FolderReader(const FolderReader &parent, const QByteArray &name)
{
    if (parent.isOpen())
        open(::dirfd(parent.m_dir.get()), name, O_NOFOLLOW);
}

QString FolderReader::error() const
{
    return qt_error_string(m_errno);
}

QByteArray FolderReader::next()
{
    // One thread reads one stream: readdir() is safe then.
    while (const dirent *entry = m_dir ? ::readdir(m_dir.get()) : nullptr) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            return QByteArray(entry->d_name);
    }
    return {};
}

bool FolderReader::status(const QByteArray &name, struct stat &status) const
{
    return m_dir
        && ::fstatat(::dirfd(m_dir.get()), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

void FolderReader::open(int parent, const QByteArray &path, int extraFlags)
{
    const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | extraFlags;
    int descriptor = ::openat(parent, path.constData(), flags | O_NOATIME);
    if (descriptor < 0 && errno == EPERM) // only the owner may ask for it
        descriptor = ::openat(parent, path.constData(), flags);
    if (descriptor >= 0)
        m_dir.reset(::fdopendir(descriptor));
    if (m_dir)
        return;
    m_errno = errno;
    if (descriptor >= 0)
        ::close(descriptor);
}

} // namespace PhoneBackup
