#ifndef EXPORT_TEXT_H
#define EXPORT_TEXT_H

#include <QString>

//! Numbers, sizes and times for people to read.
namespace Export {

/*!
    \a text without characters that control a terminal or change the direction of writing, which are
    replaced: names in a backup can come from strangers.
*/
QString printable(const QString &text);

//! "12,480".
QString grouped(qint64 number);

//! "1 item", "12,480 items".
QString counted(qint64 number, const QString &one, const QString &many);

//! "3.4 MB".
QString sizeText(qint64 bytes);

//! "4:07" or "1:04:07", rounded to whole seconds.
QString durationText(double seconds);

} // namespace Export

#endif
