#include "PhoneBackup/folder/ManifestDb.h"

#include <algorithm>
#include <limits>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kRowsBetweenQuestions = 4096;

FileIndex::Kind kindOf(qint64 flags)
{
    switch (flags) {
    case 1:
        return FileIndex::Kind::File;
    case 2:
        return FileIndex::Kind::Folder;
    case 4:
        return FileIndex::Kind::Link;
    default:
        return FileIndex::Kind::Other;
    }
}

Notice withAdvice(const Notice &sentence)
{
    return sentence + Notice("base.copyAgain");
}

// Whole sentences stay as they are.
Notice notReadable(const Error &error)
{
    return withAdvice(Notice("folder.indexDamaged") + error.what);
}

Notice damageSentence(const Notice &why)
{
    return Notice("folder.indexDamagedBy", { why });
}

} // namespace

ManifestDb::ManifestDb(Database database)
    : m_database(std::move(database))
{
}

Result<std::unique_ptr<ManifestDb>>
ManifestDb::open(const DatabaseFiles &files, PrivateFolder &folder, const KeepGoing &keepGoing)
{
    Result<Database> database = Database::open(files, folder, keepGoing);
    if (!database) {
        Error error = database.error();
        if (error.fault == Fault::Corrupt)
            error.what = notReadable(error);
        return error;
    }
    return std::unique_ptr<ManifestDb>(new ManifestDb(database.take()));
}

Result<Manifest::Findings> ManifestDb::load(FileIndex &index,
                                            const std::function<bool()> &keepGoing)
{
    // The row number bounds the count of rows, the file's size bounds it if the number lies.
    if (Result<Statement> last = m_database.prepare(u"SELECT max(rowid) FROM Files"_s);
        last && last.value().step() == Statement::Step::Row) {
        constexpr qint64 kSmallestRow = 64;
        const qint64 bySize = m_database.sizeBytes() / kSmallestRow;
        index.reserve(int(std::clamp<qint64>(last.value().integer(0), 0, bySize)));
    }

    const QString select =
        u"SELECT fileID, domain, relativePath, flags, rowid FROM Files WHERE rowid > ?1 "
        "ORDER BY rowid"_s;
    Result<Statement> forward = m_database.prepare(select);
    if (!forward) {
        return Error { Fault::Corrupt, m_database.path(), notReadable(forward.error()) };
    }
    qint64 lastKey = std::numeric_limits<qint64>::min();
    forward.value().bind(1, lastKey);
    Outcome outcome = scan(forward.value(), false, lastKey, index, keepGoing);
    if (outcome == Outcome::Broken) {
        // A damaged page hides what follows it; the rows behind it are reached from the end.
        m_findings.damage = damageSentence(m_error);
        Result<Statement> backward = m_database.prepare(select + " DESC"_L1);
        if (backward) {
            qint64 firstKey = std::numeric_limits<qint64>::max();
            backward.value().bind(1, lastKey);
            if (scan(backward.value(), true, firstKey, index, keepGoing) == Outcome::Stopped)
                outcome = Outcome::Stopped;
        }
    }
    if (outcome == Outcome::Stopped)
        return Error { Fault::Cancelled, m_database.path(), Notice("base.stopped") };
    if (index.count() == 0 && outcome == Outcome::Broken)
        return Error { Fault::Corrupt, m_database.path(), withAdvice(damageSentence(m_error)) };
    if (m_findings.damage.isEmpty())
        m_findings.damage = m_database.damage();
    index.sort();
    return m_findings;
}

ManifestDb::Outcome ManifestDb::scan(Statement &query,
                                     bool descending,
                                     qint64 &previous,
                                     FileIndex &index,
                                     const std::function<bool()> &keepGoing)
{
    for (int rows = 0;; ++rows) {
        if (rows % kRowsBetweenQuestions == 0 && keepGoing && !keepGoing())
            return Outcome::Stopped;
        switch (query.step()) {
        case Statement::Step::Done:
            return Outcome::Complete;
        case Statement::Step::Failed:
            m_error = query.failure();
            return query.isStopped() ? Outcome::Stopped : Outcome::Broken;
        case Statement::Step::Row:
            break;
        }
        const FileIndex::Kind kind = kindOf(query.integer(3));
        const qint64 key = query.integer(4);
        // Damaged pages that point at each other would give the same rows for ever.
        if (descending ? key >= previous : key <= previous) {
            m_error = Notice("folder.pagesMixedUp");
            return Outcome::Broken;
        }
        previous = key;
        if (!index.add(query.bytes(0), query.bytes(1), query.bytes(2), kind, key))
            ++m_findings.unnamed;
        if (kind == FileIndex::Kind::Other)
            ++m_findings.unknownKind;
    }
}

FileRecord ManifestDb::record(qint64 recordKey)
{
    return FileRecord::parse(archive(recordKey));
}

bool ManifestDb::mentions(qint64 recordKey, QByteArrayView attribute)
{
    return archive(recordKey).contains(attribute);
}

void ManifestDb::openRecords(const Secret &password)
{
    if (!m_database.hasTable(u"Properties"_s))
        return;
    Result<Statement> query =
        m_database.prepare(u"SELECT value FROM Properties WHERE key = 'salt'"_s);
    if (query && query.value().step() == Statement::Step::Row)
        m_recordKey.emplace(password, query.value().bytes(0));
}

QByteArray ManifestDb::archive(qint64 recordKey)
{
    if (!m_recordQuery) {
        Result<Statement> query = m_database.prepare(u"SELECT file FROM Files WHERE rowid = ?1"_s);
        if (!query)
            return {};
        m_recordQuery = query.take();
    }
    m_recordQuery->reset();
    m_recordQuery->bind(1, recordKey);
    if (m_recordQuery->step() != Statement::Step::Row)
        return {};
    const QByteArray bytes = m_recordQuery->bytes(0).toByteArray();
    return m_recordKey ? m_recordKey->open(bytes) : bytes;
}

} // namespace PhoneBackup
