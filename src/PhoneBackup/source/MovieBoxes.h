#ifndef PHONEBACKUP_SOURCE_MOVIEBOXES_H
#define PHONEBACKUP_SOURCE_MOVIEBOXES_H

#include <QByteArray>
#include <QByteArrayView>

#include <functional>

class QIODevice;

/*!
    Films and recordings that consist of boxes (ISO/IEC 14496-12): MP4, M4A, QuickTime. A box that
    states more bytes than there are ends what is read.
*/
namespace PhoneBackup::MovieBoxes {

//! The content of the first box \a type in \a data; empty when there is none.
QByteArrayView first(QByteArrayView data, QByteArrayView type);

//! Calls \a visit for each box of \a data with its type, 4 bytes, and its content.
void forEach(QByteArrayView data,
             const std::function<void(QByteArrayView type, QByteArrayView content)> &visit);

/*!
    The box "moov", which says what \a file holds; the sounds and pictures themselves are skipped.
    Empty when there is none, and when it has more than \a maxBytes.
*/
QByteArray movie(QIODevice &file, qint64 maxBytes);

} // namespace PhoneBackup::MovieBoxes

#endif
