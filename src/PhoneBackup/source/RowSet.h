#ifndef PHONEBACKUP_SOURCE_ROWSET_H
#define PHONEBACKUP_SOURCE_ROWSET_H

#include <QtGlobal>

#include <algorithm>
#include <vector>

namespace PhoneBackup {

//! The ROWIDs of a table, for looking up quickly: they are mostly without gaps.
class RowSet
{
public:
    static constexpr qsizetype kNone = -1;

    void add(qint64 row) { m_rows.push_back(row); }

    //! Puts the rows in order; nothing else before that.
    void sort()
    {
        if (!std::is_sorted(m_rows.cbegin(), m_rows.cend()))
            std::sort(m_rows.begin(), m_rows.end());
        m_rows.erase(std::unique(m_rows.begin(), m_rows.end()), m_rows.end());
    }

    qsizetype count() const { return qsizetype(m_rows.size()); }
    qint64 row(qsizetype position) const { return m_rows[std::size_t(position)]; }

    //! Where \a row stands, kNone when it is not there.
    qsizetype position(qint64 row) const
    {
        if (m_rows.empty() || row < m_rows.front() || row > m_rows.back())
            return kNone;
        // Without gaps the difference is the position; gaps only make it smaller.
        const quint64 distance = quint64(row) - quint64(m_rows.front());
        const auto limit =
            distance < m_rows.size() ? m_rows.cbegin() + qsizetype(distance) : m_rows.cend() - 1;
        if (*limit == row)
            return limit - m_rows.cbegin();
        const auto found = std::lower_bound(m_rows.cbegin(), limit, row);
        return found != limit && *found == row ? found - m_rows.cbegin() : kNone;
    }

private:
    std::vector<qint64> m_rows;
};

} // namespace PhoneBackup

#endif
