#include "plist/KeyedArchive.h"

#include "platform/CCommonUtils.h"
#include "plist/PropertyList.h"

#include <QUrl>

#include <algorithm>
#include <optional>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxDepth = 64;
constexpr int kMaxValues = 100'000;

// XML writes a reference as a dictionary of its own.
std::optional<quint64> reference(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<PlistUid>())
        return value.value<PlistUid>().index;
    if (value.typeId() == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        const QVariant index = map.size() == 1 ? map.value(u"CF$UID"_s) : QVariant();
        if (index.typeId() == QMetaType::LongLong)
            return index.toULongLong();
    }
    return std::nullopt;
}

} // namespace

KeyedArchive::KeyedArchive(const QByteArray &data)
{
    const PropertyList list = PropertyList::parse(data);
    const QVariant objects = list.value("$objects");
    const QVariant top = list.value("$top");
    if (objects.typeId() != QMetaType::QVariantList || top.typeId() != QMetaType::QVariantMap)
        return;
    m_objects = objects.toList();
    m_root = top.toMap().value(u"root"_s);
    m_valid = true;
}

QVariantMap KeyedArchive::root() const
{
    return resolve(m_root).toMap();
}

QVariant KeyedArchive::resolve(const QVariant &value) const
{
    const std::optional<quint64> index = reference(value);
    if (!index)
        return value;
    // Number 0 stands for nil.
    if (*index == 0 || *index >= quint64(m_objects.size()))
        return {};
    const QVariant &object = m_objects.at(qsizetype(*index));
    return reference(object) ? QVariant() : object;
}

QVariant KeyedArchive::decode(const QVariant &value) const
{
    int budget = kMaxValues;
    return decode(value, 0, budget);
}

QVariant KeyedArchive::decode(const QVariant &value, int depth, int &budget) const
{
    if (depth > kMaxDepth || --budget < 0)
        return {};
    QVariant object = resolve(value);
    if (object.typeId() == QMetaType::QVariantList)
        return decodeList(object, depth, budget);
    if (object.typeId() == QMetaType::QVariantMap)
        return decodeObject(object.toMap(), depth, budget);
    return object;
}

QVariant KeyedArchive::decodeList(const QVariant &value, int depth, int &budget) const
{
    QVariantList list;
    const QVariantList stored = resolve(value).toList();
    for (const QVariant &element : stored) {
        if (budget < 0)
            break;
        list.append(decode(element, depth + 1, budget));
    }
    return list;
}

QVariant KeyedArchive::decodeObject(const QVariantMap &object, int depth, int &budget) const
{
    if (object.contains(u"NS.keys"_s)) {
        const QVariantList keys = decodeList(object.value(u"NS.keys"_s), depth, budget).toList();
        const QVariantList values =
            decodeList(object.value(u"NS.objects"_s), depth, budget).toList();
        QVariantMap map;
        for (qsizetype i = 0; i < std::min(keys.size(), values.size()); ++i)
            map.insert(keys.at(i).toString(), values.at(i));
        return map;
    }
    if (object.contains(u"NS.objects"_s))
        return decodeList(object.value(u"NS.objects"_s), depth, budget);
    if (object.contains(u"NS.string"_s))
        return resolve(object.value(u"NS.string"_s)).toString();
    if (object.contains(u"NS.bytes"_s))
        return QString::fromUtf8(resolve(object.value(u"NS.bytes"_s)).toByteArray());
    if (object.contains(u"NS.data"_s))
        return resolve(object.value(u"NS.data"_s)).toByteArray();
    if (object.contains(u"NS.time"_s))
        return CCommonUtils::buildDateTimeBase2001(object.value(u"NS.time"_s).toDouble());
    if (object.contains(u"NS.relative"_s)) {
        const QUrl relative(decode(object.value(u"NS.relative"_s), depth + 1, budget).toString());
        const QUrl base(decode(object.value(u"NS.base"_s), depth + 1, budget).toString());
        return base.isEmpty() ? relative : base.resolved(relative);
    }
    QVariantMap map;
    for (auto it = object.cbegin(); it != object.cend() && budget >= 0; ++it) {
        if (it.key() != "$class"_L1)
            map.insert(it.key(), decode(it.value(), depth + 1, budget));
    }
    return map;
}

} // namespace PhoneBackup
