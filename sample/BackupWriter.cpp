#include "sample/BackupWriter.h"

#include "sample/Database.h"
#include "sample/PropertyList.h"
#include "sample/SampleDates.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <bitset>
#include <optional>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFileFlag = 1;
constexpr int kFolderFlag = 2;
constexpr quint32 kFileMode = 0100644;
constexpr quint32 kFolderMode = 040755;

// On the phone an arbitrary number; here one that every run finds again.
quint32 inodeNumber(const QString &path)
{
    quint32 hash = 2166136261U;
    const QByteArray bytes = path.toUtf8();
    for (const char byte : bytes)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
    return hash >> 4;
}

// Enough of an identifier to tell folders apart, at a tenth of its memory.
quint64 shortId(const QString &id)
{
    return id.first(16).toULongLong(nullptr, 16);
}

QByteArray record(const QString &path, quint32 mode, qint64 sizeBytes, const FileTraits &traits)
{
    const QDateTime modified = traits.modified.isValid() ? traits.modified : sampleStart();
    const qint64 seconds = modified.toSecsSinceEpoch();

    QVariantMap file {
        { u"$class"_s, QVariant::fromValue(PlistUid { 3 }) },
        { u"RelativePath"_s, QVariant::fromValue(PlistUid { 2 }) },
        { u"Mode"_s, mode },
        { u"Size"_s, sizeBytes },
        { u"LastModified"_s, seconds },
        { u"LastStatusChange"_s, seconds },
        { u"Birth"_s, seconds },
        { u"UserID"_s, 501 },
        { u"GroupID"_s, 501 },
        { u"InodeNumber"_s, inodeNumber(path) },
        { u"Flags"_s, 0 },
        { u"ProtectionClass"_s, traits.protectionClass },
    };
    QVariantList objects {
        u"$null"_s,
        QVariant(),
        path,
        QVariantMap { { u"$classes"_s, QStringList { u"MBFile"_s, u"NSObject"_s } },
                      { u"$classname"_s, u"MBFile"_s } },
    };
    if (!traits.extendedAttributes.isEmpty()) {
        QVariantMap attributes;
        for (auto it = traits.extendedAttributes.cbegin(); it != traits.extendedAttributes.cend();
             ++it)
            attributes.insert(it.key(), it.value());
        file.insert(u"ExtendedAttributes"_s,
                    QVariant::fromValue(PlistUid { static_cast<quint64>(objects.size()) }));
        objects.append(binaryPropertyList(attributes));
    }
    objects[1] = file;
    return binaryPropertyList(QVariantMap {
        { u"$version"_s, 100000 },
        { u"$archiver"_s, u"NSKeyedArchiver"_s },
        { u"$top"_s, QVariantMap { { u"root"_s, QVariant::fromValue(PlistUid { 1 }) } } },
        { u"$objects"_s, objects },
    });
}

//! \return what failed, nothing when all of \a content is on disk.
QString writeWhole(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return file.errorString();
    // A device that fills up takes a part and sees no error in that.
    if (file.write(content) != content.size())
        return u"it could not be written whole; is the disk full?"_s;
    return QString();
}

QVariantMap lockdownInfo()
{
    return {
        { u"DeviceName"_s, u"Sample Phone"_s },
        { u"ProductType"_s, u"iPhone12,1"_s },
        { u"ProductVersion"_s, u"14.3"_s },
        { u"BuildVersion"_s, u"18C66"_s },
        { u"SerialNumber"_s, u"SAMPLE000001"_s },
        { u"UniqueDeviceID"_s, u"00008030-000000000000001a"_s },
    };
}

} // namespace

class BackupWriter::Private
{
public:
    Private(const QString &rootPath, Layout rootLayout)
        : root(rootPath)
        , layout(rootLayout)
    {
    }

    bool begin();
    void fail(const QString &path, const QString &reason);
    bool makeFolder(const QString &path);
    QString contentPath(const QString &id);
    void insertRow(const QString &id,
                   const QString &domain,
                   const QString &path,
                   int flags,
                   const QByteArray &blob);
    void insertFolders(const QString &domain, const QString &path);
    void countContent(qint64 sizeBytes);
    void writePropertyList(const QString &name, const QByteArray &content);

    const QString root;
    const Layout layout;
    QVariantMap info;
    QVariantMap manifest;
    QVariantMap status;
    QString error;
    std::optional<Database> index;
    std::optional<Statement> insert;
    QSet<quint64> folders; //!< The folders that the index has, by shortId().
    std::bitset<256> prefixesMade;
    qint64 rowCount = 0;
    qint64 fileCount = 0;
    qint64 contentSizeBytes = 0;
};

void BackupWriter::Private::fail(const QString &path, const QString &reason)
{
    if (error.isEmpty())
        error = u"%1: %2"_s.arg(QDir::toNativeSeparators(path), reason);
}

bool BackupWriter::Private::makeFolder(const QString &path)
{
    const bool made = QDir().mkpath(path);
    if (!made)
        fail(path, u"the folder cannot be made"_s);
    return made;
}

bool BackupWriter::Private::begin()
{
    if (index || !error.isEmpty())
        return error.isEmpty();
    if (!makeFolder(root))
        return false;
    const QString path = root + "/Manifest.db"_L1;
    if (QFile::exists(path)) {
        fail(path, u"there is a backup already"_s);
        return false;
    }
    index.emplace(path);
    index->execute("PRAGMA user_version=2;"
                   "CREATE TABLE Files (fileID TEXT PRIMARY KEY, domain TEXT, relativePath TEXT, "
                   "flags INTEGER, file BLOB);"
                   "CREATE TABLE Properties (key TEXT PRIMARY KEY, value BLOB);");
    insert.emplace(index->prepare(
        "INSERT INTO Files(fileID, domain, relativePath, flags, file) VALUES (?, ?, ?, ?, ?)"));
    if (!index->error().isEmpty())
        fail(path, index->error());
    return error.isEmpty();
}

QString BackupWriter::Private::contentPath(const QString &id)
{
    if (layout == Layout::Flat)
        return root + u'/' + id;
    const QString folder = root + u'/' + id.first(2);
    const auto prefix = static_cast<size_t>(id.first(2).toUInt(nullptr, 16));
    if (!prefixesMade.test(prefix) && makeFolder(folder))
        prefixesMade.set(prefix);
    return folder + u'/' + id;
}

void BackupWriter::Private::insertRow(const QString &id,
                                      const QString &domain,
                                      const QString &path,
                                      int flags,
                                      const QByteArray &blob)
{
    insert->run({ id, domain, path, flags, blob });
    ++rowCount;
}

void BackupWriter::Private::insertFolders(const QString &domain, const QString &path)
{
    struct Folder
    {
        QString id;
        QString path;
    };
    QList<Folder> missing;
    QString folder = path;
    do {
        folder.truncate(std::max<qsizetype>(0, folder.lastIndexOf(u'/')));
        const QString id = fileId(domain, folder);
        if (folders.contains(shortId(id)))
            break;
        missing.prepend({ id, folder });
    } while (!folder.isEmpty());

    FileTraits traits;
    traits.protectionClass = 0;
    for (const Folder &added : std::as_const(missing)) {
        folders.insert(shortId(added.id));
        insertRow(
            added.id, domain, added.path, kFolderFlag, record(added.path, kFolderMode, 0, traits));
    }
}

void BackupWriter::Private::countContent(qint64 sizeBytes)
{
    ++fileCount;
    contentSizeBytes += sizeBytes;
}

void BackupWriter::Private::writePropertyList(const QString &name, const QByteArray &content)
{
    const QString path = root + u'/' + name;
    const QString failure = writeWhole(path, content);
    if (!failure.isEmpty())
        fail(path, failure);
}

BackupWriter::BackupWriter(const QString &root, Layout layout)
    : m_d(std::make_unique<Private>(root, layout))
{
    const QVariantMap lockdown = lockdownInfo();
    m_d->info = {
        { u"Device Name"_s, lockdown.value(u"DeviceName"_s) },
        { u"Display Name"_s, lockdown.value(u"DeviceName"_s) },
        { u"Product Type"_s, lockdown.value(u"ProductType"_s) },
        { u"Product Name"_s, u"iPhone 11"_s },
        { u"Product Version"_s, lockdown.value(u"ProductVersion"_s) },
        { u"Build Version"_s, lockdown.value(u"BuildVersion"_s) },
        { u"Serial Number"_s, lockdown.value(u"SerialNumber"_s) },
        { u"Unique Identifier"_s, lockdown.value(u"UniqueDeviceID"_s).toString().toUpper() },
        { u"Target Identifier"_s, lockdown.value(u"UniqueDeviceID"_s) },
        { u"Target Type"_s, u"Device"_s },
        { u"GUID"_s, u"5A3B1E0C6D7F48E29B00C1D2E3F40516"_s },
        { u"Phone Number"_s, u"+1 (202) 555-0100"_s },
        { u"Last Backup Date"_s, sampleBackupDate() },
        { u"Installed Applications"_s, QStringList() },
        { u"Applications"_s, QVariantMap() },
    };
    m_d->manifest = {
        { u"IsEncrypted"_s, false },
        { u"Version"_s, u"10.0"_s },
        { u"SystemDomainsVersion"_s, u"24.0"_s },
        { u"Date"_s, sampleBackupDate() },
        { u"WasPasscodeSet"_s, true },
        { u"Lockdown"_s, lockdown },
        { u"Applications"_s, QVariantMap() },
    };
    m_d->status = {
        { u"IsFullBackup"_s, false },
        { u"Version"_s, u"3.3"_s },
        { u"UUID"_s, u"7E2A9C40-5B1D-4F63-8A0E-112233445566"_s },
        { u"Date"_s, sampleBackupDate() },
        { u"BackupState"_s, u"new"_s },
        { u"SnapshotState"_s, u"finished"_s },
    };
}

BackupWriter::~BackupWriter() = default;

namespace {

void setKey(QVariantMap &map, const QString &key, const QVariant &value)
{
    if (value.isValid())
        map.insert(key, value);
    else
        map.remove(key);
}

} // namespace

void BackupWriter::setInfo(const QString &key, const QVariant &value)
{
    setKey(m_d->info, key, value);
}

void BackupWriter::setManifest(const QString &key, const QVariant &value)
{
    setKey(m_d->manifest, key, value);
}

void BackupWriter::setStatus(const QString &key, const QVariant &value)
{
    setKey(m_d->status, key, value);
}

QString BackupWriter::addFile(const QString &domain,
                              const QString &path,
                              const QByteArray &content,
                              const FileTraits &traits)
{
    const QString place = contentPath(domain, path);
    if (!place.isEmpty()) {
        const QString failure = writeWhole(place, content);
        if (!failure.isEmpty())
            m_d->fail(place, failure);
    }
    m_d->countContent(content.size());
    return addWithoutContent(domain, path, content.size(), traits);
}

QString BackupWriter::contentPath(const QString &domain, const QString &path)
{
    return m_d->begin() ? m_d->contentPath(fileId(domain, path)) : QString();
}

QString
BackupWriter::addWritten(const QString &domain, const QString &path, const FileTraits &traits)
{
    const QString place = contentPath(domain, path);
    const QFileInfo info(place);
    if (!place.isEmpty() && !info.isFile())
        m_d->fail(place, u"the content has not been written"_s);
    m_d->countContent(info.size());
    return addWithoutContent(domain, path, info.size(), traits);
}

QString BackupWriter::addWithoutContent(const QString &domain,
                                        const QString &path,
                                        qint64 sizeBytes,
                                        const FileTraits &traits)
{
    QString id = fileId(domain, path);
    if (m_d->begin()) {
        m_d->insertFolders(domain, path);
        m_d->insertRow(id, domain, path, kFileFlag, fileRecord(path, sizeBytes, traits));
    }
    return id;
}

void BackupWriter::addFolder(const QString &domain, const QString &path)
{
    if (m_d->begin())
        m_d->insertFolders(domain, path + "/."_L1);
}

void BackupWriter::addIndexRow(const QString &id,
                               const QString &domain,
                               const QString &path,
                               int flags,
                               const QByteArray &blob)
{
    if (m_d->begin())
        m_d->insertRow(id, domain, path, flags, blob);
}

void BackupWriter::fail(const QString &path, const QString &reason)
{
    m_d->fail(path, reason);
}

bool BackupWriter::finish()
{
    if (!m_d->begin())
        return false;
    // Filled first and sorted once, an index costs a fraction of one that grows row by row.
    m_d->index->execute("CREATE INDEX FilesDomainIdx ON Files(domain);"
                        "CREATE INDEX FilesRelativePathIdx ON Files(relativePath);"
                        "CREATE INDEX FilesFlagsIdx ON Files(flags);");
    if (!m_d->index->finish())
        m_d->fail(m_d->root + "/Manifest.db"_L1, m_d->index->error());
    m_d->writePropertyList(u"Info.plist"_s, xmlPropertyList(m_d->info));
    m_d->writePropertyList(u"Manifest.plist"_s, binaryPropertyList(m_d->manifest));
    m_d->writePropertyList(u"Status.plist"_s, binaryPropertyList(m_d->status));
    return m_d->error.isEmpty();
}

qint64 BackupWriter::rowCount() const
{
    return m_d->rowCount;
}

qint64 BackupWriter::fileCount() const
{
    return m_d->fileCount;
}

qint64 BackupWriter::contentSizeBytes() const
{
    return m_d->contentSizeBytes;
}

QString BackupWriter::error() const
{
    return m_d->error;
}

QString BackupWriter::fileId(const QString &domain, const QString &path)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(domain.toUtf8());
    hash.addData(QByteArrayView("-"));
    hash.addData(path.toUtf8());
    return QString::fromLatin1(hash.result().toHex());
}

QByteArray BackupWriter::fileRecord(const QString &path, qint64 sizeBytes, const FileTraits &traits)
{
    return record(path, kFileMode, sizeBytes, traits);
}

} // namespace Sample
