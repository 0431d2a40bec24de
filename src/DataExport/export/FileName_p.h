#ifndef DATAEXPORT_EXPORT_FILENAME_P_H
#define DATAEXPORT_EXPORT_FILENAME_P_H

#include <QString>

//! File names that a file system takes and a file manager shows.
namespace FileName {

//! What the usual file systems take, in bytes of UTF-8.
constexpr qsizetype kMaxBytes = 255;

//! What a number behind a name takes: " (2147483647)".
constexpr qsizetype kNumberBytes = 13;

//! Bytes that \a name takes on disk.
qsizetype bytes(QStringView name);

//! What of \a name takes no more than \a maxBytes, cut where a character begins.
QString cut(QStringView name, qsizetype maxBytes);

/*!
    The name that a file called \a name gets before its ending: safe, not hidden by leading dots,
    "_" when nothing is left, and cut where a character begins so that it takes no more than
    \a maxBytes.
*/
QString visible(const QString &name, qsizetype maxBytes);

} // namespace FileName

#endif
