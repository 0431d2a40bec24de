#include "sample/Database.h"

#include <QFile>
#include <QtEndian>

#include <sqlite3.h>

#include <array>

namespace Sample {

namespace {

constexpr int kPageSize = 4096;

// What the header says of the way of writing, and of the SQLite release that wrote last: the one is
// set to the write-ahead log, the other to a fixed release, so that all machines write the same.
constexpr qsizetype kFormatOffset = 18;
constexpr std::array<char, 2> kWalFormat = { 2, 2 };
constexpr qsizetype kReleaseOffset = 96;
constexpr quint32 kRelease = 3032003;

std::array<char, 4> releaseBytes()
{
    std::array<char, 4> bytes = {};
    qToBigEndian(kRelease, bytes.data());
    return bytes;
}

int bind(sqlite3_stmt *statement, int index, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return sqlite3_bind_null(statement, index);
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return sqlite3_bind_int64(statement, index, value.toLongLong());
    case QMetaType::Double:
        return sqlite3_bind_double(statement, index, value.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return sqlite3_bind_blob64(statement,
                                   index,
                                   bytes.constData(),
                                   static_cast<sqlite3_uint64>(bytes.size()),
                                   SQLITE_TRANSIENT);
    }
    default: {
        const QByteArray text = value.toString().toUtf8();
        return sqlite3_bind_text64(statement,
                                   index,
                                   text.constData(),
                                   static_cast<sqlite3_uint64>(text.size()),
                                   SQLITE_TRANSIENT,
                                   SQLITE_UTF8);
    }
    }
}

} // namespace

void Statement::run(const QList<QVariant> &values)
{
    if (m_statement == nullptr || !m_database->error().isEmpty())
        return;
    int index = 0;
    for (const QVariant &value : values)
        m_database->check(bind(m_statement, ++index, value));
    m_database->check(sqlite3_step(m_statement));
    sqlite3_reset(m_statement);
}

Database::Database(const QString &path, const char *definitions)
    : m_path(path)
{
    const QByteArray name = path.isEmpty() ? QByteArrayLiteral(":memory:") : path.toUtf8();
    if (!check(sqlite3_open_v2(
            name.constData(), &m_handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr)))
        return;
    // A half-made sample is thrown away as a whole: nothing here needs to survive a crash.
    execute("PRAGMA page_size=4096; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;"
            "PRAGMA locking_mode=EXCLUSIVE; PRAGMA cache_size=-65536; BEGIN");
    execute(definitions);
}

Database::~Database()
{
    close();
}

bool Database::check(int code)
{
    if (code == SQLITE_OK || code == SQLITE_DONE || code == SQLITE_ROW)
        return true;
    if (m_error.isEmpty())
        m_error = QString::fromUtf8(sqlite3_errmsg(m_handle));
    return false;
}

void Database::execute(const char *sql)
{
    if (m_error.isEmpty())
        check(sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr));
}

Statement Database::prepare(const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    if (m_error.isEmpty())
        check(
            sqlite3_prepare_v3(m_handle, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
    return Statement(this, statement);
}

QByteArray Database::image()
{
    execute("COMMIT");
    sqlite3_int64 sizeBytes = 0;
    unsigned char *bytes = sqlite3_serialize(m_handle, "main", &sizeBytes, 0);
    execute("BEGIN");
    if (bytes == nullptr)
        return QByteArray();
    QByteArray result(reinterpret_cast<char *>(bytes), static_cast<qsizetype>(sizeBytes));
    sqlite3_free(bytes);
    result.replace(kFormatOffset, kWalFormat.size(), kWalFormat.data(), kWalFormat.size());
    result.replace(kReleaseOffset, 4, releaseBytes().data(), 4);
    return result;
}

bool Database::finish()
{
    execute("COMMIT");
    close();
    if (m_path.isEmpty() || !m_error.isEmpty())
        return m_error.isEmpty();
    QFile file(m_path);
    const bool patched = file.open(QIODevice::ReadWrite) && file.seek(kFormatOffset)
        && file.write(kWalFormat.data(), kWalFormat.size()) > 0 && file.seek(kReleaseOffset)
        && file.write(releaseBytes().data(), 4) > 0 && file.flush();
    if (!patched)
        m_error = file.errorString();
    return patched;
}

void Database::close()
{
    if (m_handle == nullptr)
        return;
    while (sqlite3_stmt *statement = sqlite3_next_stmt(m_handle, nullptr))
        sqlite3_finalize(statement);
    check(sqlite3_close(m_handle));
    m_handle = nullptr;
}

namespace {

//! The running checksum of a write-ahead log, over big-endian words.
class WalChecksum
{
public:
    void add(const char *bytes, qsizetype sizeBytes)
    {
        for (qsizetype at = 0; at < sizeBytes; at += 8) {
            m_first += qFromBigEndian<quint32>(bytes + at) + m_second;
            m_second += qFromBigEndian<quint32>(bytes + at + 4) + m_first;
        }
    }
    quint32 first() const { return m_first; }
    quint32 second() const { return m_second; }

private:
    quint32 m_first = 0;
    quint32 m_second = 0;
};

void appendWord(QByteArray &bytes, quint32 word)
{
    std::array<char, 4> buffer = {};
    qToBigEndian(word, buffer.data());
    bytes.append(buffer.data(), buffer.size());
}

} // namespace

QByteArray writeAheadLog(const QByteArray &before, const QByteArray &after)
{
    constexpr quint32 kMagicBigEndian = 0x377f0683;
    constexpr quint32 kVersion = 3007000;
    constexpr quint32 kSalt1 = 0x5a17c0de;
    constexpr quint32 kSalt2 = 0x0badcafe;

    WalChecksum checksum;
    QByteArray log;
    for (const quint32 word : { kMagicBigEndian, kVersion, quint32(kPageSize), 0U, kSalt1, kSalt2 })
        appendWord(log, word);
    checksum.add(log.constData(), log.size());
    appendWord(log, checksum.first());
    appendWord(log, checksum.second());

    QList<qsizetype> changed;
    for (qsizetype at = 0; at < after.size(); at += kPageSize) {
        const bool same = at < before.size()
            && QByteArrayView(before).sliced(at, kPageSize)
                == QByteArrayView(after).sliced(at, kPageSize);
        if (!same)
            changed.append(at);
    }
    for (const qsizetype at : changed) {
        QByteArray frame;
        appendWord(frame, static_cast<quint32>(at / kPageSize + 1));
        // Only the last frame bears the new size in pages: it commits all of them.
        appendWord(frame,
                   at == changed.last() ? static_cast<quint32>(after.size() / kPageSize) : 0U);
        checksum.add(frame.constData(), frame.size());
        checksum.add(after.constData() + at, kPageSize);
        appendWord(frame, kSalt1);
        appendWord(frame, kSalt2);
        appendWord(frame, checksum.first());
        appendWord(frame, checksum.second());
        log.append(frame);
        log.append(after.constData() + at, kPageSize);
    }
    return log;
}

} // namespace Sample
