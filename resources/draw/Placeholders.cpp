#include "draw/Artwork.h"

#include <QPainter>
#include <QPainterPath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidthPx = 120;
constexpr int kHeightPx = 90;
constexpr int kPersonPx = 136; // the square that photos of contacts are scaled to

// A landscape in a frame, with a line through it: a picture that cannot be shown.
QImage drawPicture()
{
    QImage image = canvas(kWidthPx, kHeightPx);
    QPainter painter(&image);
    drawCard(painter, image.size());

    const QRectF frame(36, 25, 48, 40);
    QPainterPath inside;
    inside.addRoundedRect(frame, 4, 4);
    painter.setPen(QPen(kInk, 3));
    painter.setBrush(Qt::white);
    painter.drawPath(inside);

    QPainterPath hills(QPointF(38, 61));
    hills.lineTo(52, 43);
    hills.lineTo(62, 54);
    hills.lineTo(68, 48);
    hills.lineTo(82, 61);
    hills.lineTo(82, 63);
    hills.lineTo(38, 63);
    hills.closeSubpath();
    painter.setPen(Qt::NoPen);
    painter.setBrush(kInk);
    painter.drawPath(hills);
    painter.drawEllipse(QPointF(72, 36), 4, 4);

    const QLineF stroke(32, 19, 88, 71);
    painter.setPen(QPen(kCard, 8, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(stroke);
    painter.setPen(QPen(kInk, 3.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(stroke);
    return image;
}

// A piece of film with the sign that everyone presses to play one.
QImage drawVideo()
{
    QImage image = canvas(kWidthPx, kHeightPx);
    QPainter painter(&image);
    drawCard(painter, image.size());

    painter.setBrush(kInk);
    painter.drawRoundedRect(QRectF(28, 23, 64, 44), 4, 4);
    painter.setBrush(kCard);
    for (int row = 0; row < 4; ++row) {
        const qreal y = 27 + row * 10.0;
        painter.drawRoundedRect(QRectF(32, y, 6, 6), 1.5, 1.5);
        painter.drawRoundedRect(QRectF(82, y, 6, 6), 1.5, 1.5);
    }
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(42, 23, 36, 44));
    QPainterPath play(QPointF(53, 34));
    play.lineTo(71, 45);
    play.lineTo(53, 56);
    play.closeSubpath();
    painter.setPen(QPen(kInk, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(kInk);
    painter.drawPath(play);
    return image;
}

// Head and shoulders: a contact without a photo.
QImage drawPerson()
{
    QImage image = canvas(kPersonPx, kPersonPx);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF square(0.5, 0.5, kPersonPx - 1, kPersonPx - 1);
    QPainterPath card;
    card.addRoundedRect(square, 8, 8);
    painter.fillPath(card, kCard);

    QPainterPath shoulders;
    shoulders.addEllipse(QRectF(20, 88, 96, 110));
    painter.setClipPath(card);
    painter.fillPath(shoulders, kInk);
    // The line of the card's colour between head and shoulders is the collar.
    painter.setPen(QPen(kCard, 5));
    painter.setBrush(kInk);
    painter.drawEllipse(QRectF(41.5, 24.5, 53, 66));
    painter.setClipping(false);

    painter.setPen(QPen(kRim, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(card);
    return image;
}

} // namespace

QList<Artwork> drawPlaceholders()
{
    return {
        { u"contact_person.png"_s, drawPerson() },
        { u"sms_video.png"_s, drawVideo() },
        { u"sms_image.png"_s, drawPicture() },
    };
}
