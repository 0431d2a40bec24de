#ifndef DATAEXPORT_EXPORT_JPEGSCANS_P_H
#define DATAEXPORT_EXPORT_JPEGSCANS_P_H

#include <QtGlobal>

class QIODevice;

/*!
    \brief The passes in which a JPEG file stores its picture.

    A decoder that gets all of the picture in one pass makes it line by line. Otherwise it holds the
    whole picture, however small that is to become, and goes over it in each of the passes; these
    take a few bytes each, if a file wants it.
*/
class JpegScans
{
public:
    //! Of the picture in \a source, which must be able to go back; its position stays.
    static JpegScans read(QIODevice &source);

    //! Whether a decoder holds the whole picture. False for what is no JPEG file.
    bool areHeldWhole() const { return m_areHeldWhole; }

    //! How many there are; 0 where the picture is not held whole.
    int count() const { return m_count; }

    //! Whether to go over a picture of so many pixels in all of the passes takes too long.
    bool areTooMany(qint64 pixels) const;

private:
    bool m_areHeldWhole = false;
    int m_count = 0;
};

#endif
