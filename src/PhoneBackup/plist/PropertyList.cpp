#include "PhoneBackup/plist/PropertyList.h"

#include "PhoneBackup/base/OpenFile.h"
#include "PhoneBackup/plist/BinaryPropertyList.h"
#include "PhoneBackup/plist/XmlPropertyList.h"

#include <QFile>

namespace PhoneBackup {

PropertyList PropertyList::parse(const QByteArray &data)
{
    PropertyList list;
    if (data.size() <= kMaxBytes) {
        list.m_root =
            data.startsWith("bplist") ? readBinaryPropertyList(data) : readXmlPropertyList(data);
    }
    return list;
}

Result<PropertyList> PropertyList::read(const QString &path)
{
    QFile file(path);
    Notice why;
    if (!openForReading(file, &why)) {
        if (!file.exists())
            return Error { Fault::NotFound, path, Notice("base.missing", { path }) };
        return Error { Fault::Io, path, Notice("base.unreadable", { path, why }) };
    }
    if (file.size() > kMaxBytes) {
        return Error { Fault::Corrupt, path, Notice("plist.tooLarge", { path }) };
    }
    const QByteArray data = file.readAll();
    if (data.size() < file.size()) {
        return Error { Fault::Io, path, Notice("base.unreadable", { path, file.errorString() }) };
    }
    PropertyList list = parse(data);
    if (list.isNull()) {
        return Error { Fault::Corrupt, path, Notice("plist.damaged", { path }) };
    }
    return list;
}

QVariant PropertyList::value(const char *key) const
{
    return isDict() ? m_root.toMap().value(QString::fromUtf8(key)) : QVariant();
}

} // namespace PhoneBackup
