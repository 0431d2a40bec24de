#include "PlaneAverages.h"

#include <algorithm>

namespace {

QList<int> cellStarts(int length, int wanted)
{
    const int count = std::clamp(wanted, 1, length);
    QList<int> starts;
    starts.reserve(count + 1);
    for (int i = 0; i <= count; ++i)
        starts.append(static_cast<int>(qint64 { i } * length / count));
    return starts;
}

qsizetype cellOf(const QList<int> &starts, int sample)
{
    return std::upper_bound(starts.cbegin(), starts.cend(), sample) - starts.cbegin() - 1;
}

} // namespace

PlaneAverages::PlaneAverages(QSize size, QSize cells)
    : m_columns(cellStarts(size.width(), cells.width()))
    , m_rows(cellStarts(size.height(), cells.height()))
    , m_sums((m_columns.size() - 1) * (m_rows.size() - 1))
{
}

void PlaneAverages::addBytes(const uchar *samples, qsizetype bytesPerLine, const QRect &tile)
{
    add<quint8, quint16>(samples, bytesPerLine, tile, 0x100);
}

void PlaneAverages::addWords(const uchar *samples, qsizetype bytesPerLine, const QRect &tile)
{
    add<quint16, quint32>(samples, bytesPerLine, tile, 0x10000);
}

// Lines are summed up first, as many as belong together and fit: that runs through memory in its
// order, and the compiler does many at once.
template <typename Sample, typename Sum>
void PlaneAverages::add(const uchar *samples,
                        qsizetype bytesPerLine,
                        const QRect &tile,
                        int maxLines)
{
    const QRect part = tile & QRect(0, 0, m_columns.last(), m_rows.last());
    QList<Sum> columns(part.width());
    for (int y = part.top(), end = 0; y <= part.bottom(); y = end) {
        const qsizetype row = cellOf(m_rows, y);
        end = std::min({ m_rows.at(row + 1), y + maxLines, part.bottom() + 1 });
        columns.fill(0);
        for (int line = y; line < end; ++line) {
            const uchar *start = samples + (line - tile.top()) * bytesPerLine;
            const auto *sample =
                reinterpret_cast<const Sample *>(start) + (part.left() - tile.left());
            std::transform(columns.cbegin(),
                           columns.cend(),
                           sample,
                           columns.begin(),
                           [](Sum sum, Sample value) { return static_cast<Sum>(sum + value); });
        }
        addToRow(row, part.left(), columns);
    }
}

template <typename Sum>
void PlaneAverages::addToRow(qsizetype row, int left, const QList<Sum> &columns)
{
    qsizetype column = cellOf(m_columns, left);
    quint64 *cell = m_sums.data() + row * (m_columns.size() - 1) + column;
    for (int x = left; const Sum sum : columns) {
        if (x++ == m_columns.at(column + 1)) {
            ++column;
            ++cell;
        }
        *cell += sum;
    }
}

double PlaneAverages::average(int column, int row, QSize net) const
{
    const qsizetype columns = m_columns.size() - 1;
    const qsizetype x = column * columns / net.width();
    const qsizetype y = row * (m_rows.size() - 1) / net.height();
    const qint64 samples =
        qint64 { m_columns.at(x + 1) - m_columns.at(x) } * (m_rows.at(y + 1) - m_rows.at(y));
    return static_cast<double>(m_sums.at(y * columns + x)) / static_cast<double>(samples);
}
