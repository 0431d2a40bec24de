#ifndef DRAW_ARTWORK_H
#define DRAW_ARTWORK_H

#include <QImage>
#include <QList>
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

//! An empty, transparent image.
inline QImage canvas(int widthPx, int heightPx)
{
    QImage image(widthPx, heightPx, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    return image;
}

#endif
