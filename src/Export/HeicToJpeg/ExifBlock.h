#ifndef EXPORT_HEICTOJPEG_EXIFBLOCK_H
#define EXPORT_HEICTOJPEG_EXIFBLOCK_H

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QSize>

namespace Export::HeicToJpeg {

/*!
    \brief What a camera noted of a picture: directories of entries, laid out as in a TIFF file.

    Nothing in it is taken at its word: an entry whose value lies outside is as good as not there,
    and directories that lead to each other without end are followed a few steps only.
*/
class ExifBlock final
{
public:
    //! \a bytes begin with the order of bytes, behind the name "Exif".
    explicit ExifBlock(const QByteArray &bytes);

    //! Whether its main directory is there.
    bool isReadable() const;

    /*!
        Notes that the picture stands upright and is of \a size, in the entries that tell it. All
        else stays where it is: makers' notes hold places of their own.
    */
    void setUpright(QSize size);

    /*!
        All that fits into \a maxSize bytes when the note of the camera's maker, the smaller picture
        and the longest values are left out: date and place are short. Empty when nothing is left.
    */
    QByteArray compacted(qsizetype maxSize) const;

    const QByteArray &bytes() const { return m_bytes; }

private:
    struct Entry
    {
        quint16 tag = 0;
        qsizetype at = 0;
    };
    struct Copy
    {
        QByteArray bytes;
        qsizetype maxSize = 0;
        qsizetype maxValue = 0; //!< How long a value may be.
    };

    template <typename Number>
    Number number(qsizetype at) const;
    template <typename Number>
    void store(Number number, QByteArray &to, qsizetype at) const;
    void setNumber(quint32 number, const Entry &entry);

    qsizetype mainDirectory() const;
    QList<Entry> entries(qsizetype directory) const;
    QByteArrayView value(const Entry &entry) const;
    QList<Entry> wanted(qsizetype directory, qsizetype maxValue) const;
    bool copy(qsizetype directory, int steps, Copy &to) const;

    QByteArray m_bytes;
    bool m_isBigEndian;
};

} // namespace Export::HeicToJpeg

#endif
