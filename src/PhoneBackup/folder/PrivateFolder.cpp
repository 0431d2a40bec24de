#include "folder/PrivateFolder.h"

#include "folder/FolderReader.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using DataExport::tr;

namespace {

constexpr qint64 kChunk = 262144;
constexpr QLatin1StringView kPrefix = "dataexport-private-"_L1;
constexpr int kRandomLetters = 6;

bool liesIn(const QString &path, const QString &folder)
{
    const QString inner = QDir(path).canonicalPath() + u'/';
    const QString outer = QDir(folder).canonicalPath() + u'/';
    return !folder.isEmpty() && inner.startsWith(outer);
}

Error notMade(const QString &path, const QString &why)
{
    return Error { Fault::Io,
                   path,
                   tr("No temporary folder could be made in “%1”: %2. Set the environment variable "
                      "TMPDIR to a folder with free space.")
                       .arg(path, why) };
}

Error notWritten(const QString &why)
{
    const QString place = QDir::tempPath();
    return Error { Fault::Io,
                   place,
                   tr("The temporary folder “%1” could not be written: %2. Set the environment "
                      "variable TMPDIR to a folder with free space.")
                       .arg(place, why) };
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
        , m_lock(m_dir.path())
    {
    }

    bool isValid() const { return m_dir.isValid(); }
    QString error() const { return m_dir.errorString(); }
    QString path() const { return m_dir.path(); }

    // Another run may have taken it for a leftover before it was locked.
    bool isOurs() const { return m_lock.isHeld() && QFileInfo::exists(m_dir.path()); }

private:
    QTemporaryDir m_dir;
    FolderLock m_lock;
};

PrivateFolder::PrivateFolder(const QString &forbidden)
    : m_forbidden(forbidden)
{
}

PrivateFolder::~PrivateFolder() = default;

void PrivateFolder::removeLeftovers()
{
    const QString place = QDir::tempPath();
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

Result<QString> PrivateFolder::newSubFolder()
{
    const Result<> made = make();
    if (!made)
        return made.error();
    const QString path = m_folder->path() + u'/' + QString::number(++m_count);
    if (!QDir().mkdir(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        return notMade(m_folder->path(), tr("it cannot be written to"));
    return path;
}

Result<std::unique_ptr<QTemporaryFile>> PrivateFolder::newUnnamedFile()
{
    const Result<> made = make();
    if (!made)
        return made.error();
    auto file = std::make_unique<QTemporaryFile>(m_folder->path() + "/XXXXXX"_L1);
    if (!file->open())
        return notWritten(file->errorString());
    return file;
}

Result<> PrivateFolder::make()
{
    constexpr int kAttempts = 10;
    const QString place = QDir::tempPath();
    if (!m_folder && liesIn(place, m_forbidden))
        return notMade(place, tr("it lies in the backup"));
    for (int attempt = 0; !m_folder; ++attempt) {
        auto folder = std::make_unique<Folder>(place);
        if (!folder->isValid())
            return notMade(place, folder->error());
        if (folder->isOurs())
            m_folder = std::move(folder);
        else if (attempt == kAttempts)
            return notMade(place, tr("it cannot be locked"));
    }
    return Done {};
}

Result<> PrivateFolder::copy(const QString &source, const QString &target)
{
    QFile from(source);
    QString why;
    if (!CCommonUtils::openForReading(from, &why))
        return Error { Fault::Io, source, tr("“%1” could not be read: %2.").arg(source, why) };
    return copy(from, source, target, {});
}

Result<> PrivateFolder::copy(QIODevice &source,
                             const QString &name,
                             const QString &target,
                             const KeepGoing &keepGoing)
{
    QFile to(target);
    if (!to.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                 QFile::ReadOwner | QFile::WriteOwner))
        return notWritten(to.errorString());
    Result<> copied = copy(source, name, to, keepGoing);
    if (!copied)
        to.remove();
    return copied;
}

Result<> PrivateFolder::copy(QIODevice &source,
                             const QString &name,
                             QIODevice &target,
                             const KeepGoing &keepGoing)
{
    QByteArray chunk(kChunk, Qt::Uninitialized);
    for (;;) {
        const qint64 count = source.read(chunk.data(), chunk.size());
        if (count < 0) {
            return Error { Fault::Io,
                           name,
                           tr("“%1” could not be read: %2.").arg(name, source.errorString()) };
        }
        if (count == 0)
            return Done {};
        if (target.write(chunk.constData(), count) != count)
            return notWritten(target.errorString());
        if (keepGoing && !keepGoing())
            return Error { Fault::Cancelled, name, tr("Stopped on request.") };
    }
}

} // namespace PhoneBackup
