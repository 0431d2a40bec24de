#include "folder/BackupFiles.h"

#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QDir>
#include <QFile>

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using DataExport::tr;

Result<std::unique_ptr<BackupFiles>> BackupFiles::open(const QString &path,
                                                       const KeepGoing &keepGoing)
{
    Result<BackupFolder> opened = BackupFolder::open(path);
    if (!opened)
        return opened.error();
    const BackupFolder &folder = opened.value();
    switch (folder.kind()) {
    case IndexKind::Records:
        return Error { Fault::NotSupported,
                       path,
                       tr("“%1” is a backup of system version 9 or older, whose index "
                          "“Manifest.mbdb” this version cannot read.")
                           .arg(path) };
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
    case IndexKind::Database:
        break;
    }
    if (folder.info().encrypted) {
        return Error { Fault::Encrypted,
                       path,
                       tr("The backup “%1” is encrypted, which this version cannot read. Make a "
                          "backup without encryption and export that one.")
                           .arg(path) };
    }
    std::unique_ptr<BackupFiles> files(new BackupFiles(opened.take()));
    const Result<> loaded = files->load(keepGoing);
    if (!loaded)
        return loaded.error();
    return files;
}

BackupFiles::BackupFiles(BackupFolder folder)
    : m_folder(std::move(folder))
    , m_private(m_folder.path())
{
}

Result<> BackupFiles::load(const KeepGoing &keepGoing)
{
    const QDir dir(m_folder.path());
    DatabaseFiles files { u"Manifest.db"_s, dir.filePath(u"Manifest.db"_s), {}, {} };
    if (dir.exists(u"Manifest.db-wal"_s))
        files.walPath = dir.filePath(u"Manifest.db-wal"_s);
    if (dir.exists(u"Manifest.db-journal"_s))
        files.journalPath = dir.filePath(u"Manifest.db-journal"_s);

    // SQLite tells a folder or a forbidden file from a missing one less clearly.
    QFile probe(files.path);
    QString why;
    if (!CCommonUtils::openForReading(probe, &why)) {
        return Error { Fault::Io,
                       files.path,
                       tr("The index “%1” could not be read: %2.").arg(files.path, why) };
    }
    probe.close();

    Result<ManifestDb> manifest = ManifestDb::open(files, m_private);
    if (!manifest) {
        Error error = manifest.error();
        if (error.fault == Fault::Corrupt && !m_folder.isManifestReadable())
            error.what += u' ' + tr("Or it is encrypted: “Manifest.plist” cannot be read to tell.");
        return error;
    }
    m_manifest = std::make_unique<ManifestDb>(manifest.take());
    Result<ManifestDb::Findings> findings = m_manifest->load(m_index, keepGoing);
    if (!findings)
        return findings.error();
    m_findings = findings.take();
    return Done {};
}

QString BackupFiles::contentPath(Row row) const
{
    return m_folder.contentPath(m_index.id(row));
}

qint64 BackupFiles::contentSize(Row row) const
{
    return std::max<qint64>(m_folder.contentSize(m_index.id(row)), 0);
}

QByteArray BackupFiles::content(Row row, qint64 maxBytes) const
{
    QFile file(contentPath(row));
    if (!CCommonUtils::openForReading(file))
        return {};
    return file.read(maxBytes);
}

FileRecord BackupFiles::record(Row row)
{
    return FileRecord::parse(m_manifest->record(m_index.recordKey(row)));
}

bool BackupFiles::hasAttribute(Row row, QByteArrayView name)
{
    return m_manifest->record(m_index.recordKey(row)).contains(name);
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
    const auto companion = [&](QLatin1StringView suffix) {
        const Row found = findFile(domain, path + suffix);
        return found != FileIndex::kNone && contentSize(found) > 0 ? contentPath(found) : QString();
    };
    return Database::open(
        { name, contentPath(row), companion("-wal"_L1), companion("-journal"_L1) }, m_private);
}

} // namespace PhoneBackup
