#ifndef PLUGINS_HEIF_HEVCPICTURE_H
#define PLUGINS_HEIF_HEVCPICTURE_H

#include <QSize>
#include <QTransform>

#include <optional>
#include <vector>

//! A part of a file.
struct FileExtent
{
    qint64 at;
    qint64 size;
};

//! What a file says of colours, in numbers of ISO/IEC 23091-2.
struct StatedColours
{
    int primaries; //!< What red, green and blue are.
    int matrix; //!< How brightness and two differences of colour follow from them.
    bool isFullRange; //!< Whether black is 0, as opposed to 16 of 255.

    bool operator==(const StatedColours &other) const = default;
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
    std::optional<StatedColours> colours; //!< When not stated, the coded data say it.
    QTransform turn; //!< What turns or flips the decoded picture upright.
};

#endif
