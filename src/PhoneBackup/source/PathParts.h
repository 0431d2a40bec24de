#ifndef PHONEBACKUP_SOURCE_PATHPARTS_H
#define PHONEBACKUP_SOURCE_PATHPARTS_H

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

//! The parts of a path as the index stores it: bytes, parted by slashes.
namespace PhoneBackup::PathParts {

//! What follows the last slash.
inline QByteArrayView name(QByteArrayView path)
{
    return path.sliced(path.lastIndexOf('/') + 1);
}

//! What precedes the last slash, empty when there is none.
inline QByteArrayView folder(QByteArrayView path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArrayView() : path.first(slash);
}

//! The name without its extension.
inline QByteArrayView stem(QByteArrayView path)
{
    const QByteArrayView last = name(path);
    const qsizetype dot = last.lastIndexOf('.');
    return dot <= 0 ? last : last.first(dot);
}

//! The extension without its dot, as it is written; empty when there is none.
inline QByteArrayView extension(QByteArrayView path)
{
    const QByteArrayView last = name(path);
    const qsizetype dot = last.lastIndexOf('.');
    return dot <= 0 ? QByteArrayView() : last.sliced(dot + 1);
}

//! Whether a part of the path begins with a dot. "." and ".." do not count: no phone hides so.
bool isHidden(QByteArrayView path);

inline QString text(QByteArrayView bytes)
{
    return QString::fromUtf8(bytes);
}

//! Order of names as a person expects it: case aside, and "IMG_9" before "IMG_10".
int compareNatural(QByteArrayView a, QByteArrayView b);

} // namespace PhoneBackup::PathParts

#endif
