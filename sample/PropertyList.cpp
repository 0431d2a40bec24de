#include "sample/PropertyList.h"

#include <QDateTime>
#include <QVariantMap>

#include <plist/plist.h>

#include <cstdlib>

namespace Sample {

namespace {

constexpr qint64 kUnixSecondsOf2001 = 978307200;

plist_t node(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return plist_new_bool(value.toBool() ? 1 : 0);
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return plist_new_uint(value.toULongLong());
    case QMetaType::Double:
        return plist_new_real(value.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return plist_new_data(bytes.constData(), static_cast<uint64_t>(bytes.size()));
    }
    case QMetaType::QDateTime: {
        const qint64 seconds = value.toDateTime().toSecsSinceEpoch() - kUnixSecondsOf2001;
        return plist_new_date(static_cast<int32_t>(seconds), 0);
    }
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        plist_t array = plist_new_array();
        const QVariantList items = value.toList();
        for (const QVariant &item : items)
            plist_array_append_item(array, node(item));
        return array;
    }
    case QMetaType::QVariantMap: {
        plist_t dict = plist_new_dict();
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            plist_dict_set_item(dict, it.key().toUtf8().constData(), node(it.value()));
        return dict;
    }
    default:
        break;
    }
    if (value.canConvert<PlistUid>() && value.typeId() == qMetaTypeId<PlistUid>())
        return plist_new_uid(value.value<PlistUid>().index);
    return plist_new_string(value.toString().toUtf8().constData());
}

using Encoder = decltype(&plist_to_bin);

QByteArray encode(const QVariant &value, Encoder encoder)
{
    plist_t root = node(value);
    char *bytes = nullptr;
    uint32_t length = 0;
    encoder(root, &bytes, &length);
    plist_free(root);
    QByteArray result(bytes, static_cast<qsizetype>(length));
    std::free(bytes);
    return result;
}

} // namespace

QByteArray binaryPropertyList(const QVariant &value)
{
    return encode(value, plist_to_bin);
}

QByteArray xmlPropertyList(const QVariant &value)
{
    return encode(value, plist_to_xml);
}

} // namespace Sample
