#include "PhoneBackup/folder/BackupFiles.h"

#include "PhoneBackup/base/OpenFile.h"
#include "PhoneBackup/crypto/DecryptedFile.h"
#include "PhoneBackup/crypto/Keybag.h"
#include "PhoneBackup/folder/ManifestFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kBlockBytes = 16; // of the cipher

// Sizes in the index are those of another moment: a file may have shrunk a little since.
constexpr qint64 kToleratedPart = 8;

Notice notReadable(const Notice &why)
{
    return Notice("folder.fileUnreadable", { why });
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
        return Error { Fault::NotSupported, path, Notice("folder.tooOld", { path }) };
    case IndexKind::Missing:
    case IndexKind::None:
        return Error { Fault::Corrupt, path, Notice("folder.noIndex", { path }) };
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
        return Error { Fault::Encrypted,
                       m_folder.path(),
                       Notice("folder.encrypted", { m_folder.path() }) };
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
        m_folder.addRemark({ u"Manifest.plist"_s, Notice("crypto.keysCutOff") });
    return Done {};
}

Result<> BackupFiles::load(const Password &password)
{
    Result<std::unique_ptr<Manifest>> opened =
        openManifest(m_folder, m_keys, password, m_private, m_keepGoing);
    if (!opened)
        return opened.error();
    m_manifest = opened.take();
    Result<Manifest::Findings> findings = m_manifest->load(m_index, m_keepGoing);
    if (!findings)
        return findings.error();
    m_findings = findings.take();
    return Done {};
}

QList<BackupFiles::Remark> BackupFiles::takeRemarks()
{
    for (const Remark &remark : std::as_const(m_remarks))
        m_taken.insert(remark.row, remark);
    return std::exchange(m_remarks, {});
}

std::optional<BackupFiles::Remark> BackupFiles::takeRemark(Row row)
{
    // What is asked for has just been remarked.
    const auto found = std::find_if(m_remarks.crbegin(),
                                    m_remarks.crend(),
                                    [row](const Remark &remark) { return remark.row == row; });
    if (found != m_remarks.crend()) {
        m_taken.insert(row, *found);
        m_remarks.erase(std::prev(found.base()));
    }
    const auto taken = m_taken.constFind(row);
    return taken == m_taken.cend() ? std::nullopt : std::optional(*taken);
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
    if (m_keys && !file.encryptionKey.isEmpty())
        return m_keys->unwrap(file.encryptionKey);
    if (file.isSet())
        return Secret();
    return Error { Fault::Corrupt, place(row), Notice("folder.recordDamaged") };
}

Result<std::unique_ptr<QIODevice>> BackupFiles::openContent(Row row)
{
    if (m_folder.contentSize(m_index.id(row)) < 0)
        return Error { Fault::NotFound, place(row), Notice("folder.fileMissing") };
    const Result<Secret> key = m_keys ? keyOf(row) : Secret();
    if (!key)
        return Error { key.error().fault, place(row), key.error().what };
    const QString path = contentPath(row);
    std::unique_ptr<QIODevice> device;
    Notice why;
    if (!key.value().isEmpty()) {
        const auto onDamage = [this, row](const Notice &what) {
            addRemark(row, what + Notice("folder.restWasTaken"), true);
        };
        auto decrypted = std::make_unique<DecryptedFile>(path, key.value(), onDamage);
        if (!decrypted->open(QIODevice::ReadOnly))
            why = decrypted->failure();
        device = std::move(decrypted);
    } else {
        if (m_keys)
            addRemark(row, Notice("folder.noKey"), false);
        record(row); // which holds the content against its size
        auto file = std::make_unique<QFile>(path);
        openForReading(*file, &why);
        device = std::move(file);
    }
    if (device->isOpen())
        return device;
    return Error { Fault::Io, place(row), notReadable(why) };
}

QByteArray BackupFiles::content(Row row, qint64 maxBytes)
{
    const Result<std::unique_ptr<QIODevice>> opened = openContent(row);
    if (!opened) {
        if (isEncrypted())
            addRemark(row, opened.error());
        return {};
    }
    QIODevice *device = opened.value().get();
    QByteArray bytes(std::min(maxBytes, m_folder.contentSize(m_index.id(row))), Qt::Uninitialized);
    qint64 size = 0;
    for (qint64 count = 1; count > 0 && size < bytes.size(); size += count) {
        count = device->read(bytes.data() + size, bytes.size() - size);
        if (count < 0) {
            addRemark(row, notReadable(Notice(device->errorString())), true, Fault::Io);
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
        addRemark(row, Notice("folder.tooLargeForPage"), false);
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
    const Result<std::unique_ptr<QIODevice>> device = openContent(row);
    if (!device)
        return device.error();
    return PrivateFolder::copy(*device.value(), place(row), target, m_keepGoing);
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
              Notice("folder.cutOff", { recorded, stored }) + Notice("folder.restWasTaken"),
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
        || content(row, Database::kMagic.size()) == Database::kMagic;
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
        return Error { Fault::NotFound, name, Notice("folder.noFile", { name }) };
    if (m_folder.contentSize(m_index.id(row)) < 0) {
        return Error { Fault::Io, name, Notice("folder.databaseMissing", { name }) };
    }
    // SQLite takes an empty file for a database without tables.
    if (m_folder.contentSize(m_index.id(row)) == 0 && record(row).sizeBytes > 0) {
        return Error { Fault::CutOff, name, Notice("folder.databaseEmpty", { name }) };
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
    return Notice("folder.changesMissing", { place(row) });
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
