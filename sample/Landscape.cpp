#include "sample/PictureMaker.h"
#include "sample/Random.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <array>
#include <vector>

namespace Sample {

namespace {

struct Daytime
{
    QRgb skyTop;
    QRgb skyBottom;
    QRgb sun;
    QRgb far; //!< What lies far off takes this colour of the air.
    QRgb near;
    QRgb water;
};

constexpr std::array kDaytimes {
    Daytime { 0xff3f7fc4, 0xffd6ecf7, 0xfffff7d6, 0xff9fb9d1, 0xff3d6b3a, 0xff2f78a8 }, // Noon.
    Daytime { 0xff5a4a86, 0xfff9b384, 0xffffe1a8, 0xffb08aa0, 0xff3b3348, 0xff6d5a86 }, // Evening.
    Daytime { 0xff7fa9cf, 0xfffbe3d0, 0xfffff0dc, 0xffb9c3cf, 0xff55744f, 0xff7ba6b8 }, // Morning.
    Daytime { 0xff10193a, 0xff3c4d7e, 0xfff1f0e2, 0xff33406a, 0xff10182a, 0xff1d2c52 }, // Night.
    Daytime { 0xff6b8796, 0xffc9d6d8, 0xfff2f2ea, 0xff9aabb0, 0xff445a4b, 0xff54737d }, // Haze.
};
constexpr int kNight = 3;
constexpr std::array<size_t, 10> kOftenUsed { 0, 0, 0, 1, 1, 1, 2, 2, kNight, 4 };

QColor mixed(QRgb first, QRgb second, double share)
{
    const auto channel = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return QColor(channel(qRed(first), qRed(second)),
                  channel(qGreen(first), qGreen(second)),
                  channel(qBlue(first), qBlue(second)));
}

//! A line of hills: points halved again and again, each new one moved less than the ones before.
std::vector<double> ridge(Random &random, double roughness)
{
    std::vector<double> heights { random.real(-1, 1), random.real(-1, 1) };
    double reach = 1.0;
    for (int step = 0; step < 7; ++step, reach *= roughness) {
        std::vector<double> finer;
        for (size_t i = 0; i + 1 < heights.size(); ++i) {
            finer.push_back(heights[i]);
            finer.push_back((heights[i] + heights[i + 1]) / 2 + random.real(-reach, reach));
        }
        finer.push_back(heights.back());
        heights = std::move(finer);
    }
    return heights;
}

class Landscape
{
public:
    Landscape(Random &random, QPainter &painter, QSizeF size, double moment)
        : m_random(random)
        , m_painter(painter)
        , m_width(size.width())
        , m_height(size.height())
        , m_moment(moment)
        , m_daytimeIndex(random.pick(kOftenUsed))
        , m_daytime(kDaytimes[m_daytimeIndex])
    {
    }

    void draw();

private:
    void drawSky();
    void drawClouds();
    void drawRidge(double base, double reach, double roughness, const QColor &color);
    void drawMountains();
    void drawSea();
    void drawMeadow();
    void drawBoat(QPointF at, double size);
    void drawPine(QPointF at, double size);
    void drawLighthouse();
    void drawBirds();

    Random &m_random;
    QPainter &m_painter;
    const double m_width;
    const double m_height;
    const double m_moment;
    const size_t m_daytimeIndex;
    const Daytime &m_daytime;
    double m_horizon = 0;
    QPointF m_sun;
};

void Landscape::draw()
{
    m_horizon = m_height * m_random.real(0.5, 0.62);
    drawSky();
    drawClouds();
    switch (m_random.below(3)) {
    case 0:
        drawSea();
        break;
    case 1:
        drawMountains();
        break;
    default:
        drawMeadow();
        break;
    }
    drawBirds();
}

void Landscape::drawSky()
{
    QLinearGradient sky(0, 0, 0, m_horizon);
    sky.setColorAt(0, QColor::fromRgb(m_daytime.skyTop));
    sky.setColorAt(1, QColor::fromRgb(m_daytime.skyBottom));
    m_painter.fillRect(QRectF(0, 0, m_width, m_height), sky);

    if (m_daytimeIndex == kNight) {
        for (int i = 0; i < 90; ++i) {
            const double radius = m_height * m_random.real(0.0008, 0.0022);
            const QPointF at { m_random.real(0, m_width), m_random.real(0, m_horizon) };
            m_painter.setBrush(QColor(255, 255, 255, m_random.between(90, 230)));
            m_painter.drawEllipse(at, radius, radius);
        }
    }
    const double radius = m_height * m_random.real(0.035, 0.06);
    // Braces, here and below: they fix the order in which the numbers are drawn.
    m_sun = QPointF { m_width * m_random.real(0.15, 0.85), m_horizon * m_random.real(0.25, 0.8) };
    QRadialGradient glow(m_sun, radius * 5);
    QColor color = QColor::fromRgb(m_daytime.sun);
    color.setAlpha(150);
    glow.setColorAt(0, color);
    color.setAlpha(0);
    glow.setColorAt(1, color);
    m_painter.setBrush(glow);
    m_painter.drawEllipse(m_sun, radius * 5, radius * 5);
    m_painter.setBrush(QColor::fromRgb(m_daytime.sun));
    m_painter.drawEllipse(m_sun, radius, radius);
}

void Landscape::drawClouds()
{
    const int count = m_random.below(5);
    for (int i = 0; i < count; ++i) {
        const double size = m_width * m_random.real(0.05, 0.11);
        const double drift = m_width * 0.06 * m_moment;
        const QPointF at { m_random.real(0, m_width) + drift, m_horizon * m_random.real(0.1, 0.6) };
        QColor color = mixed(m_daytime.skyBottom, 0xffffffff, m_daytimeIndex == kNight ? 0.1 : 0.6);
        color.setAlpha(m_random.between(120, 200));
        QPainterPath cloud;
        cloud.setFillRule(Qt::WindingFill);
        cloud.addRoundedRect(
            QRectF(at.x() - size, at.y(), size * 2, size * 0.3), size * 0.15, size * 0.15);
        cloud.addEllipse(at + QPointF(-size * 0.4, 0), size * 0.35, size * 0.24);
        cloud.addEllipse(at + QPointF(size * 0.15, -size * 0.06), size * 0.45, size * 0.33);
        m_painter.setBrush(color);
        m_painter.drawPath(cloud.simplified());
    }
}

void Landscape::drawRidge(double base, double reach, double roughness, const QColor &color)
{
    const std::vector<double> heights = ridge(m_random, roughness);
    const double step = m_width / static_cast<double>(heights.size() - 1);
    QPainterPath path(QPointF(0, m_height));
    for (size_t i = 0; i < heights.size(); ++i)
        path.lineTo(step * static_cast<double>(i), base - heights[i] * reach);
    path.lineTo(m_width, m_height);
    m_painter.setBrush(color);
    m_painter.drawPath(path);
}

void Landscape::drawMountains()
{
    constexpr int kLayers = 4;
    for (int layer = 0; layer < kLayers; ++layer) {
        const double nearness = static_cast<double>(layer) / (kLayers - 1);
        drawRidge(m_horizon + m_height * 0.11 * layer,
                  m_height * (0.17 - 0.03 * layer),
                  0.56 - 0.05 * nearness,
                  mixed(m_daytime.far, m_daytime.near, nearness));
    }
    const int pines = m_random.between(5, 14);
    for (int i = 0; i < pines; ++i) {
        const double depth = m_random.real(0.86, 0.99);
        drawPine(QPointF(m_random.real(0, m_width), m_height * depth),
                 m_height * (depth - 0.72) * 0.7);
    }
}

void Landscape::drawMeadow()
{
    drawRidge(m_horizon, m_height * 0.06, 0.5, mixed(m_daytime.far, m_daytime.near, 0.15));
    for (int layer = 0; layer < 3; ++layer) {
        drawRidge(m_horizon + m_height * (0.08 + 0.13 * layer),
                  m_height * 0.05,
                  0.34,
                  mixed(m_daytime.far, m_daytime.near, 0.5 + 0.22 * layer));
        const int trees = m_random.between(1, 4);
        for (int i = 0; i < trees; ++i)
            drawPine(
                QPointF(m_random.real(0, m_width), m_horizon + m_height * (0.13 + 0.13 * layer)),
                m_height * (0.06 + 0.035 * layer));
    }
    constexpr std::array kFlowers { 0xfff2d15cU, 0xffe8745aU, 0xfff4f1e6U, 0xffb58bd6U };
    for (int i = 0; i < 130; ++i) {
        const double depth = m_random.real(0.8, 1.0);
        const double radius = m_height * (depth - 0.77) * 0.018;
        m_painter.setBrush(
            mixed(m_random.pick(kFlowers), m_daytime.near, m_daytimeIndex == kNight ? 0.8 : 0.15));
        m_painter.drawEllipse(QPointF(m_random.real(0, m_width), m_height * depth), radius, radius);
    }
}

void Landscape::drawSea()
{
    drawRidge(m_horizon, m_height * 0.05, 0.5, mixed(m_daytime.far, m_daytime.near, 0.2));
    QLinearGradient water(0, m_horizon, 0, m_height);
    water.setColorAt(0, mixed(m_daytime.water, m_daytime.skyBottom, 0.55));
    water.setColorAt(1, QColor::fromRgb(m_daytime.water).darker(135));
    m_painter.fillRect(QRectF(0, m_horizon, m_width, m_height - m_horizon), water);

    for (int i = 0; i < 160; ++i) {
        const double depth = m_random.real(0.01, 1);
        const double length = m_width * m_random.real(0.01, 0.05) * (0.4 + depth);
        const bool underSun = i % 3 == 0;
        const double x = underSun
            ? m_sun.x() + m_random.real(-1, 1) * m_width * (0.02 + 0.08 * depth)
            : m_random.real(0, m_width);
        QColor color = underSun ? QColor::fromRgb(m_daytime.sun) : QColor(Qt::white);
        color.setAlpha(underSun ? 120 : 36);
        m_painter.setBrush(color);
        m_painter.drawEllipse(QPointF(x, m_horizon + (m_height - m_horizon) * depth),
                              length / 2,
                              m_height * (0.0012 + 0.003 * depth));
    }
    if (m_random.chance(50))
        drawLighthouse();
    const int boats = m_random.between(1, 4);
    const int firstPlace = m_random.below(boats);
    for (int i = 0; i < boats; ++i) {
        const double depth = (i + m_random.real(0.2, 0.9)) / boats * 0.7;
        const double place = ((firstPlace + i * 3) % boats + m_random.real(0.2, 0.8)) / boats;
        const double x = m_width * (0.04 + place * 0.84 + 0.08 * m_moment);
        drawBoat(QPointF(x, m_horizon + (m_height - m_horizon) * depth),
                 m_height * (0.05 + 0.18 * depth));
    }
}

void Landscape::drawBoat(QPointF at, double size)
{
    constexpr std::array kSails { 0xfffaf6ebU, 0xffe8574aU, 0xfff3c14bU, 0xff5aa7a0U, 0xffeee3d0U };
    const QColor sail =
        mixed(m_random.pick(kSails), m_daytime.near, m_daytimeIndex == kNight ? 0.5 : 0.05);
    const auto point = [at, size](double x, double y) { return at + QPointF(x * size, -y * size); };

    m_painter.setBrush(QColor(0, 0, 0, 45));
    m_painter.drawEllipse(point(0, -0.13), size * 0.55, size * 0.07);
    m_painter.setBrush(mixed(0xff4a2f24, m_daytime.near, 0.2));
    m_painter.drawPolygon(QPolygonF {
        point(-0.5, 0.05), point(0.56, 0.05), point(0.36, -0.14), point(-0.36, -0.14) });
    m_painter.drawRect(QRectF(point(-0.02, 1.2), point(0.015, 0)));
    m_painter.setBrush(sail);
    m_painter.drawPolygon(QPolygonF { point(-0.05, 1.15), point(-0.05, 0.12), point(-0.5, 0.14) });
    m_painter.setBrush(sail.darker(108));
    m_painter.drawPolygon(QPolygonF { point(0.05, 1.05), point(0.05, 0.12), point(0.46, 0.12) });
}

void Landscape::drawPine(QPointF at, double size)
{
    m_painter.setBrush(mixed(0xff3a2a20, m_daytime.near, 0.3));
    m_painter.drawRect(QRectF(at.x() - size * 0.04, at.y() - size * 0.2, size * 0.08, size * 0.2));
    m_painter.setBrush(mixed(m_daytime.near, 0xff0e1f14, m_random.real(0.25, 0.5)));
    for (int tier = 0; tier < 3; ++tier) {
        const double bottom = at.y() - size * (0.15 + 0.26 * tier);
        const double half = size * (0.3 - 0.07 * tier);
        m_painter.drawPolygon(QPolygonF { QPointF(at.x() - half, bottom),
                                          QPointF(at.x() + half, bottom),
                                          QPointF(at.x(), bottom - size * 0.42) });
    }
}

void Landscape::drawLighthouse()
{
    const double size = m_height * m_random.real(0.2, 0.3);
    const double x =
        m_width * (m_random.chance(50) ? m_random.real(0.06, 0.2) : m_random.real(0.8, 0.94));
    const double foot = m_horizon + m_height * 0.03;
    m_painter.setBrush(mixed(m_daytime.near, 0xff30302c, 0.6));
    m_painter.drawEllipse(QPointF(x, foot + size * 0.05), size * 0.5, size * 0.12);
    for (int band = 0; band < 5; ++band) {
        const double bottom = foot - size * 0.16 * band;
        const double half = size * (0.1 - 0.009 * band);
        m_painter.setBrush(mixed(band % 2 == 0 ? 0xfff4f0e8 : 0xffc8453a,
                                 m_daytime.near,
                                 m_daytimeIndex == kNight ? 0.5 : 0.08));
        m_painter.drawPolygon(QPolygonF { QPointF(x - half, bottom),
                                          QPointF(x + half, bottom),
                                          QPointF(x + half * 0.91, bottom - size * 0.16),
                                          QPointF(x - half * 0.91, bottom - size * 0.16) });
    }
    m_painter.setBrush(QColor(0xff, 0xe9, 0xa0));
    m_painter.drawRect(QRectF(x - size * 0.04, foot - size * 0.88, size * 0.08, size * 0.08));
    m_painter.setBrush(QColor(0x38, 0x30, 0x30));
    m_painter.drawPolygon(QPolygonF { QPointF(x - size * 0.065, foot - size * 0.88),
                                      QPointF(x + size * 0.065, foot - size * 0.88),
                                      QPointF(x, foot - size * 0.97) });
}

void Landscape::drawBirds()
{
    const int count = m_daytimeIndex == kNight ? 0 : m_random.below(6);
    m_painter.setBrush(Qt::NoBrush);
    for (int i = 0; i < count; ++i) {
        const double span = m_width * m_random.real(0.006, 0.014);
        const QPointF at { m_width * (m_random.real(0.1, 0.8) + 0.1 * m_moment),
                           m_horizon * m_random.real(0.2, 0.7) };
        QPainterPath wings(at - QPointF(span, span * 0.4));
        wings.quadTo(at - QPointF(span * 0.4, span * 0.6), at);
        wings.quadTo(at + QPointF(span * 0.4, -span * 0.6), at + QPointF(span, -span * 0.4));
        m_painter.setPen(QPen(QColor(40, 40, 50, 200), span * 0.16));
        m_painter.drawPath(wings);
    }
    m_painter.setPen(Qt::NoPen);
}

} // namespace

QImage drawLandscape(Random &random, QSize size, double moment)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    Landscape(random, painter, size, moment).draw();
    return image;
}

QImage drawScreenshot(Random &random, QSize size)
{
    constexpr std::array kTiles { 0xff4a90d9U, 0xffe8745aU, 0xff5aa773U,
                                  0xfff3c14bU, 0xff8b6fc0U, 0xff46b3b8U };
    constexpr int kColumns = 4;
    QImage image = drawLandscape(random, size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double cell = static_cast<double>(size.width()) / kColumns;
    const int rows = std::max(1, static_cast<int>(size.height() / cell) - 2);
    for (int i = 0; i < kColumns * rows; ++i) {
        const int row = i / kColumns;
        const QRectF tile(
            cell * (i % kColumns + 0.18), cell * (row + 0.7), cell * 0.64, cell * 0.64);
        painter.setBrush(QColor::fromRgb(random.pick(kTiles)));
        painter.drawRoundedRect(tile, cell * 0.15, cell * 0.15);
        painter.setBrush(QColor(255, 255, 255, 210));
        if (random.chance(50))
            painter.drawEllipse(tile.center(), cell * 0.16, cell * 0.16);
        else
            painter.drawRoundedRect(
                tile.adjusted(cell * 0.16, cell * 0.2, -cell * 0.16, -cell * 0.2),
                cell * 0.05,
                cell * 0.05);
    }
    return image;
}

} // namespace Sample
