#ifndef PLUGINS_HEIF_HEIFSTRUCTURE_H
#define PLUGINS_HEIF_HEIFSTRUCTURE_H

#include "HevcPicture.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QSize>
#include <QTransform>

#include <map>
#include <optional>
#include <vector>

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
    Bounded, whatever the file says: at most kMaxMetaBytes are held, and counts have limits.
*/
class HeifStructure
{
public:
    static constexpr qint64 kMaxMetaBytes = 16LL * 1024 * 1024;

    //! Of the file in \a device, which can seek and stands at its start, but not afterwards.
    explicit HeifStructure(QIODevice &device);

    //! Whether the pictures cost no more to decode than the sizes that the file states.
    bool isSafe();

    //! Whether the file holds nothing but a sequence, whose first picture is then the main one.
    bool isSequence() const { return m_isSequence; }

    /*!
        Where the main picture of a safe file is, if HEVC is all that is needed to decode it, with
        no crop. Images that belong to it, such as its transparency, are not looked at.
    */
    std::optional<HevcPicture> hevcPicture();

private:
    struct Item
    {
        quint32 type = 0;
        QSize size; // as stated, before turns and crops
        int changes = 0; // turns, flips and crops
        bool isCropped = false;
        QTransform turn; // all turns and flips
        std::optional<StatedColours> colours;
        FileExtent configuration { 0, 0 }; // the coder's
        std::vector<FileExtent> extents; // of its data, in this order
        std::vector<quint32> inputs; // what it is made of
        std::vector<quint32> thumbnails; // items that are smaller versions of it
        std::vector<quint32> auxiliaries; // items that belong to it, such as its transparency
    };

    bool readBoxes();
    bool parseMeta(QByteArrayView meta);
    bool parseItems(QByteArrayView iinf);
    bool parseLocations(QByteArrayView iloc, QByteArrayView idat);
    bool parseProperties(QByteArrayView iprp);
    bool addProperty(Item &item, quint32 type, QByteArrayView content) const;
    bool parseReferences(QByteArrayView iref);
    bool parseMovie(QByteArrayView moov);

    bool hasSafeItems() const;
    bool isSafePicture(quint32 id);
    bool isSafeImage(const Item &item);
    bool isSafeInput(quint32 id);
    bool isSafeGrid(const Item &grid);
    std::optional<QSize> gridTiles(const Item &grid); // columns and rows
    bool isSafeHevc(const Item &item);
    bool isSafeAv1(const Item &item);

    const Item *find(quint32 id) const;
    FileExtent fileExtent(QByteArrayView ofMeta) const;
    QByteArray read(const std::vector<FileExtent> &extents, qint64 at, qint64 size);

    QIODevice &m_device;
    QByteArray m_meta; // or the movie, in a sequence
    qint64 m_metaAt = 0; // in the file
    bool m_isSequence = false;
    quint32 m_primary = 0;
    std::map<quint32, Item> m_items;
    int m_reads = 0;
    qint64 m_codedBytes = 0; // that decoding would read
};

#endif
