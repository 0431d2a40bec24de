#include "draw/Artwork.h"

#include <QPainter>
#include <QPainterPath>

using namespace Qt::StringLiterals;

namespace {

constexpr QColor kRed(0xd3, 0x2f, 0x2f);
constexpr QColor kTeal(0x00, 0x6d, 0x5b);
constexpr int kDeletedPx = 16;
constexpr int kBadgePx = 15;
constexpr int kSentBadgeHeightPx = 23; // the room below lifts the mark above the bubble's text
constexpr int kExclamationPx = 18;
constexpr int kExclamationGapPx = 4; // it stands right beside pictures and bubbles

// A waste bin in the square of 16 by 16 units; edges lie on whole units, so that they stay sharp.
void drawBin(QPainter &painter, const QColor &colour, const QColor &gaps)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRect(QRectF(6, 1, 4, 1)); // handle
    painter.drawRoundedRect(QRectF(2, 2, 12, 2), 0.8, 0.8); // lid
    QPainterPath body(QPointF(3, 5));
    body.lineTo(13, 5);
    body.lineTo(12.4, 14);
    body.quadTo(12.3, 15, 11.3, 15);
    body.lineTo(4.7, 15);
    body.quadTo(3.7, 15, 3.6, 14);
    body.closeSubpath();
    painter.drawPath(body);
    painter.setBrush(gaps);
    for (const int x : { 6, 9 })
        painter.drawRect(QRectF(x, 7, 1, 6));
}

QImage drawDeleted()
{
    QImage image = canvas(kDeletedPx, kDeletedPx);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawBin(painter, kRed, Qt::white);
    return image;
}

// The mark lies on bubbles of every colour and on the page: a white rim parts it from all of them.
void drawDisc(QPainter &painter, const QColor &colour)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(0, 0, kBadgePx, kBadgePx));
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(1, 1, kBadgePx - 2, kBadgePx - 2));
    painter.setBrush(Qt::white);
}

QImage drawDeletedBadge(int heightPx)
{
    QImage image = canvas(kBadgePx, heightPx);
    QPainter painter(&image);
    drawDisc(painter, kRed);
    painter.drawRect(QRectF(6, 3, 3, 1)); // handle
    painter.drawRect(QRectF(4, 4, 7, 1)); // lid
    painter.drawRect(QRectF(5, 6, 1, 5)); // the body's ribs
    painter.drawRect(QRectF(7, 6, 1, 5));
    painter.drawRect(QRectF(9, 6, 1, 5));
    painter.drawRect(QRectF(5, 11, 5, 1)); // its floor
    return image;
}

// A megaphone, for what went to many people.
QImage drawBroadcast()
{
    QImage image = canvas(kBadgePx, kSentBadgeHeightPx);
    QPainter painter(&image);
    drawDisc(painter, kTeal);
    QPainterPath horn(QPointF(5, 6));
    horn.lineTo(10, 3.5);
    horn.lineTo(10, 10.5);
    horn.lineTo(5, 8);
    horn.closeSubpath();
    painter.drawPath(horn);
    painter.drawRoundedRect(QRectF(3, 5.5, 2, 3), 1, 1); // mouthpiece
    painter.drawRect(QRectF(5, 8, 1, 3)); // grip
    painter.drawRect(QRectF(11, 6, 1, 2)); // sound
    return image;
}

QImage drawExclamation()
{
    QImage image = canvas(kExclamationGapPx + kExclamationPx, kExclamationPx);
    QPainter painter(&image);
    painter.translate(kExclamationGapPx, 0);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kRed);
    painter.drawEllipse(QRectF(0, 0, kExclamationPx, kExclamationPx));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(8, 4, 2, 7), 0.8, 0.8);
    painter.drawRoundedRect(QRectF(8, 12, 2, 2), 0.8, 0.8);
    return image;
}

} // namespace

QList<Artwork> drawMarks()
{
    return {
        { u"exclamation.png"_s, drawExclamation() },
        { u"del_msg_recv.png"_s, drawDeletedBadge(kBadgePx) },
        { u"del_msg_send.png"_s, drawDeletedBadge(kSentBadgeHeightPx) },
        { u"deleted.png"_s, drawDeleted() },
        { u"broadcast.png"_s, drawBroadcast() },
    };
}
