#include "PhoneBackup/plist/KeyedArchive.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/plist/PropertyList.h"

#include <QUrl>
#include <QVarLengthArray>

#include <algorithm>
#include <optional>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaxDepth = 64;
constexpr qsizetype kMaxValues = 100'000;
constexpr qsizetype kValuesPerByte = 4;
constexpr qsizetype kTextPerValue = 64; // so many characters take as long to decode as a value
constexpr quint64 kNoReference = 0; // number 0 stands for nil

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

// Where decode() is, and how many values it may still make.
struct KeyedArchive::Walk
{
    qsizetype budget;
    QVarLengthArray<quint64, kMaxDepth> path; // numbers of the objects around the value
};

KeyedArchive::KeyedArchive(const QByteArray &data)
    : m_maxValues(std::min(kMaxValues, data.size() * kValuesPerByte))
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
    if (*index == kNoReference || *index >= quint64(m_objects.size()))
        return {};
    const QVariant &object = m_objects.at(qsizetype(*index));
    return reference(object) ? QVariant() : object;
}

QVariant KeyedArchive::decode(const QVariant &value) const
{
    Walk walk { m_maxValues, {} };
    return decode(value, walk);
}

QVariant KeyedArchive::decode(const QVariant &value, Walk &walk) const
{
    const quint64 number = reference(value).value_or(kNoReference);
    if (walk.path.size() > kMaxDepth || --walk.budget < 0
        || (number != kNoReference && walk.path.contains(number)))
        return {};
    walk.path.append(number);
    QVariant object = resolve(value);
    if (object.typeId() == QMetaType::QVariantList)
        object = decodeList(object, walk);
    else if (object.typeId() == QMetaType::QVariantMap)
        object = decodeObject(object.toMap(), walk);
    walk.path.removeLast();
    return object;
}

QVariant KeyedArchive::decodeList(const QVariant &value, Walk &walk) const
{
    QVariantList list;
    const QVariantList stored = resolve(value).toList();
    for (const QVariant &element : stored) {
        if (walk.budget < 0)
            break;
        list.append(decode(element, walk));
    }
    return list;
}

QVariant KeyedArchive::decodeObject(const QVariantMap &object, Walk &walk) const
{
    if (object.contains(u"NS.keys"_s)) {
        const QVariantList keys = decodeList(object.value(u"NS.keys"_s), walk).toList();
        const QVariantList values = decodeList(object.value(u"NS.objects"_s), walk).toList();
        QVariantMap map;
        for (qsizetype i = 0; i < std::min(keys.size(), values.size()); ++i)
            map.insert(keys.at(i).toString(), values.at(i));
        return map;
    }
    if (object.contains(u"NS.objects"_s))
        return decodeList(object.value(u"NS.objects"_s), walk);
    if (object.contains(u"NS.string"_s))
        return resolve(object.value(u"NS.string"_s)).toString();
    if (object.contains(u"NS.bytes"_s)) {
        const QByteArray bytes = resolve(object.value(u"NS.bytes"_s)).toByteArray();
        walk.budget -= bytes.size() / kTextPerValue;
        return QString::fromUtf8(bytes);
    }
    if (object.contains(u"NS.data"_s))
        return resolve(object.value(u"NS.data"_s)).toByteArray();
    if (object.contains(u"NS.time"_s))
        return PhoneTime::ofAnyYear(object.value(u"NS.time"_s).toDouble());
    if (object.contains(u"NS.relative"_s)) {
        const QString relative = decode(object.value(u"NS.relative"_s), walk).toString();
        walk.budget -= relative.size() / kTextPerValue;
        const QUrl base(decode(object.value(u"NS.base"_s), walk).toString());
        return base.isEmpty() ? QUrl(relative) : base.resolved(QUrl(relative));
    }
    QVariantMap map;
    for (auto it = object.cbegin(); it != object.cend() && walk.budget >= 0; ++it) {
        if (it.key() != "$class"_L1)
            map.insert(it.key(), decode(it.value(), walk));
    }
    return map;
}

} // namespace PhoneBackup
