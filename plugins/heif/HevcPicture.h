#ifndef PLUGINS_HEIF_HEVCPICTURE_H
#define PLUGINS_HEIF_HEVCPICTURE_H

#include <QSize>
#include <QTransform>

#include <vector>

//! A part of a file.
struct FileExtent
{
    qint64 at;
    qint64 size;
};

//! Where a file holds a picture that is coded as HEVC: in one tile, or in several of one size.
struct HevcPicture
{
    struct Tile
    {
        FileExtent configuration; //!< The coder's.
        std::vector<FileExtent> extents; //!< Of the coded data, in this order.
    };

    QSize size; //!< In pixels, before \c turn.
    QSize tileSize;
    int columns = 1;
    std::vector<Tile> tiles; //!< Row by row; together they cover the picture.
    QTransform turn; //!< What turns or flips the decoded picture upright.
};

#endif
