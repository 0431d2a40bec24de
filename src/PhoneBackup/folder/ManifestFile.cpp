#include "PhoneBackup/folder/ManifestFile.h"

#include "PhoneBackup/base/OpenFile.h"
#include "PhoneBackup/crypto/DecryptedFile.h"
#include "PhoneBackup/folder/ManifestDb.h"
#include "PhoneBackup/folder/ManifestMbdb.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// Whether there was something to decrypt: before system version 10.2 the index is plain.
Result<bool> decrypt(DatabaseFiles &files,
                     QByteArrayView wrappedKey,
                     const ClassKeys &keys,
                     PrivateFolder &privateFolder,
                     const KeepGoing &keepGoing)
{
    QFile stored(files.path);
    if (!openForReading(stored))
        return false;
    if (wrappedKey.isEmpty() || stored.read(Database::kMagic.size()) == Database::kMagic)
        return false;
    const auto damaged = [&](const Notice &why) {
        return Error { Fault::Corrupt,
                       files.path,
                       Notice("folder.indexEncrypted") + why + Notice("base.copyAgain") };
    };
    const Result<Secret> key = keys.unwrap(wrappedKey);
    if (!key)
        return damaged(key.error().what);
    qint64 bytes = 0;
    for (const QString &path : { files.path, files.walPath, files.journalPath })
        bytes += path.isEmpty() ? 0 : QFileInfo(path).size();
    const Result<QString> place = privateFolder.newSubFolder(bytes);
    if (!place)
        return place.error();
    const QString target = place.value() + "/copy.db"_L1;
    DecryptedFile plain(files.path, key.value(), {});
    if (!plain.open(QIODevice::ReadOnly))
        return damaged(Notice("folder.fileUnreadable", { plain.failure() }));
    const Result<> copied = PrivateFolder::copy(plain, files.name, target, keepGoing);
    if (!copied)
        return copied.error();
    QFile result(target);
    if (!openForReading(result) || result.read(Database::kMagic.size()) != Database::kMagic)
        return damaged(Notice("folder.notDecrypted"));
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

} // namespace

Result<std::unique_ptr<Manifest>> openManifest(const BackupFolder &folder,
                                               const std::optional<ClassKeys> &keys,
                                               const Password &password,
                                               PrivateFolder &privateFolder,
                                               const KeepGoing &keepGoing)
{
    const QDir dir(folder.path());
    const bool isDatabase = folder.kind() == IndexKind::Database;
    const QString name = isDatabase ? u"Manifest.db"_s : u"Manifest.mbdb"_s;
    DatabaseFiles files { name, dir.filePath(name), {}, {} };

    for (const char *suffix : { "", "-wal", "-journal" }) {
        const QString part = name + QLatin1StringView(suffix);
        if (folder.isLink(part))
            return Error { Fault::Io, dir.filePath(part), BackupFolder::linkText(part) };
    }
    // SQLite tells a folder or a forbidden file from a missing one less clearly.
    QFile probe(files.path);
    Notice why;
    if (!openForReading(probe, &why)) {
        return Error { Fault::Io,
                       files.path,
                       Notice("folder.indexUnreadable", { files.path, why }) };
    }
    probe.close();
    if (!isDatabase) {
        Result<std::unique_ptr<ManifestMbdb>> manifest = ManifestMbdb::open(files.path);
        if (!manifest)
            return manifest.error();
        return std::unique_ptr<Manifest>(manifest.take());
    }

    if (dir.exists(u"Manifest.db-wal"_s))
        files.walPath = dir.filePath(u"Manifest.db-wal"_s);
    if (dir.exists(u"Manifest.db-journal"_s))
        files.journalPath = dir.filePath(u"Manifest.db-journal"_s);
    const Result<bool> decrypted = keys
        ? decrypt(files, folder.indexKey(), *keys, privateFolder, keepGoing)
        : Result<bool>(false);
    if (!decrypted)
        return decrypted.error();
    Result<std::unique_ptr<ManifestDb>> manifest =
        ManifestDb::open(files, privateFolder, keepGoing);
    if (!manifest) {
        Error error = manifest.error();
        if (error.fault == Fault::Corrupt && !folder.isManifestReadable())
            error.what += Notice("folder.orEncrypted");
        return error;
    }
    if (keys && !decrypted.value())
        manifest.value()->openRecords(password.text);
    return std::unique_ptr<Manifest>(manifest.take());
}

} // namespace PhoneBackup
