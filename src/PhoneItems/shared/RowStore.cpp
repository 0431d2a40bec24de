#include "PhoneItems/shared/RowStore.h"

#include <algorithm>
#include <limits>

namespace PhoneBackup {

namespace {

// Neither byte is ever part of UTF-8.
constexpr char kEndOfCell = char(0xFE);
constexpr char kEndOfRow = char(0xFF);

constexpr qint64 kNoDate = std::numeric_limits<qint64>::min(); // sorts behind every date

} // namespace

void RowStore::add(const Row &row)
{
    m_records.push_back({ m_text.size(),
                          row.date.isValid() ? row.date.toMSecsSinceEpoch() : kNoDate,
                          row.id,
                          row.deleted });
    for (const QString &cell : row.cells)
        m_text.append(cell.toUtf8()).append(kEndOfCell);
    m_text.append(kEndOfRow);
}

void RowStore::sortNewestFirst()
{
    const auto isNewer = [](const Record &a, const Record &b) { return a.dateMs > b.dateMs; };
    std::stable_sort(m_records.begin(), m_records.end(), isNewer);
}

QString RowStore::cell(int row, int column) const
{
    qsizetype begin = record(row).begin;
    for (int before = 0;; ++before) {
        if (m_text.at(begin) == kEndOfRow)
            return {};
        const qsizetype end = m_text.indexOf(kEndOfCell, begin);
        if (before == column)
            return QString::fromUtf8(m_text.constData() + begin, end - begin);
        begin = end + 1;
    }
}

QDateTime RowStore::date(int row) const
{
    const qint64 ms = record(row).dateMs;
    return ms == kNoDate ? QDateTime() : QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
}

} // namespace PhoneBackup
