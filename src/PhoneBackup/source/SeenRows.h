#ifndef PHONEBACKUP_SOURCE_SEENROWS_H
#define PHONEBACKUP_SOURCE_SEENROWS_H

#include <QHash>

#include <algorithm>
#include <vector>

namespace PhoneBackup {

/*!
    \brief Which rows of a table have been met.

    A bit a row, 64 rows in 16 bytes. Rows mostly come in order; those that damaged pages bring
    later cost a look-up.
*/
class SeenRows
{
public:
    //! Adds \a row. \return whether it is met for the first time.
    bool add(qint64 row)
    {
        const qint64 number = row >> kShift; // rounds down, below 0 as well
        const quint64 bit = quint64(1) << (quint64(row) & kMask);
        quint64 &bits = bitsOf(number);
        const bool isNew = (bits & bit) == 0;
        bits |= bit;
        return isNew;
    }

private:
    static constexpr int kShift = 6;
    static constexpr quint64 kMask = 63;

    struct Block
    {
        qint64 number;
        quint64 bits;
    };

    quint64 &bitsOf(qint64 number)
    {
        if (m_blocks.empty() || number > m_blocks.back().number)
            m_blocks.push_back({ number, 0 });
        if (number == m_blocks.back().number)
            return m_blocks.back().bits;
        const auto found = std::lower_bound(
            m_blocks.begin(), m_blocks.end(), number, [](const Block &block, qint64 wanted) {
                return block.number < wanted;
            });
        return found->number == number ? found->bits : m_others[number];
    }

    std::vector<Block> m_blocks; // in order
    QHash<qint64, quint64> m_others;
};

} // namespace PhoneBackup

#endif
