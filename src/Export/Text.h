#ifndef EXPORT_TEXT_H
#define EXPORT_TEXT_H

#include <QString>

//! Texts for a person: numbers, sizes, times.
namespace Export {

/*!
    \a text with every character replaced that would steer a terminal or turn the direction of
    writing: names in a backup come from strangers.
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
