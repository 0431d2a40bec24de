#include "Export/Backups.h"

#include "platform/CCommonUtils.h"

using namespace Qt::StringLiterals;

namespace Export {

std::variant<QList<BackupInfo>, Failure> backupsAt(const QString &path)
{
    auto found = PhoneBackup::findBackups(path);
    if (!found)
        return failureOf(found.error());
    return found.take();
}

Failure severalBackups(const QString &path, qsizetype count)
{
    return { Failure::Cause::Unsuitable,
             u"There are %1 backups in “%2”."_s.arg(count).arg(path),
             {},
             u"Give the folder of one of them as BACKUP."_s };
}

std::variant<std::unique_ptr<Backup>, Failure> openBackup(const BackupInfo &info,
                                                          const MessageFilter &messages,
                                                          const KeepGoing &keepGoing,
                                                          const Password &password)
{
    auto opened = Backup::open(info.path, keepGoing, password);
    if (!opened)
        return failureOf(opened.error());
    auto backup = opened.take();
    backup->setMessageFilter(messages);
    return backup;
}

QString dateText(const BackupInfo &info)
{
    return info.date.isValid() ? CCommonUtils::datetimeToMinute(info.date, true) : u"no date"_s;
}

QString describe(const BackupInfo &info)
{
    const QString phone = phoneText(info);
    const QString traits = phone.isEmpty() ? QString() : u" (%1)"_s.arg(phone);
    return info.displayName + traits + u", "_s + dateText(info);
}

QString phoneText(const BackupInfo &info)
{
    QStringList parts;
    if (!info.productName.isEmpty())
        parts += info.productName;
    if (!info.productVersion.isEmpty())
        parts += u"version "_s + info.productVersion;
    return parts.join(u", "_s);
}

} // namespace Export
