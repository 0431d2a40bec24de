#include "BackupAccess.h"

#include "Console.h"
#include "Interrupt.h"
#include "Options.h"
#include "PasswordSource.h"
#include "PhoneBackup/folder/BackupFinder.h"
#include "PhoneItems/words/Words.h"
#include "Text.h"
#include "platform/CCommonUtils.h"

using namespace Qt::StringLiterals;
using PhoneBackup::BackupInfo;

namespace Cli {

namespace {

QString dateText(const BackupInfo &info)
{
    return info.date.isValid() ? CCommonUtils::datetimeToMinute(info.date, true) : u"no date"_s;
}

NoChoice several(Console &console, const QString &path, const QList<BackupInfo> &backups)
{
    QList<QStringList> rows { { u"Device"_s, u"Date"_s, u"Size"_s, u"BACKUP"_s } };
    for (const BackupInfo &info : backups) {
        if (Interrupt::requested())
            return { stoppedEarly(), {}, {} };
        console.status(u"Measuring “%1” …"_s.arg(info.path));
        rows += { elided(info.displayName, 40),
                  dateText(info),
                  sizeText(PhoneBackup::backupSizeBytes(info.path)),
                  info.path };
    }
    return { { ExitCode::Usage,
               u"There are %1 backups in “%2”."_s.arg(backups.size()).arg(path),
               {},
               u"Give the folder of one of them as BACKUP."_s },
             backups,
             tableLines(rows, "llrl") };
}

// It takes some seconds: nobody is to believe that nothing happens.
void showKeyMaking(Console &console, int percent)
{
    if (percent >= 100)
        console.status(u"Reading the index of the backup …"_s);
    else if (console.isTerminal())
        console.status(u"Making the keys from the password … %1%"_s.arg(percent));
    else if (percent == 0)
        console.say(u"Making the keys from the password …"_s);
}

} // namespace

std::variant<BackupInfo, NoChoice> chooseBackup(Console &console, const QString &path)
{
    auto found = PhoneBackup::findBackups(path);
    if (!found)
        return NoChoice { failureOf(found.error()), {}, {} };
    const QList<BackupInfo> backups = found.take();
    if (backups.size() == 1)
        return backups.first();
    return several(console, path, backups);
}

std::variant<std::unique_ptr<PhoneItems::Backup>, Failure>
openBackup(Console &console, const BackupInfo &info, const Options &options)
{
    PasswordSource passwords(options.passwordFile, info.displayName);
    for (;;) {
        PhoneBackup::Password password;
        if (info.encrypted) {
            auto next = passwords.next();
            if (const auto *failure = std::get_if<Failure>(&next))
                return *failure;
            password.text = std::get<PhoneBackup::Secret>(std::move(next));
            password.progress = [&console](int percent) { showKeyMaking(console, percent); };
        } else {
            console.status(u"Reading the index of the backup …"_s);
        }
        auto opened = PhoneItems::Backup::open(
            info.path, [] { return !Interrupt::requested(); }, password);
        console.clearStatus();
        if (opened) {
            console.say(u"Backup: %1"_s.arg(describe(info)));
            auto backup = opened.take();
            backup->setMessageFilter(options.messages);
            return backup;
        }
        const bool again =
            opened.error().fault == PhoneBackup::Fault::WrongPassword && passwords.canTryAgain();
        if (!again)
            return failureOf(opened.error());
        console.error(PhoneItems::words(opened.error().what));
    }
}

QString describe(const BackupInfo &info)
{
    QStringList device;
    if (!info.productName.isEmpty())
        device += info.productName;
    if (!info.productVersion.isEmpty())
        device += u"version %1"_s.arg(info.productVersion);
    const QString traits = device.isEmpty() ? QString() : u" (%1)"_s.arg(device.join(u", "_s));
    return info.displayName + traits + u", "_s + dateText(info);
}

} // namespace Cli
