#include "PhoneBackup/folder/BackupFolder.h"

#include "PhoneBackup/base/FolderReader.h"
#include "PhoneBackup/plist/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// "ab/" and the 40 digits; the flat name is the same from its fourth character on.
using RelativeName = std::array<char, 44>;
constexpr std::size_t kFlatOffset = 3;

RelativeName relativeName(const FileIndex::Id &id)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    RelativeName name {};
    char *digit = name.data() + kFlatOffset;
    for (const uchar byte : id) {
        *digit++ = kDigits[byte >> 4];
        *digit++ = kDigits[byte & 0x0F];
    }
    *digit = '\0';
    name[0] = name[kFlatOffset];
    name[1] = name[kFlatOffset + 1];
    name[2] = '/';
    return name;
}

bool hasLooseFiles(const QString &path)
{
    FolderReader folder(path);
    for (QByteArray name = folder.next(); !name.isEmpty(); name = folder.next()) {
        if (name.endsWith(".mddata") || name.endsWith(".mdinfo"))
            return true;
    }
    return false;
}

QString text(const PropertyList &list, const char *key)
{
    const QVariant value = list.value(key);
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

QString text(const QVariantMap &map, const QString &key)
{
    const QVariant value = map.value(key);
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

QString firstOf(std::initializer_list<QString> candidates)
{
    for (const QString &candidate : candidates) {
        if (!candidate.trimmed().isEmpty())
            return candidate.trimmed();
    }
    return {};
}

} // namespace

// The open folder, so that a look-up of a content file does not walk the whole path again.
struct BackupFolder::Handle
{
    explicit Handle(const QString &path)
        : descriptor(::open(QFile::encodeName(path).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC))
    {
    }
    ~Handle()
    {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    bool status(const char *name, struct stat &status) const
    {
        return ::fstatat(descriptor, name, &status, AT_SYMLINK_NOFOLLOW) == 0;
    }

    // Of a content file in the folder of its first two digits. A folder that is a link leads out of
    // the backup; each is looked at once.
    bool statusInFolder(const RelativeName &name, struct stat &status, bool &link)
    {
        const std::array<char, 3> folderName { name[0], name[1], '\0' };
        const auto number = std::size_t(QByteArray::fromHex(folderName.data()).at(0)) & 0xFF;
        Folder &folder = folders[number];
        if (folder == Folder::Unknown) {
            const bool isThere = this->status(folderName.data(), status);
            folder = isThere && S_ISLNK(status.st_mode) ? Folder::Link : Folder::Usual;
        }
        link = folder == Folder::Link;
        return !link && this->status(name.data(), status);
    }

    enum class Folder : char { Unknown, Usual, Link };

    int descriptor;
    std::array<Folder, 256> folders {};
};

Result<IndexKind> BackupFolder::kindOf(const QString &path)
{
    struct stat status
    {
    };
    const QByteArray native = QFile::encodeName(path);
    if (::stat(native.constData(), &status) != 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return Error { Fault::NotFound, path, Notice("folder.none", { path }) };
        return Error { Fault::Io,
                       path,
                       Notice("base.unreadable", { path, qt_error_string(errno) }) };
    }
    if (!S_ISDIR(status.st_mode)) {
        return Error { Fault::NotABackup, path, Notice("folder.isFile", { path }) };
    }
    if (::faccessat(AT_FDCWD, native.constData(), X_OK, AT_EACCESS) != 0) {
        return Error { Fault::Io,
                       path,
                       Notice("base.unreadable", { path, qt_error_string(errno) }) };
    }
    const QDir dir(path);
    if (dir.exists(u"Manifest.db"_s))
        return IndexKind::Database;
    if (dir.exists(u"Manifest.mbdb"_s))
        return IndexKind::Records;
    if (dir.exists(u"Manifest.mbdx"_s) || hasLooseFiles(path))
        return IndexKind::TooOld;
    if (dir.exists(u"Manifest.plist"_s)
        || (dir.exists(u"Info.plist"_s) && dir.exists(u"Status.plist"_s)))
        return IndexKind::Missing;
    return IndexKind::None;
}

Result<BackupFolder> BackupFolder::open(const QString &path)
{
    const Result<IndexKind> kind = kindOf(path);
    if (!kind)
        return kind.error();
    if (kind.value() == IndexKind::None) {
        return Error { Fault::NotABackup, path, Notice("folder.notABackup", { path }) };
    }
    BackupFolder folder(path);
    if (folder.m_handle->descriptor < 0) {
        return Error { Fault::Io,
                       path,
                       Notice("base.unreadable", { path, qt_error_string(errno) }) };
    }
    folder.m_kind = kind.value();
    folder.readPropertyLists();
    return folder;
}

BackupFolder::BackupFolder(const QString &path)
    : m_handle(std::make_unique<Handle>(path))
{
    m_info.path = QDir(path).absolutePath();
}

BackupFolder::~BackupFolder() = default;
BackupFolder::BackupFolder(BackupFolder &&other) noexcept = default;
BackupFolder &BackupFolder::operator=(BackupFolder &&other) noexcept = default;

void BackupFolder::readPropertyLists()
{
    const QDir dir(m_info.path);
    const auto read = [&](const QString &name, const Notice &consequence) {
        if (isLink(name)) {
            m_remarks.append({ name, linkText(name) + consequence });
            return PropertyList();
        }
        Result<PropertyList> list = PropertyList::read(dir.filePath(name));
        if (list && list.value().isDict())
            return list.take();
        const Notice what = list ? Notice("folder.noDictionary", { name }) : list.error().what;
        m_remarks.append({ name, what + consequence });
        return PropertyList();
    };
    const PropertyList manifest = read(u"Manifest.plist"_s, Notice("folder.encryptionUnknown"));
    const PropertyList info = read(u"Info.plist"_s, Notice("folder.deviceUnknown"));
    const PropertyList status = read(u"Status.plist"_s, Notice("folder.completionUnknown"));
    const QVariantMap lockdown = manifest.value("Lockdown").toMap();

    m_manifestReadable = manifest.isDict();
    m_info.deviceName = firstOf({ text(info, "Device Name"), text(lockdown, u"DeviceName"_s) });
    m_info.displayName =
        firstOf({ text(info, "Display Name"), m_info.deviceName, dir.dirName(), m_info.path });
    m_info.productName = firstOf({ text(info, "Product Name"),
                                   text(info, "Product Type"),
                                   text(lockdown, u"ProductType"_s) });
    m_info.productVersion =
        firstOf({ text(info, "Product Version"), text(lockdown, u"ProductVersion"_s) });
    for (const QVariant &date :
         { info.value("Last Backup Date"), status.value("Date"), manifest.value("Date") }) {
        if (!m_info.date.isValid() && date.typeId() == QMetaType::QDateTime)
            m_info.date = date.toDateTime();
    }
    m_keybag = manifest.value("BackupKeyBag").toByteArray();
    m_indexKey = manifest.value("ManifestKey").toByteArray();
    m_info.encrypted = isEncrypted(manifest.value("IsEncrypted"));
    const QString state = text(status, "SnapshotState");
    m_info.finished = state.isEmpty() || state == "finished"_L1;
}

bool BackupFolder::isEncrypted(const QVariant &flag)
{
    // The keybag tells nothing, plain backups have one. Only encrypted ones have a key of the
    // index.
    const bool isClear = flag.typeId() == QMetaType::Bool || flag.typeId() == QMetaType::LongLong
        || flag.typeId() == QMetaType::ULongLong;
    if (isClear)
        return flag.toBool();
    const bool encrypted = !m_indexKey.isEmpty();
    if (m_manifestReadable) {
        m_remarks.append(
            { u"Manifest.plist"_s,
              Notice(encrypted ? "folder.takenForEncrypted" : "folder.takenForPlain") });
    }
    return encrypted;
}

QString BackupFolder::contentPath(const FileIndex::Id &id) const
{
    const RelativeName name = relativeName(id);
    const char *flat = name.data() + kFlatOffset;
    struct stat status
    {
    };
    bool link = false;
    const bool inFolder = m_handle->statusInFolder(name, status, link);
    link = link || (inFolder && S_ISLNK(status.st_mode));
    if (!inFolder || !S_ISREG(status.st_mode)) {
        if (m_handle->status(flat, status)) {
            if (S_ISREG(status.st_mode))
                return m_info.path + u'/' + QLatin1StringView(flat);
            link = link || S_ISLNK(status.st_mode);
        }
    }
    // What a link points to is no part of the backup.
    return link ? QString() : m_info.path + u'/' + QLatin1StringView(name.data());
}

bool BackupFolder::isLink(const QString &name) const
{
    struct stat status
    {
    };
    return m_handle->status(QFile::encodeName(name).constData(), status) && S_ISLNK(status.st_mode);
}

Notice BackupFolder::linkText(const QString &name)
{
    return Notice("folder.isLink", { name });
}

qint64 BackupFolder::contentSize(const FileIndex::Id &id) const
{
    const RelativeName name = relativeName(id);
    struct stat status
    {
    };
    bool link = false;
    if (m_handle->statusInFolder(name, status, link) && S_ISREG(status.st_mode))
        return status.st_size;
    if (m_handle->status(name.data() + kFlatOffset, status) && S_ISREG(status.st_mode))
        return status.st_size;
    return -1;
}

} // namespace PhoneBackup
