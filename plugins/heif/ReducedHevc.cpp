#include "ReducedHevc.h"

#include "HevcDecoder.h"
#include "PlaneAverages.h"

#include <QIODevice>

#include <algorithm>
#include <libde265/de265.h>
#include <vector>

namespace {

constexpr int kSmoothCellPx = 4; // cells of this side and more hide the edges of blocks

QByteArray read(QIODevice &device, const std::vector<FileExtent> &extents)
{
    QByteArray bytes;
    for (const FileExtent &extent : extents) {
        if (!device.seek(extent.at))
            break;
        bytes += device.read(extent.size);
    }
    return bytes;
}

// From brightness and differences of colour to red, green and blue.
class Colours
{
public:
    Colours(int matrix, bool isFullRange, int bits)
        : m_scale(1.0 / (1 << (bits - 8)))
        , m_isFullRange(isFullRange)
    {
        // The shares of red and blue in brightness.
        switch (matrix) {
        case 1:
            setShares(0.2126, 0.0722);
            break;
        case 2: // not stated
        case 5:
        case 6:
            setShares(0.299, 0.114);
            break;
        case 9:
            setShares(0.2627, 0.0593);
            break;
        default:
            break;
        }
    }
    bool isKnown() const { return m_red > 0; }
    QRgb rgb(double brightness, double blue, double red) const
    {
        constexpr double kBlack = 16;
        constexpr double kMiddle = 128;
        constexpr double kBrightnessSteps = 219;
        constexpr double kColourSteps = 224;
        double y = brightness * m_scale;
        double cb = blue * m_scale - kMiddle;
        double cr = red * m_scale - kMiddle;
        if (!m_isFullRange) {
            y = (y - kBlack) * 255 / kBrightnessSteps;
            cb *= 255 / kColourSteps;
            cr *= 255 / kColourSteps;
        }
        return qRgb(byte(y + m_red * cr),
                    byte(y - m_greenFromBlue * cb - m_greenFromRed * cr),
                    byte(y + m_blue * cb));
    }
    QRgb grey(double brightness) const
    {
        const double middle = 128 / m_scale;
        return rgb(brightness, middle, middle);
    }

private:
    static int byte(double value) { return qRound(std::clamp(value, 0.0, 255.0)); }
    void setShares(double red, double blue)
    {
        const double green = 1 - red - blue;
        m_red = 2 * (1 - red);
        m_blue = 2 * (1 - blue);
        m_greenFromRed = m_red * red / green;
        m_greenFromBlue = m_blue * blue / green;
    }

    double m_scale; // to eight bits
    bool m_isFullRange;
    double m_red = 0;
    double m_blue = 0;
    double m_greenFromRed = 0;
    double m_greenFromBlue = 0;
};

// How many pixels share a sample of the differences of colour, each way.
QSize sharingOf(de265_chroma chroma)
{
    switch (chroma) {
    case de265_chroma_420:
        return { 2, 2 };
    case de265_chroma_422:
        return { 2, 1 };
    default:
        return { 1, 1 };
    }
}

// A picture whose tiles are added one by one.
class Reduction
{
public:
    Reduction(QSize size, QSize cells, const std::optional<StatedColours> &stated)
        : m_size(size)
        , m_cells(cells)
        , m_stated(stated)
    {
    }

    // False when it is not coded like those before, or in a way that is not known here.
    bool add(const de265_image &tile, QPoint at)
    {
        if (m_planes.empty() && !begin(tile))
            return false;
        if (de265_get_chroma_format(&tile) != m_chroma)
            return false;
        for (int channel = 0; auto &plane : m_planes) {
            const QSize sharing = channel == 0 ? QSize(1, 1) : sharingOf(m_chroma);
            if (de265_get_bits_per_pixel(&tile, channel) != m_bits || at.x() % sharing.width() != 0
                || at.y() % sharing.height() != 0)
                return false;
            const QRect place({ at.x() / sharing.width(), at.y() / sharing.height() },
                              QSize(de265_get_image_width(&tile, channel),
                                    de265_get_image_height(&tile, channel)));
            int bytesPerLine = 0;
            const uchar *samples = de265_get_image_plane(&tile, channel, &bytesPerLine);
            // Where pictures of more than a byte are cut off, the decoder counts in bytes.
            if (m_bits > 8
                && (reinterpret_cast<quintptr>(samples) % sizeof(quint16) != 0
                    || bytesPerLine % int(sizeof(quint16)) != 0))
                return false;
            if (m_bits > 8)
                plane.addWords(samples, bytesPerLine, place);
            else
                plane.addBytes(samples, bytesPerLine, place);
            ++channel;
        }
        return true;
    }

    // What was added, if anything was.
    QImage picture() const
    {
        QImage picture(m_cells, QImage::Format_RGB32);
        if (!m_colours || picture.isNull())
            return {};
        for (int y = 0; y < m_cells.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
            for (int x = 0; x < m_cells.width(); ++x) {
                const auto average = [&](std::size_t channel) {
                    return m_planes[channel].average(x, y, m_cells);
                };
                line[x] = m_planes.size() == 1 ? m_colours->grey(average(0))
                                               : m_colours->rgb(average(0), average(1), average(2));
            }
        }
        return picture;
    }

private:
    bool begin(const de265_image &tile)
    {
        m_chroma = de265_get_chroma_format(&tile);
        m_bits = de265_get_bits_per_pixel(&tile, 0);
        if (m_bits < 8 || m_bits > 16)
            return false;
        m_colours.emplace(m_stated ? m_stated->matrix : de265_get_image_matrix_coefficients(&tile),
                          m_stated ? m_stated->isFullRange
                                   : de265_get_image_full_range_flag(&tile) != 0,
                          m_bits);
        const QSize sharing = sharingOf(m_chroma);
        const QSize shared((m_size.width() + sharing.width() - 1) / sharing.width(),
                           (m_size.height() + sharing.height() - 1) / sharing.height());
        m_planes.emplace_back(m_size, m_cells);
        if (m_chroma != de265_chroma_mono)
            m_planes.insert(m_planes.end(), 2, PlaneAverages(shared, m_cells));
        return m_colours->isKnown();
    }

    QSize m_size;
    QSize m_cells;
    std::vector<PlaneAverages> m_planes;
    de265_chroma m_chroma = de265_chroma_mono;
    int m_bits = 8;
    std::optional<StatedColours> m_stated; // else the coded data state it
    std::optional<Colours> m_colours;
};

} // namespace

QImage ReducedHevc::decode(QIODevice &device, const HevcPicture &picture, QSize cells)
{
    if (picture.colours && !Colours(picture.colours->matrix, false, 8).isKnown())
        return {};
    const bool isOnItsSide = !picture.turn.isIdentity() && qFuzzyIsNull(picture.turn.m11());
    const QSize size = picture.size;
    const QSize turnedCells = (isOnItsSide ? cells.transposed() : cells).boundedTo(size);
    const bool isSmooth = turnedCells.width() * kSmoothCellPx <= size.width()
        && turnedCells.height() * kSmoothCellPx <= size.height();
    HevcDecoder decoder(isSmooth ? HevcDecoder::Filters::Off : HevcDecoder::Filters::On);
    Reduction reduction(size, turnedCells, picture.colours);
    for (int number = 0; const HevcPicture::Tile &tile : picture.tiles) {
        const QByteArray configuration = read(device, { tile.configuration });
        const QByteArray data = read(device, tile.extents);
        const de265_image *decoded = decoder.decode(configuration, data);
        const QPoint at(number % picture.columns * picture.tileSize.width(),
                        number / picture.columns * picture.tileSize.height());
        if (!decoded
            || picture.tileSize
                != QSize(de265_get_image_width(decoded, 0), de265_get_image_height(decoded, 0))
            || !reduction.add(*decoded, at))
            return {};
        ++number;
    }
    const QImage reduced = reduction.picture();
    if (reduced.isNull() || picture.turn.isIdentity())
        return reduced;
    return reduced.transformed(picture.turn).convertToFormat(QImage::Format_RGB32);
}
