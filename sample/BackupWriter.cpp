#include "sample/BackupWriter.h"

#include "sample/Database.h"
#include "sample/PropertyList.h"
#include "sample/SampleDates.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QtEndian>

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

//! What the index holds of a file, be it a database or not.
struct IndexedFile
{
    QString domain;
    QString path;
    quint32 mode = kFileMode;
    qint64 sizeBytes = 0;
    FileTraits traits;
    QByteArray encryptionKey;
};

QByteArray record(const IndexedFile &indexed)
{
    const auto &[domain, path, mode, sizeBytes, traits, encryptionKey] = indexed;
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
    if (!encryptionKey.isEmpty()) {
        const auto at = static_cast<quint64>(objects.size());
        file.insert(u"EncryptionKey"_s, QVariant::fromValue(PlistUid { at }));
        objects.append(QVariantMap { { u"NS.data"_s, encryptionKey },
                                     { u"$class"_s, QVariant::fromValue(PlistUid { at + 1 }) } });
        objects.append(QVariantMap {
            { u"$classes"_s, QStringList { u"NSMutableData"_s, u"NSData"_s, u"NSObject"_s } },
            { u"$classname"_s, u"NSMutableData"_s } });
    }
    objects[1] = file;
    return binaryPropertyList(QVariantMap {
        { u"$version"_s, 100000 },
        { u"$archiver"_s, u"NSKeyedArchiver"_s },
        { u"$top"_s, QVariantMap { { u"root"_s, QVariant::fromValue(PlistUid { 1 }) } } },
        { u"$objects"_s, objects },
    });
}

template <class Number>
QByteArray bigEndian(Number value)
{
    QByteArray bytes(sizeof value, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

//! Bytes with their length in front; none are absent.
QByteArray counted(const QByteArray &bytes)
{
    return bytes.isEmpty() ? bigEndian(quint16(0xFFFF))
                           : bigEndian(static_cast<quint16>(bytes.size())) + bytes;
}

//! The same as a record of Manifest.mbdb.
QByteArray oldRecord(const IndexedFile &file)
{
    const QDateTime modified =
        file.traits.modified.isValid() ? file.traits.modified : sampleStart();
    const auto seconds = static_cast<quint32>(modified.toSecsSinceEpoch());
    const QByteArray path = file.path.toUtf8();
    QByteArray bytes = counted(file.domain.toUtf8())
        + (path.isEmpty() ? bigEndian(quint16(0)) : counted(path)) + counted({}) + counted({})
        + counted(file.encryptionKey) + bigEndian(static_cast<quint16>(file.mode))
        + bigEndian(quint64 { inodeNumber(file.path) }) + bigEndian(quint32(501))
        + bigEndian(quint32(501)) + bigEndian(seconds) + bigEndian(seconds) + bigEndian(seconds)
        + bigEndian(static_cast<quint64>(file.sizeBytes))
        + bigEndian(static_cast<quint8>(file.traits.protectionClass))
        + bigEndian(static_cast<quint8>(file.traits.extendedAttributes.size()));
    const QMap<QString, QByteArray> &attributes = file.traits.extendedAttributes;
    for (auto it = attributes.cbegin(); it != attributes.cend(); ++it)
        bytes += counted(it.key().toUtf8()) + counted(it.value());
    return bytes;
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

    QString indexPath() const;
    bool begin();
    void fail(const QString &path, const QString &reason);
    bool makeFolder(const QString &path);
    QString contentPath(const QString &id);
    void insertRow(const QString &id,
                   const QString &domain,
                   const QString &path,
                   int flags,
                   const QByteArray &blob);
    void insertFile(const IndexedFile &file, int flags);
    void insertFolders(const QString &domain, const QString &path);
    QByteArray keyOf(const QString &id, const FileTraits &traits) const;
    void finishIndex();
    void describeEncryption();
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
    QByteArray records; //!< The old index; a database has none.
    std::optional<Encryption> encryption;
    bool begun = false;
    QSet<quint64> folders; //!< The folders that the index has, by shortId().
    std::bitset<256> prefixesMade;
    qint64 rowCount = 0;
    qint64 fileCount = 0;
    qint64 contentSizeBytes = 0;
};

QString BackupWriter::Private::indexPath() const
{
    return root + (layout == Layout::Records ? "/Manifest.mbdb"_L1 : "/Manifest.db"_L1);
}

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
    if (begun || !error.isEmpty())
        return error.isEmpty();
    if (!makeFolder(root))
        return false;
    const QString path = indexPath();
    begun = true;
    if (QFile::exists(path)) {
        fail(path, u"there is a backup already"_s);
        return false;
    }
    if (layout == Layout::Records) {
        records = QByteArray("mbdb\5\0", 6);
        return true;
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
    if (layout != Layout::TwoLevel)
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
    if (layout == Layout::Records)
        records += blob;
    else
        insert->run({ id, domain, path, flags, blob });
    ++rowCount;
}

void BackupWriter::Private::insertFile(const IndexedFile &file, int flags)
{
    insertRow(fileId(file.domain, file.path),
              file.domain,
              file.path,
              flags,
              layout == Layout::Records ? oldRecord(file) : record(file));
}

//! The key of a content; empty when it stays plain.
QByteArray BackupWriter::Private::keyOf(const QString &id, const FileTraits &traits) const
{
    return encryption && traits.hasKey ? Encryption::keyFor(id) : QByteArray();
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
        insertFile({ domain, added.path, kFolderMode, 0, traits, {} }, kFolderFlag);
    }
}

void BackupWriter::Private::finishIndex()
{
    const QString path = indexPath();
    if (layout == Layout::Records) {
        const QString failure = writeWhole(path, records);
        if (!failure.isEmpty())
            fail(path, failure);
        return;
    }
    // Filled first and sorted once, an index costs a fraction of one that grows row by row.
    index->execute("CREATE INDEX FilesDomainIdx ON Files(domain);"
                   "CREATE INDEX FilesRelativePathIdx ON Files(relativePath);"
                   "CREATE INDEX FilesFlagsIdx ON Files(flags);");
    if (!index->finish())
        fail(path, index->error());
}

void BackupWriter::Private::describeEncryption()
{
    const auto describe = [this](const QString &key, const QVariant &value) {
        if (!manifest.contains(key))
            manifest.insert(key, value);
    };
    describe(u"BackupKeyBag"_s, encryption->keybag());
    if (layout == Layout::Records || !encryption->settings().encryptIndex)
        return;
    constexpr int kIndexClass = 4;
    const QByteArray key = Encryption::keyFor(u"index"_s);
    describe(u"ManifestKey"_s, encryption->wrapped(key, kIndexClass));
    const QString failure = Encryption::encryptFile(indexPath(), key);
    if (!failure.isEmpty())
        fail(indexPath(), failure);
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
        const QByteArray key = m_d->keyOf(fileId(domain, path), traits);
        const QString failure =
            writeWhole(place, key.isEmpty() ? content : Encryption::encrypted(content, key));
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
    const qint64 sizeBytes = info.size();
    const QByteArray key = m_d->keyOf(fileId(domain, path), traits);
    const QString failure = key.isEmpty() ? QString() : Encryption::encryptFile(place, key);
    if (!failure.isEmpty())
        m_d->fail(place, failure);
    m_d->countContent(sizeBytes);
    return addWithoutContent(domain, path, sizeBytes, traits);
}

QString BackupWriter::addWithoutContent(const QString &domain,
                                        const QString &path,
                                        qint64 sizeBytes,
                                        const FileTraits &traits)
{
    QString id = fileId(domain, path);
    if (m_d->begin()) {
        m_d->insertFolders(domain, path);
        const QByteArray key = m_d->keyOf(id, traits);
        const QByteArray wrapped =
            key.isEmpty() ? key : m_d->encryption->wrapped(key, traits.protectionClass);
        m_d->insertFile({ domain, path, kFileMode, sizeBytes, traits, wrapped }, kFileFlag);
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

void BackupWriter::setEncryption(const Encryption::Settings &settings)
{
    m_d->encryption.emplace(settings);
    m_d->manifest[u"IsEncrypted"_s] = true;
}

bool BackupWriter::finish()
{
    if (!m_d->begin())
        return false;
    m_d->finishIndex();
    if (m_d->encryption)
        m_d->describeEncryption();
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
    return record({ {}, path, kFileMode, sizeBytes, traits, {} });
}

} // namespace Sample
