#include "PhoneItems/shared/RowStore.h"

#include <algorithm>
#include <limits>

namespace PhoneItems {

namespace {

constexpr qint64 kNoDate = std::numeric_limits<qint64>::min(); // sorts behind every date

} // namespace

void RowStore::add(const Row &row)
{
    m_records.push_back({ m_texts.add(row.cells),
                          row.date.isValid() ? row.date.toMSecsSinceEpoch() : kNoDate,
                          row.id,
                          row.deleted });
}

void RowStore::sortNewestFirst()
{
    const auto isNewer = [](const Record &a, const Record &b) { return a.dateMs > b.dateMs; };
    std::stable_sort(m_records.begin(), m_records.end(), isNewer);
}

QDateTime RowStore::date(int row) const
{
    const qint64 ms = record(row).dateMs;
    return ms == kNoDate ? QDateTime() : QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
}

} // namespace PhoneItems
