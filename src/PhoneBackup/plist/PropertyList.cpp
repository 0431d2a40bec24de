#include "plist/PropertyList.h"

#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"
#include "plist/BinaryPlistCheck.h"

#include <QDateTime>
#include <QFile>

#include <plist/plist.h>

#include <cstdlib>

namespace PhoneBackup {

using DataExport::tr;

namespace {

constexpr qint64 kMaxSize = qint64(256) << 20;

QVariant toValue(plist_t node);

QVariant dictValue(plist_t node)
{
    QVariantMap map;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    for (;;) {
        char *key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iterator, &key, &value);
        if (value && key)
            map.insert(QString::fromUtf8(key), toValue(value));
        std::free(key); // NOLINT(cppcoreguidelines-no-malloc): the parser's own allocation
        if (!value)
            break;
    }
    std::free(iterator); // NOLINT(cppcoreguidelines-no-malloc): likewise
    return map;
}

QVariant arrayValue(plist_t node)
{
    QVariantList list;
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    for (;;) {
        plist_t value = nullptr;
        plist_array_next_item(node, iterator, &value);
        if (!value)
            break;
        list.append(toValue(value));
    }
    std::free(iterator); // NOLINT(cppcoreguidelines-no-malloc): the parser's own allocation
    return list;
}

QVariant dateValue(plist_t node)
{
    constexpr qint64 kBase2001Ms = 978307200000;
    qint32 seconds = 0;
    qint32 microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    const qint64 ms = kBase2001Ms + qint64(seconds) * 1000 + microseconds / 1000;
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
}

QVariant toValue(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        quint8 value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_UINT: {
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return static_cast<qint64>(value); // negative numbers come as their two's complement
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_STRING: {
        uint64_t size = 0;
        const char *text = plist_get_string_ptr(node, &size);
        return QString::fromUtf8(text, text ? qsizetype(size) : 0);
    }
    case PLIST_DATA: {
        uint64_t size = 0;
        const char *bytes = plist_get_data_ptr(node, &size);
        return QByteArray(bytes, bytes ? qsizetype(size) : 0);
    }
    case PLIST_UID: {
        PlistUid uid;
        uint64_t value = 0;
        plist_get_uid_val(node, &value);
        uid.index = value;
        return QVariant::fromValue(uid);
    }
    case PLIST_DATE:
        return dateValue(node);
    case PLIST_ARRAY:
        return arrayValue(node);
    case PLIST_DICT:
        return dictValue(node);
    default:
        return {};
    }
}

} // namespace

PropertyList PropertyList::parse(const QByteArray &data)
{
    PropertyList list;
    if (data.size() > kMaxSize)
        return list;
    plist_t root = nullptr;
    if (data.startsWith("bplist")) {
        if (isExpandableBinaryPlist(data))
            plist_from_bin(data.constData(), static_cast<quint32>(data.size()), &root);
    } else if (isExpandableXmlPlist(data)) {
        const qsizetype start = data.startsWith("\xEF\xBB\xBF") ? 3 : 0;
        plist_from_xml(data.constData() + start, static_cast<quint32>(data.size() - start), &root);
    }
    list.m_root.reset(root);
    return list;
}

Result<PropertyList> PropertyList::read(const QString &path)
{
    QFile file(path);
    QString why;
    if (!CCommonUtils::openForReading(file, &why)) {
        if (!file.exists())
            return Error { Fault::NotFound, path, tr("“%1” is missing.").arg(path) };
        return Error { Fault::Io, path, tr("“%1” could not be read: %2.").arg(path, why) };
    }
    if (file.size() > kMaxSize) {
        return Error { Fault::Corrupt,
                       path,
                       tr("“%1” is too large for a property list.").arg(path) };
    }
    const QByteArray data = file.readAll();
    if (data.size() < file.size()) {
        return Error { Fault::Io,
                       path,
                       tr("“%1” could not be read: %2.").arg(path, file.errorString()) };
    }
    PropertyList list = parse(data);
    if (list.isNull()) {
        return Error { Fault::Corrupt,
                       path,
                       tr("“%1” is damaged: it is not a property list.").arg(path) };
    }
    return list;
}

PropertyList::PropertyList() = default;
PropertyList::~PropertyList() = default;
PropertyList::PropertyList(PropertyList &&other) noexcept = default;
PropertyList &PropertyList::operator=(PropertyList &&other) noexcept = default;

bool PropertyList::isNull() const
{
    return !m_root;
}

bool PropertyList::isDict() const
{
    return m_root && plist_get_node_type(m_root.get()) == PLIST_DICT;
}

QVariant PropertyList::value(const char *key) const
{
    plist_t node = isDict() ? plist_dict_get_item(m_root.get(), key) : nullptr;
    return node ? toValue(node) : QVariant();
}

QVariant PropertyList::toVariant() const
{
    return m_root ? toValue(m_root.get()) : QVariant();
}

void PropertyList::Release::operator()(void *node) const
{
    plist_free(node);
}

} // namespace PhoneBackup
