#include "PhoneBackup/folder/BackupFiles.h"

#include "PhoneBackup/crypto/DecryptedFile.h"
#include "PhoneBackup/crypto/Keybag.h"
#include "PhoneBackup/folder/ManifestDb.h"
#include "PhoneBackup/folder/ManifestMbdb.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kBlockBytes = 16; // of the cipher
constexpr QByteArrayView kDatabaseMagic("SQLite format 3\0", 16);

// Sizes in the index are those of another moment: a file may have shrunk a little since.
constexpr qint64 kToleratedPart = 8;

// Stands for a content that cannot be had.
class NoContent final : public QIODevice
{
public:
    explicit NoContent(const QString &why) { setErrorString(why); }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }
};

QString notReadable(const QString &why)
{
    return tr("Its file could not be read: %1.").arg(why);
}

} // namespace

Result<std::unique_ptr<BackupFiles>>
BackupFiles::open(const QString &path, const KeepGoing &keepGoing, const Password &password)
{
    PrivateFolder::removeLeftovers();
    Result<BackupFolder> opened = BackupFolder::open(path);
    if (!opened)
        return opened.error();
    if (const auto error = refusal(opened.value()))
        return *error;
    std::unique_ptr<BackupFiles> files(new BackupFiles(opened.take(), keepGoing));
    if (files->folder().info().encrypted) {
        const Result<> unlocked = files->unlock(password);
        if (!unlocked)
            return unlocked.error();
    }
    const Result<> loaded = files->load(password);
    if (!loaded)
        return loaded.error();
    return files;
}

std::optional<Error> BackupFiles::refusal(const BackupFolder &folder)
{
    const QString &path = folder.path();
    switch (folder.kind()) {
    case IndexKind::TooOld:
        return Error {
            Fault::NotSupported,
            path,
            tr("“%1” is a backup of system version 3 or 4, which is too old to be read.").arg(path)
        };
    case IndexKind::Missing:
    case IndexKind::None:
        return Error { Fault::Corrupt,
                       path,
                       tr("The backup “%1” has no index: “Manifest.db” is missing. Copy the whole "
                          "backup folder again from where it was made.")
                           .arg(path) };
    case IndexKind::Records:
    case IndexKind::Database:
        break;
    }
    return std::nullopt;
}

BackupFiles::BackupFiles(BackupFolder folder, const KeepGoing &keepGoing)
    : m_folder(std::move(folder))
    , m_keepGoing(keepGoing)
    , m_private(m_folder.path())
{
}

Result<> BackupFiles::unlock(const Password &password)
{
    if (password.text.isEmpty()) {
        return Error {
            Fault::Encrypted,
            m_folder.path(),
            tr("The backup “%1” is encrypted: its password is needed.").arg(m_folder.path())
        };
    }
    const Keybag bag = Keybag::parse(m_folder.keybag());
    int shown = -1;
    Result<ClassKeys> keys = bag.unlock(password.text, [&](int percent) {
        if (password.progress && percent != shown)
            password.progress(percent);
        shown = percent;
        return !m_keepGoing || m_keepGoing();
    });
    if (!keys) {
        Error error = keys.error();
        error.path = QDir(m_folder.path()).filePath(u"Manifest.plist"_s);
        return error;
    }
    m_keys = keys.take();
    if (bag.isCutOff())
        m_folder.addRemark({ u"Manifest.plist"_s,
                             tr("The keybag is cut off: files whose keys were behind that place "
                                "cannot be decrypted.") });
    return Done {};
}

Result<> BackupFiles::load(const Password &password)
{
    const Result<> opened = openManifest(password);
    if (!opened)
        return opened.error();
    Result<Manifest::Findings> findings = m_manifest->load(m_index, m_keepGoing);
    if (!findings)
        return findings.error();
    m_findings = findings.take();
    return Done {};
}

Result<> BackupFiles::openManifest(const Password &password)
{
    const QDir dir(m_folder.path());
    const bool isDatabase = m_folder.kind() == IndexKind::Database;
    const QString name = isDatabase ? u"Manifest.db"_s : u"Manifest.mbdb"_s;
    DatabaseFiles files { name, dir.filePath(name), {}, {} };

    for (const char *suffix : { "", "-wal", "-journal" }) {
        const QString part = name + QLatin1StringView(suffix);
        if (m_folder.isLink(part))
            return Error { Fault::Io, dir.filePath(part), BackupFolder::linkText(part) };
    }
    // SQLite tells a folder or a forbidden file from a missing one less clearly.
    QFile probe(files.path);
    QString why;
    if (!CCommonUtils::openForReading(probe, &why)) {
        return Error { Fault::Io,
                       files.path,
                       tr("The index “%1” could not be read: %2.").arg(files.path, why) };
    }
    probe.close();
    if (!isDatabase) {
        Result<std::unique_ptr<ManifestMbdb>> manifest = ManifestMbdb::open(files.path);
        if (!manifest)
            return manifest.error();
        m_manifest = manifest.take();
        return Done {};
    }

    if (dir.exists(u"Manifest.db-wal"_s))
        files.walPath = dir.filePath(u"Manifest.db-wal"_s);
    if (dir.exists(u"Manifest.db-journal"_s))
        files.journalPath = dir.filePath(u"Manifest.db-journal"_s);
    const Result<bool> decrypted = m_keys ? decryptManifest(files) : Result<bool>(false);
    if (!decrypted)
        return decrypted.error();
    Result<std::unique_ptr<ManifestDb>> manifest = ManifestDb::open(files, m_private, m_keepGoing);
    if (!manifest) {
        Error error = manifest.error();
        if (error.fault == Fault::Corrupt && !m_folder.isManifestReadable())
            error.what += tr("Or it is encrypted: “Manifest.plist” cannot be read to tell.");
        return error;
    }
    if (m_keys && !decrypted.value())
        manifest.value()->openRecords(password.text);
    m_manifest = manifest.take();
    return Done {};
}

// Whether there was something to decrypt: before system version 10.2 the index is plain.
Result<bool> BackupFiles::decryptManifest(DatabaseFiles &files)
{
    QFile stored(files.path);
    if (!CCommonUtils::openForReading(stored))
        return false;
    if (m_folder.indexKey().isEmpty() || stored.read(kDatabaseMagic.size()) == kDatabaseMagic)
        return false;
    const auto damaged = [&](const Notice &why) {
        return Error { Fault::Corrupt, files.path, Notice("folder.indexEncrypted", { why }) };
    };
    const Result<Secret> key = m_keys->unwrap(m_folder.indexKey());
    if (!key)
        return damaged(key.error().what);
    qint64 bytes = 0;
    for (const QString &path : { files.path, files.walPath, files.journalPath })
        bytes += path.isEmpty() ? 0 : QFileInfo(path).size();
    const Result<QString> place = m_private.newSubFolder(bytes);
    if (!place)
        return place.error();
    const QString target = place.value() + "/copy.db"_L1;
    DecryptedFile plain(files.path, key.value(), {});
    if (!plain.open(QIODevice::ReadOnly))
        return damaged(notReadable(plain.errorString()));
    const Result<> copied = PrivateFolder::copy(plain, files.name, target, m_keepGoing);
    if (!copied)
        return copied.error();
    QFile result(target);
    if (!CCommonUtils::openForReading(result)
        || result.read(kDatabaseMagic.size()) != kDatabaseMagic)
        return damaged(tr("It is damaged."));
    // A log beside it is of the computer's making, and not encrypted.
    for (const auto &[companion, suffix] :
         { std::pair(&files.walPath, "-wal"_L1), std::pair(&files.journalPath, "-journal"_L1) }) {
        if (companion->isEmpty())
            continue;
        const Result<> beside =
            PrivateFolder::copy(*companion, files.name + suffix, target + suffix);
        if (!beside)
            return beside.error();
        *companion = target + suffix;
    }
    files.path = target;
    files.isPrivate = true;
    return true;
}

QList<BackupFiles::Remark> BackupFiles::takeRemarks()
{
    return std::exchange(m_remarks, {});
}

void BackupFiles::addRemark(Row row, const Notice &what, bool loss, Fault fault)
{
    if (m_remarked.contains(row))
        return;
    m_remarked.insert(row);
    m_remarks.append({ row, what, loss, fault });
}

void BackupFiles::addRemark(Row row, const Error &error)
{
    if (m_remarked.contains(row))
        return;
    m_remarked.insert(row);
    m_remarks.append({ row, error.what, true, error.fault, error.systemError });
}

qint64 BackupFiles::contentSize(Row row)
{
    const qint64 stored = std::max<qint64>(m_folder.contentSize(m_index.id(row)), 0);
    if (!m_keys || stored == 0)
        return stored;
    // The padding takes 1 to 16 bytes; which of them, only a record that is not stale can tell.
    const qint64 recorded = record(row).sizeBytes;
    return recorded >= stored - kBlockBytes && recorded < stored ? recorded : stored;
}

Result<Secret> BackupFiles::keyOf(Row row)
{
    const FileRecord file = record(row);
    if (!file.encryptionKey.isEmpty())
        return m_keys->unwrap(file.encryptionKey);
    if (file.isSet())
        return Secret();
    return Error { Fault::Corrupt,
                   place(row),
                   tr("It cannot be decrypted: what the index records of it is damaged.") };
}

std::unique_ptr<QIODevice> BackupFiles::openContent(Row row)
{
    if (m_folder.contentSize(m_index.id(row)) < 0)
        return std::make_unique<NoContent>(tr("Its file is missing."));
    const QString path = contentPath(row);
    std::unique_ptr<QIODevice> device;
    QString why;
    if (m_keys) {
        const Result<Secret> key = keyOf(row);
        if (!key)
            return std::make_unique<NoContent>(key.error().what.ownText());
        if (!key.value().isEmpty()) {
            const auto onDamage = [this, row](const QString &what) {
                addRemark(row, what + u' ' + tr("What there is of it was taken."), true);
            };
            device = std::make_unique<DecryptedFile>(path, key.value(), onDamage);
            if (!device->open(QIODevice::ReadOnly))
                why = device->errorString();
        } else {
            addRemark(row, tr("It has no key, and so was taken as it is."), false);
        }
    }
    if (!device) {
        record(row); // which holds the content against its size
        auto file = std::make_unique<QFile>(path);
        CCommonUtils::openForReading(*file, &why);
        device = std::move(file);
    }
    if (device->isOpen())
        return device;
    return std::make_unique<NoContent>(notReadable(why));
}

QByteArray BackupFiles::content(Row row, qint64 maxBytes)
{
    const std::unique_ptr<QIODevice> device = openContent(row);
    if (!device->isOpen()) {
        if (isEncrypted())
            addRemark(row, device->errorString(), true);
        return {};
    }
    QByteArray bytes(std::min(maxBytes, m_folder.contentSize(m_index.id(row))), Qt::Uninitialized);
    qint64 size = 0;
    for (qint64 count = 1; count > 0 && size < bytes.size(); size += count) {
        count = device->read(bytes.data() + size, bytes.size() - size);
        if (count < 0) {
            addRemark(row, notReadable(device->errorString()), true, Fault::Io);
            return {};
        }
    }
    bytes.truncate(size);
    return bytes;
}

QByteArray BackupFiles::wholeContent(Row row)
{
    if (row == FileIndex::kNone || m_index.kind(row) != FileIndex::Kind::File)
        return {};
    const qint64 size = m_folder.contentSize(m_index.id(row));
    if (size > kMaxWholeBytes)
        addRemark(row, tr("It is too large to be shown in a page."), false);
    return size < 0 || size > kMaxWholeBytes ? QByteArray() : content(row, size);
}

QString BackupFiles::plainPath(Row row)
{
    if (!m_keys)
        return contentPath(row);
    if (m_plainCopy.isEmpty()) {
        const Result<QString> folder = m_private.newSubFolder();
        if (!folder) {
            addRemark(row, folder.error());
            return {};
        }
        m_plainCopy = folder.value() + "/content"_L1;
    }
    QFile::remove(m_plainCopy);
    const Result<> decrypted = decryptTo(row, m_plainCopy);
    if (decrypted)
        return m_plainCopy;
    if (m_folder.contentSize(m_index.id(row)) >= 0)
        addRemark(row, decrypted.error());
    return {};
}

Result<> BackupFiles::decryptTo(Row row, const QString &target)
{
    const std::unique_ptr<QIODevice> device = openContent(row);
    if (!device->isOpen())
        return Error { Fault::Locked, place(row), device->errorString() };
    return PrivateFolder::copy(*device, place(row), target, m_keepGoing);
}

FileRecord BackupFiles::record(Row row)
{
    if (row != m_recordRow) {
        m_record = m_manifest->record(m_index.recordKey(row));
        m_recordRow = row;
        checkSize(row);
    }
    return m_record;
}

void BackupFiles::checkSize(Row row)
{
    const qint64 recorded = m_record.sizeBytes;
    const qint64 stored = m_folder.contentSize(m_index.id(row));
    const qint64 present = stored > 0 && m_keys ? stored - 1 : stored; // the padding takes a byte
    const bool isShort = stored >= 0 && recorded > 0
        && (stored == 0 || present < recorded - recorded / kToleratedPart);
    if (!isShort || isRewritten(row))
        return;
    addRemark(row,
              tr("It is cut off: the index records %1 bytes, the backup holds %2.")
                      .arg(recorded)
                      .arg(stored)
                  + u' ' + tr("What there is of it was taken."),
              true,
              Fault::CutOff);
}

// Databases and logs change while the phone is backed up.
bool BackupFiles::isRewritten(Row row)
{
    const QByteArray name = m_index.path(row).toByteArray().toLower();
    static constexpr std::array<QByteArrayView, 8> kEnds {
        ".db", ".sqlite", ".sqlite3", ".sqlitedb", ".storedata", "-wal", "-shm", "-journal",
    };
    return name.contains(".log")
        || std::any_of(kEnds.begin(), kEnds.end(), [&](auto end) { return name.endsWith(end); })
        || content(row, kDatabaseMagic.size()) == kDatabaseMagic;
}

bool BackupFiles::hasAttribute(Row row, QByteArrayView name)
{
    return m_manifest->mentions(m_index.recordKey(row), name);
}

QString BackupFiles::place(Row row) const
{
    return QString::fromUtf8(m_index.domain(row)) + u'/' + QString::fromUtf8(m_index.path(row));
}

BackupFiles::Row BackupFiles::findFile(QByteArrayView domain, const QString &path) const
{
    const Row row = m_index.find(domain, path);
    return row != FileIndex::kNone && m_index.kind(row) == FileIndex::Kind::File ? row
                                                                                 : FileIndex::kNone;
}

Result<Database> BackupFiles::openDatabase(QByteArrayView domain, const QString &path)
{
    const Row row = findFile(domain, path);
    const QString name = QString::fromUtf8(domain) + u'/' + path;
    if (row == FileIndex::kNone)
        return Error { Fault::NotFound, name, tr("The backup has no “%1”.").arg(name) };
    if (m_folder.contentSize(m_index.id(row)) < 0) {
        return Error { Fault::Io, name, tr("The file of the database “%1” is missing.").arg(name) };
    }
    // SQLite takes an empty file for a database without tables.
    if (m_folder.contentSize(m_index.id(row)) == 0 && record(row).sizeBytes > 0) {
        return Error { Fault::CutOff,
                       name,
                       tr("The file of the database “%1” is empty.").arg(name) };
    }
    Notice lost;
    const auto companion = [&](QLatin1StringView suffix) {
        const Row found = findFile(domain, path + suffix);
        if (found == FileIndex::kNone)
            return found;
        if (lost.isEmpty())
            lost = missingLog(found);
        return contentSize(found) > 0 ? found : FileIndex::kNone;
    };
    const Row wal = companion("-wal"_L1);
    const Row journal = companion("-journal"_L1);
    if (m_keys) {
        Result<DatabaseFiles> files = decrypted(row, wal, journal);
        if (!files)
            return files.error();
        files.value().lost = lost;
        return Database::open(files.value(), m_private, m_keepGoing);
    }
    const auto pathOf = [this](Row part) {
        return part == FileIndex::kNone ? QString() : contentPath(part);
    };
    return Database::open({ name, contentPath(row), pathOf(wal), pathOf(journal), false, lost },
                          m_private,
                          m_keepGoing);
}

// What follows from it when the file of the log or journal is missing. One of no bytes, here
// or on the phone, is normal: it is emptied whenever its rows have come into the database.
Notice BackupFiles::missingLog(Row row)
{
    if (m_folder.contentSize(m_index.id(row)) >= 0 || record(row).sizeBytes == 0)
        return {};
    return tr("The file of “%1” is missing, which held the newest changes of the database.")
        .arg(place(row));
}

Result<DatabaseFiles> BackupFiles::decrypted(Row row, Row wal, Row journal)
{
    const auto known = m_databases.constFind(row);
    if (known != m_databases.constEnd())
        return *known;
    qint64 bytes = 0;
    for (const Row part : { row, wal, journal })
        bytes += part == FileIndex::kNone ? 0 : contentSize(part);
    const Result<QString> folder = m_private.newSubFolder(bytes);
    if (!folder)
        return folder.error();
    const QString name = place(row);
    DatabaseFiles files { name, folder.value() + "/copy.db"_L1, {}, {}, true };
    const Result<> main = decryptTo(row, files.path);
    if (!main && main.error().fault == Fault::TemporaryFolder)
        return main.error();
    if (!main) {
        return Error { main.error().fault,
                       name,
                       Notice("folder.databaseUnreadable", { name, main.error().what }) };
    }
    for (const auto &[part, path, suffix] :
         { std::tuple(wal, &files.walPath, "-wal"_L1),
           std::tuple(journal, &files.journalPath, "-journal"_L1) }) {
        if (part == FileIndex::kNone)
            continue;
        const QString target = files.path + suffix;
        const Result<> beside = decryptTo(part, target);
        if (!beside && beside.error().fault == Fault::TemporaryFolder)
            return beside.error();
        if (beside)
            *path = target;
        else
            addRemark(part, beside.error());
    }
    m_databases.insert(row, files);
    return files;
}

} // namespace PhoneBackup
