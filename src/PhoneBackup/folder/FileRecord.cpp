#include "PhoneBackup/folder/FileRecord.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/plist/KeyedArchive.h"
#include "PhoneBackup/plist/PropertyList.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

QDateTime fromUnix(const QVariant &value)
{
    bool ok = false;
    const qint64 seconds = value.toLongLong(&ok);
    return ok ? PhoneTime::sinceUnix(double(seconds)) : QDateTime();
}

// Data, or an object that wraps it.
QByteArray bytes(const KeyedArchive &graph, const QVariant &value)
{
    const QVariant found = graph.resolve(value);
    return found.typeId() == QMetaType::QVariantMap ? graph.decode(found).toByteArray()
                                                    : found.toByteArray();
}

} // namespace

FileRecord FileRecord::parse(const QByteArray &archive)
{
    FileRecord record;
    const KeyedArchive graph(archive);
    if (!graph.isValid())
        return record;
    const QVariantMap root = graph.root();
    record.mode = root.value(u"Mode"_s).toUInt();
    bool ok = false;
    const qint64 size = root.value(u"Size"_s).toLongLong(&ok);
    record.sizeBytes = ok && size >= 0 ? size : -1;
    record.modified = fromUnix(root.value(u"LastModified"_s));
    record.created = fromUnix(root.value(u"Birth"_s));
    record.attributes = bytes(graph, root.value(u"ExtendedAttributes"_s));
    record.encryptionKey = bytes(graph, root.value(u"EncryptionKey"_s));
    return record;
}

QMap<QString, QByteArray> FileRecord::extendedAttributes() const
{
    QMap<QString, QByteArray> result = properties;
    if (attributes.isEmpty())
        return result;
    const QVariantMap values = PropertyList::parse(attributes).toVariant().toMap();
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (it->canConvert<QByteArray>())
            result.insert(it.key(), it->toByteArray());
    }
    return result;
}

} // namespace PhoneBackup
