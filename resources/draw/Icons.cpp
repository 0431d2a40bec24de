#include "draw/Artwork.h"

#include <QPainterPath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconPx = 48;
constexpr QColor kDarkInk(0x5d, 0x66, 0x75); // smaller than a placeholder, hence stronger

QImage icon(void (*drawSymbol)(QPainter &))
{
    QImage image = canvas(kIconPx, kIconPx);
    QPainter painter(&image);
    drawCard(painter, image.size());
    painter.setBrush(kDarkInk);
    drawSymbol(painter);
    return image;
}

void setStroke(QPainter &painter, qreal widthPx)
{
    painter.setPen(QPen(kDarkInk, widthPx, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
}

void setFill(QPainter &painter, const QColor &colour)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
}

// A landscape in a frame.
void drawPicture(QPainter &painter)
{
    setStroke(painter, 2.5);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(9, 11, 30, 26), 3, 3);
    setFill(painter, kDarkInk);
    QPainterPath hills(QPointF(12, 34));
    hills.lineTo(20, 23);
    hills.lineTo(26, 30);
    hills.lineTo(30, 26);
    hills.lineTo(36, 34);
    hills.closeSubpath();
    painter.drawPath(hills);
    painter.drawEllipse(QPointF(31, 18.5), 3, 3);
}

// A camera that films.
void drawVideo(QPainter &painter)
{
    painter.drawRoundedRect(QRectF(8, 14, 22, 20), 4, 4);
    QPainterPath lens(QPointF(32, 22));
    lens.lineTo(40, 16);
    lens.lineTo(40, 32);
    lens.lineTo(32, 26);
    lens.closeSubpath();
    painter.drawPath(lens);
    setFill(painter, kCard);
    QPainterPath play(QPointF(16, 19));
    play.lineTo(24, 24);
    play.lineTo(16, 29);
    play.closeSubpath();
    painter.drawPath(play);
}

// A microphone: most of what is heard here was spoken.
void drawAudio(QPainter &painter)
{
    painter.drawRoundedRect(QRectF(19, 8, 10, 19), 5, 5);
    setStroke(painter, 2.5);
    QPainterPath stand(QPointF(14, 22));
    stand.arcTo(QRectF(14, 12, 20, 20), 180, 180);
    painter.drawPath(stand);
    painter.drawLine(QPointF(24, 32), QPointF(24, 38.5));
    painter.drawLine(QPointF(18, 38.5), QPointF(30, 38.5));
}

// A card with a portrait and lines of text.
void drawContactCard(QPainter &painter)
{
    setStroke(painter, 2.5);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(7, 12, 34, 24), 3, 3);
    setFill(painter, kDarkInk);
    painter.drawEllipse(QPointF(17, 20.5), 3.5, 3.5);
    QPainterPath shoulders(QPointF(11, 31));
    shoulders.cubicTo(11, 23.5, 23, 23.5, 23, 31);
    shoulders.closeSubpath();
    painter.drawPath(shoulders);
    for (const int y : { 18, 23, 28 })
        painter.drawRoundedRect(QRectF(27, y, y == 28 ? 6 : 10, 2), 1, 1);
}

// The pin that maps are stuck with.
void drawLocation(QPainter &painter)
{
    QPainterPath pin(QPointF(24, 40));
    pin.cubicTo(21, 34, 13, 28, 13, 19.5);
    pin.arcTo(QRectF(13, 8.5, 22, 22), 180, -180);
    pin.cubicTo(35, 28, 27, 34, 24, 40);
    painter.drawPath(pin);
    setFill(painter, kCard);
    painter.drawEllipse(QPointF(24, 19.5), 4.5, 4.5);
}

} // namespace

QList<Artwork> drawIcons()
{
    return {
        { u"audio.png"_s, icon(drawAudio) },       { u"video.png"_s, icon(drawVideo) },
        { u"vcard.png"_s, icon(drawContactCard) }, { u"location.png"_s, icon(drawLocation) },
        { u"picture.png"_s, icon(drawPicture) },
    };
}
