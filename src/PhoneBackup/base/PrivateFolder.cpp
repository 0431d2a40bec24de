#include "PhoneBackup/base/PrivateFolder.h"

#include "PhoneBackup/base/FolderReader.h"
#include "PhoneBackup/base/OpenFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <sys/file.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kChunk = 262144;
constexpr QLatin1StringView kPrefix = "dataexport-private-"_L1;
constexpr int kRandomLetters = 6;

// QDir knows none that is not there: a message is to name it.
QString temporaryPlace()
{
    const QString place = QDir::tempPath();
    return place.isEmpty() ? qEnvironmentVariable("TMPDIR") : place;
}

bool liesIn(const QString &path, const QString &folder)
{
    const QString inner = QDir(path).canonicalPath() + u'/';
    const QString outer = QDir(folder).canonicalPath() + u'/';
    return !folder.isEmpty() && inner.startsWith(outer);
}

Error notMade(const QString &path, const Notice &why, int systemError = 0)
{
    return Error {
        Fault::TemporaryFolder, path, Notice("temporary.notMade", { path, why }), systemError
    };
}

// What is written of a copy besides its bytes: the index that SQLite makes of a log, and blocks
// that are not filled.
qint64 withMargin(qint64 bytes)
{
    constexpr qint64 kSmall = qint64(128) * 1024;
    return bytes + bytes / 256 + kSmall;
}

// No error when the room cannot be told.
std::optional<Error> roomError(qint64 bytes)
{
    const QString place = temporaryPlace();
    struct statvfs disk
    {
    };
    if (bytes == 0 || ::statvfs(QFile::encodeName(place).constData(), &disk) != 0
        || disk.f_blocks == 0)
        return std::nullopt;
    const qint64 needed = withMargin(bytes);
    const auto free = qint64(std::min<quint64>(quint64(disk.f_bavail) * disk.f_frsize,
                                               std::numeric_limits<qint64>::max()));
    if (free >= needed)
        return std::nullopt;
    return Error { Fault::TemporaryFolder,
                   place,
                   Notice("temporary.tooSmall",
                          { place, Notice::Bytes { needed }, Notice::Bytes { free } }),
                   ENOSPC };
}

bool writeAll(int descriptor, const char *data, qint64 size)
{
    while (size > 0) {
        const ssize_t count = ::write(descriptor, data, std::size_t(size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        data += count;
        size -= count;
    }
    return true;
}

// The lock of a folder, which ends with the program that holds it, however it ends.
class FolderLock
{
public:
    explicit FolderLock(const QString &path)
        : m_descriptor(::open(QFile::encodeName(path).constData(),
                              O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC))
        , m_held(m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0)
    {
    }
    ~FolderLock()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

    bool isHeld() const { return m_held; }

private:
    int m_descriptor;
    bool m_held;
};

bool isPrivate(const QByteArray &name, const struct stat &status)
{
    constexpr mode_t kRights = 07777;
    return name.size() == kPrefix.size() + kRandomLetters && name.startsWith(kPrefix.data())
        && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid()
        && (status.st_mode & kRights) == S_IRWXU;
}

} // namespace

class PrivateFolder::Folder
{
public:
    explicit Folder(const QString &place)
        : m_dir(place + u'/' + kPrefix + QString(kRandomLetters, u'X'))
        , m_systemError(m_dir.isValid() ? 0 : errno)
        , m_lock(m_dir.path())
    {
    }

    bool isValid() const { return m_dir.isValid(); }
    int systemError() const { return m_systemError; }
    QString path() const { return m_dir.path(); }

    // Another run may have taken it for a leftover before it was locked.
    bool isOurs() const { return m_lock.isHeld() && QFileInfo::exists(m_dir.path()); }

private:
    QTemporaryDir m_dir;
    int m_systemError;
    FolderLock m_lock;
};

PrivateFolder::PrivateFolder(const QString &forbidden)
    : m_forbidden(forbidden)
{
}

PrivateFolder::~PrivateFolder() = default;

void PrivateFolder::removeLeftovers()
{
    const QString place = temporaryPlace();
    FolderReader folder(place);
    struct stat status
    {
    };
    for (QByteArray name = folder.next(); !name.isEmpty(); name = folder.next()) {
        if (!name.startsWith(kPrefix.data()) || !folder.status(name, status)
            || !isPrivate(name, status))
            continue;
        const QString path = place + u'/' + QFile::decodeName(name);
        const FolderLock lock(path);
        if (lock.isHeld())
            QDir(path).removeRecursively();
    }
}

Error PrivateFolder::writeError(int systemError)
{
    const QString place = temporaryPlace();
    return Error { Fault::TemporaryFolder,
                   place,
                   Notice("temporary.notWritten", { place, qt_error_string(systemError) }),
                   systemError };
}

Result<QString> PrivateFolder::newSubFolder(qint64 bytes)
{
    if (const auto error = roomError(bytes))
        return *error;
    const Result<> made = make();
    if (!made)
        return made.error();
    const QString path = m_folder->path() + u'/' + QString::number(++m_count);
    if (::mkdir(QFile::encodeName(path).constData(), S_IRWXU) != 0)
        return notMade(m_folder->path(), Notice(qt_error_string(errno)), errno);
    return path;
}

Result<> PrivateFolder::make()
{
    constexpr int kAttempts = 10;
    const QString place = temporaryPlace();
    if (!m_folder && liesIn(place, m_forbidden))
        return notMade(place, Notice("temporary.inBackup"));
    // QTemporaryDir would make it, and leave it behind.
    if (!QFileInfo(place).isDir())
        return notMade(place, Notice(qt_error_string(ENOENT)), ENOENT);
    for (int attempt = 0; !m_folder; ++attempt) {
        auto folder = std::make_unique<Folder>(place);
        if (!folder->isValid())
            return notMade(
                place, Notice(qt_error_string(folder->systemError())), folder->systemError());
        if (folder->isOurs())
            m_folder = std::move(folder);
        else if (attempt == kAttempts)
            return notMade(place, Notice("temporary.notLocked"));
    }
    return Done {};
}

Result<> PrivateFolder::copy(const QString &source, const QString &name, const QString &target)
{
    QFile from(source);
    Notice why;
    if (!openForReading(from, &why))
        return Error { Fault::Io, source, Notice("base.unreadable", { name, why }) };
    return copy(from, name, target, {});
}

Result<> PrivateFolder::copy(QIODevice &source,
                             const QString &name,
                             const QString &target,
                             const KeepGoing &keepGoing)
{
    QFile to(target);
    if (!to.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                 QFile::ReadOwner | QFile::WriteOwner))
        return writeError(errno);
    const auto failed = [&to](const Error &error) {
        to.remove();
        return error;
    };
    QByteArray chunk(kChunk, Qt::Uninitialized);
    for (;;) {
        const qint64 count = source.read(chunk.data(), chunk.size());
        if (count < 0) {
            return failed(
                { Fault::Io, name, Notice("base.unreadable", { name, source.errorString() }) });
        }
        if (count == 0)
            return Done {};
        if (!writeAll(to.handle(), chunk.constData(), count))
            return failed(writeError(errno));
        if (keepGoing && !keepGoing())
            return failed({ Fault::Cancelled, name, Notice("base.stopped") });
    }
}

} // namespace PhoneBackup
