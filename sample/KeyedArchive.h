#ifndef SAMPLE_KEYEDARCHIVE_H
#define SAMPLE_KEYEDARCHIVE_H

#include <QByteArray>
#include <QVariantMap>

namespace Sample {

//! The member of a map that makes it an object of the class it names, not a dictionary.
inline const QString kArchivedClass = QStringLiteral("$class");

/*!
    \brief A keyed archive, as the phone's programs store their objects.

    Maps become dictionaries, or with kArchivedClass objects with the other entries as members;
    strings, numbers and bytes stand for themselves.
*/
QByteArray keyedArchive(const QVariantMap &root);

} // namespace Sample

#endif
