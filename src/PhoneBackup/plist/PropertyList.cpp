#include "PhoneBackup/plist/PropertyList.h"

#include "PhoneBackup/plist/BinaryPropertyList.h"
#include "PhoneBackup/plist/XmlPropertyList.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QFile>

DATAEXPORT_USE_TR(DataExport);

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
    QString why;
    if (!CCommonUtils::openForReading(file, &why)) {
        if (!file.exists())
            return Error { Fault::NotFound, path, tr("“%1” is missing.").arg(path) };
        return Error { Fault::Io, path, tr("“%1” could not be read: %2.").arg(path, why) };
    }
    if (file.size() > kMaxBytes) {
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

QVariant PropertyList::value(const char *key) const
{
    return isDict() ? m_root.toMap().value(QString::fromUtf8(key)) : QVariant();
}

} // namespace PhoneBackup
