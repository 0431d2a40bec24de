#ifndef SAMPLE_PROPERTYLIST_H
#define SAMPLE_PROPERTYLIST_H

#include <QByteArray>
#include <QVariant>

namespace Sample {

//! A reference of a keyed archive: an index into its objects.
struct PlistUid
{
    quint64 index = 0;
};

/*!
    \brief Turns values into property lists.

    Takes bool, whole and real numbers, QString, QByteArray, QDateTime, PlistUid, and lists, string
    lists and maps of these; anything else becomes an empty string. Keys come in the map's order.
*/
QByteArray binaryPropertyList(const QVariant &value);
QByteArray xmlPropertyList(const QVariant &value);

} // namespace Sample

Q_DECLARE_METATYPE(Sample::PlistUid)

#endif
