#ifndef SAMPLE_MEDIAPOOL_H
#define SAMPLE_MEDIAPOOL_H

#include "sample/Options.h"
#include "sample/Random.h"

#include <QDateTime>
#include <QImage>

#include <map>

namespace Sample {

/*!
    \brief Pictures and films in any number: a few dozen drawn ones, each copy told apart by filler.

    \par Sizes
    With sizes asked for, contents are drawn so small that they fit, then filled up behind their
    end, where viewers do not look. A content that cannot be made small enough stays longer.
    \par Memory
    The drawn ones only, whatever the number of contents asked for.
*/
class MediaPool
{
public:
    MediaPool(const Options &options, const char *topic);

    //! A landscape as JPEG, turned and marked for \a orientation; see withExif().
    QByteArray jpeg(const QDateTime &taken, int orientation = 1);
    //! The same as HEIC, with a smaller version in it; never filled up.
    QByteArray heic(const QDateTime &taken, int orientation);
    //! A picture of the screen as PNG.
    QByteArray screenshot();
    //! A film; a \a brief one is the companion of a live photo.
    QByteArray movie(const QDateTime &taken, bool brief);
    //! A small landscape as JPEG, never filled up.
    QByteArray thumbnail();

private:
    QByteArray filledPicture(QByteArray content);
    qint64 nextSizeBytes();
    QByteArray filler(qint64 sizeBytes);

    const QList<qint64> m_sizesBytes;
    const qint64 m_largestDrawnBytes; //!< 0: no limit.
    Random m_random;
    QByteArray m_noise;
    qsizetype m_sizesUsed = 0;
    int m_jpegsMade = 0;
    int m_screenshotsMade = 0;
    int m_moviesMade = 0;
    std::map<std::pair<int, int>, QByteArray> m_jpegs; //!< By landscape and orientation.
    std::map<int, QByteArray> m_screenshots;
    std::map<std::pair<int, bool>, QByteArray> m_movies;
};

} // namespace Sample

#endif
