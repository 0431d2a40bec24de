#ifndef PLUGINS_HEIF_PLANEAVERAGES_H
#define PLUGINS_HEIF_PLANEAVERAGES_H

#include <QList>
#include <QRect>
#include <QSize>

/*!
    \brief A plane of a picture, one number for each pixel, reduced to the averages of cells.

    The cells cover the plane like a net; the sides of any two differ by one sample at most. Only
    sums are held: the plane is added tile by tile.
*/
class PlaneAverages
{
public:
    //! A plane of \a size in as many cells as \a cells says, or as samples where those are fewer.
    PlaneAverages(QSize size, QSize cells);

    /*!
        Adds the samples where \a tile lies, but for what sticks out of the plane. The first is at
        \a samples, lines are \a bytesPerLine apart. Samples have eight bits, or sixteen in the
        machine's order.
    */
    void addBytes(const uchar *samples, qsizetype bytesPerLine, const QRect &tile);
    void addWords(const uchar *samples, qsizetype bytesPerLine, const QRect &tile);

    //! Of what lies at cell \a column, \a row when the plane is covered by a net of \a net cells.
    double average(int column, int row, QSize net) const;

private:
    template <typename Sample, typename Sum>
    void add(const uchar *samples, qsizetype bytesPerLine, const QRect &tile, int maxLines);
    template <typename Sum>
    void addToRow(qsizetype row, int left, const QList<Sum> &columns);

    QList<int> m_columns; // where cells start, and where the last ends
    QList<int> m_rows;
    QList<quint64> m_sums;
};

#endif
