#include "PhoneBackup/folder/ManifestMbdb.h"

#include "PhoneBackup/base/OpenFile.h"
#include "PhoneBackup/base/PhoneTime.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <limits>
#include <optional>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kMagic("mbdb\5\0", 6);
constexpr qint64 kMaxBytes = qint64(1) << 30; // of some 5 million entries
constexpr quint16 kAbsent = 0xFFFF;
constexpr int kRecordsBetweenQuestions = 4096;

// Reads from the front of the bytes; past their end everything is 0 and empty.
class Cursor
{
public:
    Cursor(QByteArrayView bytes, qsizetype position)
        : m_bytes(bytes)
        , m_position(position)
    {
    }

    template <class Number>
    Number number()
    {
        if (!has(sizeof(Number)))
            return 0;
        const auto value = qFromBigEndian<Number>(m_bytes.data() + m_position);
        m_position += qsizetype(sizeof(Number));
        return value;
    }

    QByteArrayView bytes()
    {
        const auto size = number<quint16>();
        if (size == kAbsent || !has(size))
            return {};
        const QByteArrayView value = m_bytes.sliced(m_position, size);
        m_position += size;
        return value;
    }

    bool isPastEnd() const { return m_pastEnd; }
    qsizetype position() const { return m_position; }

private:
    bool has(qsizetype size)
    {
        m_pastEnd = m_pastEnd || size > m_bytes.size() - m_position;
        return !m_pastEnd;
    }

    QByteArrayView m_bytes;
    qsizetype m_position;
    bool m_pastEnd = false;
};

struct MbdbRecord
{
    QByteArrayView domain;
    QByteArrayView path;
    QByteArrayView encryptionKey;
    quint16 mode = 0;
    quint32 modified = 0;
    quint32 created = 0;
    quint64 size = 0;
    QMap<QString, QByteArray> properties;
};

// The kind of a file by the highest digit of its mode.
std::optional<FileIndex::Kind> kindOf(quint16 mode)
{
    switch (mode >> 12) {
    case 0x8:
        return FileIndex::Kind::File;
    case 0x4:
        return FileIndex::Kind::Folder;
    case 0xA:
        return FileIndex::Kind::Link;
    default:
        return std::nullopt;
    }
}

MbdbRecord readRecord(Cursor &cursor, bool withProperties)
{
    MbdbRecord record;
    record.domain = cursor.bytes();
    record.path = cursor.bytes();
    cursor.bytes(); // what a link points to
    cursor.bytes(); // digest
    record.encryptionKey = cursor.bytes();
    record.mode = cursor.number<quint16>();
    cursor.number<quint64>(); // inode
    cursor.number<quint64>(); // user and group
    record.modified = cursor.number<quint32>();
    cursor.number<quint32>(); // last change of status
    record.created = cursor.number<quint32>();
    record.size = cursor.number<quint64>();
    cursor.number<quint8>(); // protection class, which the key names, too
    for (int left = cursor.number<quint8>(); left > 0 && !cursor.isPastEnd(); --left) {
        const QByteArrayView name = cursor.bytes();
        const QByteArrayView value = cursor.bytes();
        if (withProperties)
            record.properties.insert(QString::fromUtf8(name), value.toByteArray());
    }
    return record;
}

bool isPossible(const MbdbRecord &record, const Cursor &cursor)
{
    return !cursor.isPastEnd() && !record.domain.isEmpty() && kindOf(record.mode);
}

// Where the next record begins that can be one: every domain of a phone is called so.
qsizetype nextRecord(QByteArrayView bytes, qsizetype from)
{
    static constexpr QByteArrayView kWord = "Domain";
    constexpr qsizetype kLongestDomain = 255; // bounds what is searched from every byte
    for (; from < bytes.size(); ++from) {
        Cursor start(bytes, from);
        const QByteArrayView domain = start.bytes();
        if (domain.size() > kLongestDomain || !domain.contains(kWord))
            continue;
        Cursor cursor(bytes, from);
        const MbdbRecord record = readRecord(cursor, false);
        if (isPossible(record, cursor))
            break;
    }
    return from;
}

} // namespace

Result<std::unique_ptr<ManifestMbdb>> ManifestMbdb::open(const QString &path)
{
    QFile file(path);
    Notice why;
    const bool isOpen = openForReading(file, &why);
    const QByteArray bytes = isOpen ? file.read(std::min(file.size(), kMaxBytes)) : QByteArray();
    if (!isOpen || bytes.size() < file.size()) {
        return Error { Fault::Io,
                       path,
                       Notice("folder.indexUnreadable",
                              { path,
                                file.size() > kMaxBytes ? Notice("folder.indexTooLarge")
                                    : isOpen            ? Notice(file.errorString())
                                                        : why }) };
    }
    if (!bytes.startsWith(kMagic)) {
        return Error { Fault::Corrupt,
                       path,
                       Notice("folder.noRecords") + Notice("base.copyAgain") };
    }
    return std::unique_ptr<ManifestMbdb>(new ManifestMbdb(path, bytes));
}

ManifestMbdb::ManifestMbdb(const QString &path, const QByteArray &bytes)
    : m_path(path)
    , m_bytes(bytes)
{
}

Result<Manifest::Findings> ManifestMbdb::load(FileIndex &index,
                                              const std::function<bool()> &keepGoing)
{
    Findings findings;
    const QByteArrayView bytes = m_bytes;
    qsizetype position = kMagic.size();
    for (int records = 0; position < bytes.size(); ++records) {
        if (records % kRecordsBetweenQuestions == 0 && keepGoing && !keepGoing())
            return Error { Fault::Cancelled, m_path, Notice("base.stopped") };
        Cursor cursor(bytes, position);
        const MbdbRecord record = readRecord(cursor, false);
        if (!isPossible(record, cursor)) {
            const qsizetype next = nextRecord(bytes, position + 1);
            findings.damage = next < bytes.size() ? Notice("folder.recordsUnreadable")
                                                  : Notice("folder.recordsCutOff");
            position = next;
            continue;
        }
        // Names of content files are not stored: they follow from domain and path.
        index.add({}, record.domain, record.path, *kindOf(record.mode), position);
        position = cursor.position();
    }
    index.sort();
    return findings;
}

FileRecord ManifestMbdb::record(qint64 recordKey)
{
    Cursor cursor(m_bytes, recordKey);
    const MbdbRecord stored = readRecord(cursor, true);
    FileRecord record;
    record.mode = stored.mode;
    record.sizeBytes =
        stored.size > quint64(std::numeric_limits<qint64>::max()) ? -1 : qint64(stored.size);
    record.modified = PhoneTime::sinceUnix(double(stored.modified));
    record.created = PhoneTime::sinceUnix(double(stored.created));
    record.properties = stored.properties;
    record.encryptionKey = stored.encryptionKey.toByteArray();
    return record;
}

bool ManifestMbdb::mentions(qint64 recordKey, QByteArrayView attribute)
{
    return record(recordKey).properties.contains(QString::fromUtf8(attribute));
}

} // namespace PhoneBackup
