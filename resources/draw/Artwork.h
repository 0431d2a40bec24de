#ifndef DRAW_ARTWORK_H
#define DRAW_ARTWORK_H

#include <QImage>
#include <QList>
#include <QPainter>
#include <QString>

//! One image file of the pages.
struct Artwork
{
    QString name; //!< File name.
    QImage image;
};

//! The nine parts of each kind of speech bubble.
QList<Artwork> drawBubbles();

//! Small marks: not delivered, deleted.
QList<Artwork> drawMarks();

//! What stands for pictures and videos that a page cannot show.
QList<Artwork> drawPlaceholders();

//! What stands in chat bubbles for media that are no pictures.
QList<Artwork> drawIcons();

// The colours of what stands in for something.
inline constexpr QColor kCard(0xf3, 0xf4, 0xf7);
inline constexpr QColor kRim(0xc3, 0xc8, 0xd1);
inline constexpr QColor kInk(0x8b, 0x93, 0xa1);

//! The card that symbols are drawn on, over the whole of \a size; sets up \a painter for them.
inline void drawCard(QPainter &painter, QSize size)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(kRim, 1));
    painter.setBrush(kCard);
    painter.drawRoundedRect(QRectF(0.5, 0.5, size.width() - 1, size.height() - 1), 8, 8);
    painter.setPen(Qt::NoPen);
}

//! An empty, transparent image.
inline QImage canvas(int widthPx, int heightPx)
{
    QImage image(widthPx, heightPx, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    return image;
}

#endif
