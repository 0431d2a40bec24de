#include "Export/Backups.h"

#include "Export/Observer.h"
#include "platform/CCommonUtils.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace Export {

namespace {

constexpr int kDonePercent = 100;

} // namespace

std::variant<BackupInfo, Refusal> chooseBackup(const QString &path)
{
    auto found = PhoneBackup::findBackups(path);
    if (!found)
        return Refusal { failureOf(found.error()), {} };
    const QList<BackupInfo> backups = found.take();
    if (backups.size() == 1)
        return backups.first();
    return Refusal { { Failure::Cause::Unsuitable,
                       u"There are %1 backups in “%2”."_s.arg(backups.size()).arg(path),
                       {},
                       u"Specify the folder of one of them as BACKUP."_s },
                     backups };
}

std::variant<std::unique_ptr<Backup>, Failure> openBackup(const BackupInfo &info,
                                                          const MessageFilter &messages,
                                                          Observer &observer,
                                                          const KeepGoing &keepGoing)
{
    std::optional<Failure> wrong;
    for (;;) {
        PhoneBackup::Password password;
        if (info.encrypted) {
            auto answer = observer.password(info, wrong ? &*wrong : nullptr);
            if (const auto *none = std::get_if<Failure>(&answer))
                return *none;
            password.text = std::get<Secret>(std::move(answer));
            password.progress = [&observer](int percent) {
                if (percent < kDonePercent)
                    observer.makingKeys(percent);
                else
                    observer.readingIndex();
            };
        } else {
            observer.readingIndex();
        }
        auto opened = Backup::open(info.path, keepGoing, password);
        if (opened) {
            observer.opened(info);
            opened.value()->setMessageFilter(messages);
            return opened.take();
        }
        wrong = failureOf(opened.error());
        if (wrong->cause != Failure::Cause::WrongPassword)
            return *wrong;
    }
}

Failure noPassword(const BackupInfo &info)
{
    return { Failure::Cause::NoPassword,
             u"The backup “%1” is encrypted, and no password was given."_s.arg(info.displayName) };
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
