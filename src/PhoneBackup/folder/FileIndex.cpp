#include "PhoneBackup/folder/FileIndex.h"

#include <QCryptographicHash>

#include <algorithm>
#include <cstring>
#include <numeric>

namespace PhoneBackup {

namespace {

constexpr qsizetype kChunkSize = 1 << 20;
constexpr quint32 kKindBits = 2;

bool parseId(QByteArrayView text, FileIndex::Id &id)
{
    if (text.size() != qsizetype(id.size()) * 2)
        return false;
    const auto digit = [](char c) {
        return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
    };
    for (std::size_t i = 0; i < id.size(); ++i) {
        const int high = digit(text[qsizetype(i) * 2]);
        const int low = digit(text[qsizetype(i) * 2 + 1]);
        if (high < 0 || low < 0)
            return false;
        id[i] = static_cast<uchar>(high << 4 | low);
    }
    return true;
}

int compareBytes(QByteArrayView a, QByteArrayView b)
{
    const qsizetype common = std::min(a.size(), b.size());
    const int order = common > 0 ? std::memcmp(a.data(), b.data(), std::size_t(common)) : 0;
    if (order != 0)
        return order;
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

} // namespace

FileIndex::FileIndex() = default;
FileIndex::~FileIndex() = default;

void FileIndex::reserve(int count)
{
    m_entries.reserve(std::size_t(std::max(count, 0)));
}

bool FileIndex::add(
    QByteArrayView id, QByteArrayView domain, QByteArrayView path, Kind kind, qint64 recordKey)
{
    Entry entry {};
    const bool accepted = parseId(id, entry.id);
    if (!accepted)
        entry.id = idOf(domain, path);
    entry.path = store(path);
    entry.pathSize = quint32(path.size());
    entry.recordKey = recordKey;
    entry.domain = domainNumber(domain) << kKindBits | quint32(kind);
    m_entries.push_back(entry);
    return accepted;
}

void FileIndex::sort()
{
    // Domains first: comparing numbers is cheap, and most entries share a few domains.
    std::vector<quint32> byName(m_domains.size());
    std::iota(byName.begin(), byName.end(), 0U);
    std::sort(byName.begin(), byName.end(), [this](quint32 a, quint32 b) {
        return compareBytes(m_domains[a], m_domains[b]) < 0;
    });
    std::vector<quint32> position(m_domains.size());
    std::vector<QByteArray> sorted(m_domains.size());
    for (quint32 i = 0; i < byName.size(); ++i) {
        position[byName[i]] = i;
        sorted[i] = m_domains[byName[i]];
    }
    m_domains = std::move(sorted);
    for (quint32 &number : m_domainNumbers)
        number = position[number];
    for (Entry &entry : m_entries) {
        entry.domain = position[entry.domain >> kKindBits] << kKindBits
            | (entry.domain & ((1U << kKindBits) - 1));
    }

    const auto before = [this](const Entry &a, const Entry &b) {
        const quint32 domainA = a.domain >> kKindBits;
        const quint32 domainB = b.domain >> kKindBits;
        if (domainA != domainB)
            return domainA < domainB;
        const int order = compareBytes(pathOf(a), pathOf(b));
        return order != 0 ? order < 0 : a.recordKey < b.recordKey;
    };
    if (!std::is_sorted(m_entries.cbegin(), m_entries.cend(), before))
        std::sort(m_entries.begin(), m_entries.end(), before);

    m_ranges.assign(m_domains.size(), Range {});
    for (Row row = 0; row < count(); ++row) {
        Range &range = m_ranges[m_entries[std::size_t(row)].domain >> kKindBits];
        if (range.isEmpty())
            range.first = row;
        range.last = row + 1;
    }
}

QByteArrayView FileIndex::domain(Row row) const
{
    return m_domains[m_entries[std::size_t(row)].domain >> kKindBits];
}

QByteArrayView FileIndex::path(Row row) const
{
    return pathOf(m_entries[std::size_t(row)]);
}

FileIndex::Kind FileIndex::kind(Row row) const
{
    return Kind(m_entries[std::size_t(row)].domain & ((1U << kKindBits) - 1));
}

const FileIndex::Id &FileIndex::id(Row row) const
{
    return m_entries[std::size_t(row)].id;
}

qint64 FileIndex::recordKey(Row row) const
{
    return m_entries[std::size_t(row)].recordKey;
}

FileIndex::Row FileIndex::find(QByteArrayView domain, QByteArrayView path) const
{
    const Range range = rangeOf(domain);
    const auto first = m_entries.cbegin() + range.first;
    const auto last = m_entries.cbegin() + range.last;
    const auto found = std::lower_bound(first, last, path, [this](const Entry &entry, auto wanted) {
        return compareBytes(pathOf(entry), wanted) < 0;
    });
    if (found == last || compareBytes(pathOf(*found), path) != 0)
        return kNone;
    return Row(found - m_entries.cbegin());
}

FileIndex::Row FileIndex::find(QByteArrayView domain, const QString &path) const
{
    const QByteArray asGiven = path.toUtf8();
    Row row = find(domain, QByteArrayView(asGiven));
    for (const auto form : { QString::NormalizationForm_C, QString::NormalizationForm_D }) {
        if (row != kNone)
            break;
        const QByteArray normalized = path.normalized(form).toUtf8();
        if (normalized != asGiven)
            row = find(domain, QByteArrayView(normalized));
    }
    return row;
}

FileIndex::Range FileIndex::walk(QByteArrayView domain, QByteArrayView prefix) const
{
    const Range range = rangeOf(domain);
    const auto first = m_entries.cbegin() + range.first;
    const auto last = m_entries.cbegin() + range.last;
    const auto order = [this, prefix](const Entry &entry) {
        return compareBytes(pathOf(entry).first(std::min(qsizetype(entry.pathSize), prefix.size())),
                            prefix);
    };
    const auto begin =
        std::partition_point(first, last, [&](const Entry &entry) { return order(entry) < 0; });
    const auto end =
        std::partition_point(begin, last, [&](const Entry &entry) { return order(entry) <= 0; });
    return { Row(begin - m_entries.cbegin()), Row(end - m_entries.cbegin()) };
}

QList<QByteArray> FileIndex::domains(QByteArrayView prefix) const
{
    QList<QByteArray> found;
    for (const QByteArray &domain : m_domains) {
        if (domain.startsWith(prefix))
            found.append(domain);
    }
    return found;
}

FileIndex::Id FileIndex::idOf(QByteArrayView domain, QByteArrayView path)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(domain);
    hash.addData(QByteArrayView("-", 1));
    hash.addData(path);
    const QByteArray digest = hash.result();
    Id id {};
    std::copy(digest.cbegin(), digest.cend(), id.begin());
    return id;
}

const char *FileIndex::store(QByteArrayView bytes)
{
    if (bytes.isEmpty())
        return nullptr;
    if (bytes.size() > m_chunkLeft) {
        const qsizetype size = std::max(kChunkSize, bytes.size());
        m_chunks.push_back(std::make_unique_for_overwrite<char[]>(std::size_t(size)));
        m_chunkLeft = size;
        m_chunkEnd = m_chunks.back().get() + size;
    }
    char *place = m_chunkEnd - m_chunkLeft;
    std::memcpy(place, bytes.data(), std::size_t(bytes.size()));
    m_chunkLeft -= bytes.size();
    return place;
}

quint32 FileIndex::domainNumber(QByteArrayView domain)
{
    // Neighbours mostly share their domain.
    if (m_lastDomain < m_domains.size() && domain == QByteArrayView(m_domains[m_lastDomain]))
        return m_lastDomain;
    const QByteArray key = QByteArray::fromRawData(domain.data(), domain.size());
    const auto known = m_domainNumbers.constFind(key);
    if (known != m_domainNumbers.constEnd())
        return m_lastDomain = *known;
    m_lastDomain = quint32(m_domains.size());
    m_domains.push_back(domain.toByteArray());
    m_domainNumbers.insert(m_domains.back(), m_lastDomain);
    return m_lastDomain;
}

QByteArrayView FileIndex::pathOf(const Entry &entry) const
{
    return { entry.path, qsizetype(entry.pathSize) };
}

FileIndex::Range FileIndex::rangeOf(QByteArrayView domain) const
{
    const QByteArray key = QByteArray::fromRawData(domain.data(), domain.size());
    const auto known = m_domainNumbers.constFind(key);
    return known == m_domainNumbers.constEnd() ? Range {} : m_ranges[*known];
}

} // namespace PhoneBackup
