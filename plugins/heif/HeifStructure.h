#ifndef PLUGINS_HEIF_HEIFSTRUCTURE_H
#define PLUGINS_HEIF_HEIFSTRUCTURE_H

#include "HeifItems.h"

#include <QSize>

#include <optional>

class QIODevice;

/*!
    \brief What a HEIF file says of its pictures, read before anything is decoded.

    The decoding library follows references without looking for circles, and allocates and decodes
    whatever the coded data asks for: the sizes that a file states bind it to nothing. So they are
    compared here, and a file is refused when decoding its main picture, a smaller version of that
    or an image that belongs to either (its transparency) would
    \li meet an item that is not coded as HEVC or AV1, nor a grid of such, nor one of these under
        another name; composed images (overlays) are among what is refused, circles too;
    \li meet a grid whose tiles do not fit its rows and columns, or that together are far larger
        than the grid, or an input or attached image that is far larger than its picture;
    \li meet coded data whose own header gives a larger size than the file states for the item, but
        for whole blocks; whose header cannot be read; that holds more than one picture; or one
        that refers to others.

    So is a file that says a thing twice, since it could mean one to us and the other to the
    library; and one whose items together have far more data than the file. Otherwise, items that
    the pictures do not lead to are not looked at, nor smaller versions and attached images that the
    library cannot decode.

    \par Cost
    Bounded, whatever the file says; see HeifItems.
*/
class HeifStructure
{
public:
    //! Of the file in \a device, which can seek and stands at its start, but not afterwards.
    explicit HeifStructure(QIODevice &device);

    //! Whether the pictures cost no more to decode than the sizes that the file states.
    bool isSafe();

    //! Whether the file holds nothing but a sequence, whose first picture is then the main one.
    bool isSequence() const { return m_items.isSequence(); }

    /*!
        Where the main picture of a safe file is, if HEVC is all that is needed to decode it, with
        no crop. Images that belong to it, such as its transparency, are not looked at.
    */
    std::optional<HevcPicture> hevcPicture();

private:
    bool hasSafeItems() const;
    bool isSafePicture(quint32 id);
    bool isSafeImage(const HeifItem &item);
    bool isSafeInput(quint32 id);
    bool isSafeGrid(const HeifItem &grid);
    std::optional<QSize> gridTiles(const HeifItem &grid); // columns and rows
    bool isSafeHevc(const HeifItem &item);
    bool isSafeAv1(const HeifItem &item);

    QIODevice &m_device;
    HeifItems m_items;
    qint64 m_codedBytes = 0; // that decoding would read
};

#endif
