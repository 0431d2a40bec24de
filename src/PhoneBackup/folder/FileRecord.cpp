#include "folder/FileRecord.h"

#include "plist/KeyedArchive.h"
#include "plist/PropertyList.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// 0 and what lies outside 1970 to 2200 means that there is no date.
QDateTime fromUnix(const QVariant &value)
{
    constexpr qint64 kYear2200 = 7258118400;
    bool ok = false;
    const qint64 seconds = value.toLongLong(&ok);
    if (!ok || seconds <= 0 || seconds >= kYear2200)
        return {};
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
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
    const QVariant attributes = graph.resolve(root.value(u"ExtendedAttributes"_s));
    record.attributes = attributes.typeId() == QMetaType::QVariantMap
        ? graph.decode(attributes).toByteArray()
        : attributes.toByteArray();
    return record;
}

QMap<QString, QByteArray> FileRecord::extendedAttributes() const
{
    QMap<QString, QByteArray> result;
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
