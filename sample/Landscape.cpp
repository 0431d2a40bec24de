#include "sample/PictureMaker.h"
#include "sample/Random.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <array>
#include <vector>

namespace Sample {

namespace {

struct Daytime
{
    QRgb skyTop;
    QRgb skyBottom;
    QRgb sun;
    QRgb far; //!< Colour of the air, which distant hills take on.
    QRgb near;
    QRgb water;
};

constexpr std::array kDaytimes {
    Daytime { 0xff3f7fc4, 0xffd6ecf7, 0xfffff7d6, 0xff9fb9d1, 0xff3d6b3a, 0xff2f78a8 }, // Noon.
    Daytime { 0xff5a4a86, 0xfff9b384, 0xffffe1a8, 0xffb08aa0, 0xff3b3348, 0xff6d5a86 }, // Evening.
    Daytime { 0xff7fa9cf, 0xfffbe3d0, 0xfffff0dc, 0xffb9c3cf, 0xff55744f, 0xff7ba6b8 }, // Morning.
    Daytime { 0xff10193a, 0xff3c4d7e, 0xfff1f0e2, 0xff33406a, 0xff10182a, 0xff1d2c52 }, // Night.
};

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

void drawRidge(QPainter &painter, Random &random, QSizeF size, double base, const QColor &color)
{
    constexpr double kRoughness = 0.5;
    const std::vector<double> heights = ridge(random, kRoughness);
    const double step = size.width() / static_cast<double>(heights.size() - 1);
    QPainterPath path(QPointF(0, size.height()));
    for (size_t i = 0; i < heights.size(); ++i)
        path.lineTo(step * static_cast<double>(i), base - heights[i] * size.height() * 0.08);
    path.lineTo(size.width(), size.height());
    painter.setBrush(color);
    painter.drawPath(path);
}

} // namespace

QImage drawLandscape(Random &random, QSize size, double moment)
{
    const QSizeF area = size;
    const Daytime &daytime = random.pick(kDaytimes);
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    const double horizon = area.height() * random.real(0.5, 0.62);
    QLinearGradient sky(0, 0, 0, horizon);
    sky.setColorAt(0, QColor::fromRgb(daytime.skyTop));
    sky.setColorAt(1, QColor::fromRgb(daytime.skyBottom));
    painter.fillRect(QRectF({ 0, 0 }, area), sky);

    const double radius = area.height() * random.real(0.035, 0.06);
    // Braces: they fix the order in which the numbers are drawn.
    const QPointF sun { area.width() * (random.real(0.15, 0.8) + 0.1 * moment),
                        horizon * random.real(0.25, 0.8) };
    painter.setBrush(QColor::fromRgb(daytime.sun));
    painter.drawEllipse(sun, radius, radius);

    constexpr int kRidges = 4;
    const bool hasWater = random.chance(50);
    for (int i = 0; i < (hasWater ? 1 : kRidges); ++i) {
        drawRidge(painter,
                  random,
                  area,
                  horizon + area.height() * 0.12 * i,
                  mixed(daytime.far, daytime.near, i / (kRidges - 1.0)));
    }
    if (hasWater) {
        QLinearGradient water(0, horizon, 0, area.height());
        water.setColorAt(0, mixed(daytime.water, daytime.skyBottom, 0.55));
        water.setColorAt(1, QColor::fromRgb(daytime.water).darker(135));
        painter.fillRect(QRectF(0, horizon, area.width(), area.height() - horizon), water);
    }
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
        const QPointF corner { cell * (i % kColumns + 0.18), cell * (row + 0.7) };
        painter.setBrush(QColor::fromRgb(random.pick(kTiles)));
        painter.drawRoundedRect(
            QRectF(corner, QSizeF(cell * 0.64, cell * 0.64)), cell * 0.15, cell * 0.15);
    }
    return image;
}

} // namespace Sample
