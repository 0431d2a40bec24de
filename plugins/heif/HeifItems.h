#ifndef PLUGINS_HEIF_HEIFITEMS_H
#define PLUGINS_HEIF_HEIFITEMS_H

#include "HevcPicture.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QSize>
#include <QTransform>

#include <map>
#include <optional>
#include <vector>

class QIODevice;

//! What a HEIF file says of one of its items: a picture, a part of one, or remarks.
struct HeifItem
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

/*!
    \brief The items of a HEIF file, as it states them.

    Nothing is judged here but the form: a file that says a thing twice is refused, since it could
    mean one to us and the other to the decoding library. Of a sequence its first picture is the
    only item.

    \par Cost
    Bounded, whatever the file says: at most kMaxMetaBytes are held, and counts have limits.
*/
class HeifItems
{
public:
    static constexpr qint64 kMaxMetaBytes = 16LL * 1024 * 1024;

    //! Of the file in \a device, which can seek and stands at its start, but not afterwards.
    explicit HeifItems(QIODevice &device);

    //! Reads what the file states. \return false when it has no such form.
    bool parse();

    //! Whether the file holds nothing but a sequence.
    bool isSequence() const { return m_isSequence; }

    //! The main picture's number.
    quint32 primary() const { return m_primary; }

    const std::map<quint32, HeifItem> &all() const { return m_items; }

    //! The item of that number; null when there is none.
    const HeifItem *find(quint32 id) const;

    /*!
        \a size bytes from \a at on, of those that \a extents hold together. Less when the file or
        the extents end before; nothing when there was too much of it.
    */
    QByteArray read(const std::vector<FileExtent> &extents, qint64 at, qint64 size);

private:
    bool parseMeta(QByteArrayView meta);
    bool parseItems(QByteArrayView iinf);
    bool parseLocations(QByteArrayView iloc, QByteArrayView idat);
    bool parseProperties(QByteArrayView iprp);
    bool addProperty(HeifItem &item, quint32 type, QByteArrayView content) const;
    bool parseReferences(QByteArrayView iref);
    bool parseMovie(QByteArrayView moov);
    FileExtent fileExtent(QByteArrayView ofMeta) const;

    QIODevice &m_device;
    QByteArray m_meta; // or the movie, in a sequence
    qint64 m_metaAt = 0; // in the file
    bool m_isSequence = false;
    quint32 m_primary = 0;
    std::map<quint32, HeifItem> m_items;
    int m_reads = 0;
};

#endif
