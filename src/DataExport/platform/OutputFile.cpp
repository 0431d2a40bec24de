#include "platform/OutputFile_p.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr QLatin1String kTemporaryStart(".dataexport-");
constexpr QLatin1String kTemporaryEnd(".part");
constexpr QLatin1String kClaimEnd(".claim");
constexpr qsizetype kCopyChunk = qsizetype { 128 } * 1024;

// No other process, and no other file of this one, gets the same.
QString temporaryName(QLatin1String end = kTemporaryEnd)
{
    static const quint64 process = QRandomGenerator::system()->generate64();
    static std::atomic<quint64> count { 0 };
    return kTemporaryStart + QString::number(process, 16).rightJustified(16, QLatin1Char('0'))
        + QLatin1Char('-') + QString::number(++count) + end;
}

bool isTemporaryName(const QString &name)
{
    static const QRegularExpression pattern(
        QStringLiteral("\\A\\.dataexport-[0-9a-f]{16}-[0-9]+\\.(?:part|claim)\\z"));
    return pattern.match(name).hasMatch();
}

// A run that is at work on the file holds a lock on it.
bool isAbandoned(const QByteArray &path)
{
    const int descriptor = ::open(path.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat status
    {
    };
    const bool abandoned = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
        && status.st_uid == ::geteuid() && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    ::close(descriptor);
    return abandoned;
}

// Paths of the files in \a folder with temporary names of that \a end that no run is at work on.
QList<QByteArray> abandoned(const QDir &folder, QLatin1String end)
{
    QList<QByteArray> paths;
    const QStringList names = folder.entryList({ kTemporaryStart + QLatin1Char('*') + end },
                                               QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                                               QDir::Unsorted);
    for (const QString &name : names) {
        const QByteArray path = QFile::encodeName(folder.absoluteFilePath(name));
        if (isTemporaryName(name) && isAbandoned(path))
            paths.append(path);
    }
    return paths;
}

// 0, or the system's error number: EEXIST when something has the name \a to.
int renameToFree(const QByteArray &from, const QByteArray &to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        return errno;
    // A file system without that may know of second names, which never replace a first one.
    if (::link(from.constData(), to.constData()) == 0) {
        ::unlink(from.constData());
        return 0;
    }
    if (errno != EPERM && errno != ENOSYS && errno != ENOTSUP && errno != EMLINK)
        return errno;
    struct stat status
    {
    };
    if (::lstat(to.constData(), &status) == 0)
        return EEXIST;
    return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}

int openFolder(const QString &folder)
{
    return ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

} // namespace

bool OutputFile::open(const QString &path, Way way, Existing existing)
{
    discard();
    m_error = 0;
    m_path = path;
    m_existing = existing;
    if (way == Way::Staged)
        return openStaged();
    if (!(existing == Existing::Replace ? m_file.replace(path) : m_file.create(path)))
        return false;
    m_current = path;
    return true;
}

bool OutputFile::openClaim(const QString &folder)
{
    discard();
    m_error = 0;
    m_path = folder + QLatin1Char('/') + temporaryName(kClaimEnd);
    if (!m_file.create(m_path))
        return false;
    m_current = m_path;
    m_file.lock();
    return true;
}

bool OutputFile::openStaged()
{
    // What can be known of the name is better said before the work than after it.
    struct stat status
    {
    };
    if (::lstat(QFile::encodeName(m_path).constData(), &status) == 0) {
        if (m_existing == Existing::Keep)
            return fail(EEXIST);
        if (S_ISDIR(status.st_mode))
            return fail(EISDIR);
    } else if (errno != ENOENT) {
        return fail(errno);
    }
    const qsizetype folder = m_path.lastIndexOf(QLatin1Char('/')) + 1;
    const QString temporary = m_path.left(folder) + temporaryName();
    if (!m_file.create(temporary))
        return false;
    m_current = temporary;
    m_file.lock();
    return true;
}

bool OutputFile::copyFrom(NativeFile &source)
{
    QByteArray chunk(kCopyChunk, Qt::Uninitialized);
    for (;;) {
        const qint64 count = source.read(chunk.data(), chunk.size());
        if (count <= 0)
            return count == 0;
        if (!write(chunk.constData(), count))
            return false;
    }
}

bool OutputFile::moveTo(const QString &path)
{
    m_path = path;
    if (!m_file.close()) {
        discard();
        return false;
    }
    if (m_current != m_path) {
        const QByteArray from = QFile::encodeName(m_current);
        const QByteArray to = QFile::encodeName(m_path);
        m_error = m_existing == Existing::Keep           ? renameToFree(from, to)
            : ::rename(from.constData(), to.constData()) ? errno
                                                         : 0;
        if (m_error != 0 && m_error != EEXIST)
            discard();
    }
    if (m_error == 0)
        m_current.clear();
    return m_error == 0;
}

void OutputFile::discard()
{
    m_file.close();
    if (isOpen())
        ::unlink(QFile::encodeName(m_current).constData());
    m_current.clear();
}

bool OutputFile::fail(int error)
{
    m_error = error;
    return false;
}

QString OutputFile::errorString() const
{
    return m_error != 0 ? qt_error_string(m_error) : m_file.errorString();
}

void OutputFile::removeLeftovers(const QDir &folder)
{
    for (const QByteArray &path : abandoned(folder, kTemporaryEnd))
        ::unlink(path.constData());
}

bool OutputFile::hasAbandonedClaim(const QDir &folder)
{
    return !abandoned(folder, kClaimEnd).isEmpty();
}

void OutputFile::removeAbandonedClaims(const QDir &folder)
{
    for (const QByteArray &path : abandoned(folder, kClaimEnd))
        ::unlink(path.constData());
}

void OutputFile::syncFolder(const QString &folder)
{
    const int descriptor = openFolder(folder);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

int OutputFile::syncFileSystem(const QString &folder)
{
    const int descriptor = openFolder(folder);
    if (descriptor < 0)
        return errno;
    const int error = ::syncfs(descriptor) == 0 || errno == ENOSYS || errno == EINVAL ? 0 : errno;
    ::close(descriptor);
    return error;
}
