#include "BackupAccess.h"

#include "Console.h"
#include "Export/Text.h"
#include "Interrupt.h"
#include "Options.h"
#include "PasswordSource.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;
using Export::BackupInfo;
using Export::Failure;

namespace Cli {

namespace {

NoChoice several(Console &console, const QString &path, const QList<BackupInfo> &backups)
{
    constexpr int kNameColumns = 40;
    QList<QStringList> rows { { u"Device"_s, u"Date"_s, u"Size"_s, u"BACKUP"_s } };
    for (const BackupInfo &info : backups) {
        if (Interrupt::requested())
            return { Export::stoppedEarly(), {}, {} };
        console.status(u"Measuring “%1” …"_s.arg(info.path));
        rows += { elided(info.displayName, kNameColumns),
                  Export::dateText(info),
                  Export::sizeText(Export::backupSizeBytes(info.path)),
                  info.path };
    }
    return { Export::severalBackups(path, backups.size()), backups, tableLines(rows, "llrl") };
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
    auto found = Export::backupsAt(path);
    if (const auto *failure = std::get_if<Failure>(&found))
        return NoChoice { *failure, {}, {} };
    const auto &backups = std::get<QList<BackupInfo>>(found);
    if (backups.size() == 1)
        return backups.first();
    return several(console, path, backups);
}

std::variant<std::unique_ptr<Export::Backup>, Failure>
openBackup(Console &console, const BackupInfo &info, const Options &options)
{
    PasswordSource passwords(options.passwordFile, info.displayName);
    for (;;) {
        Export::Password password;
        if (info.encrypted) {
            auto next = passwords.next();
            if (const auto *failure = std::get_if<Failure>(&next))
                return *failure;
            password.text = std::get<Export::Secret>(std::move(next));
            password.progress = [&console](int percent) { showKeyMaking(console, percent); };
        } else {
            console.status(u"Reading the index of the backup …"_s);
        }
        auto opened = Export::openBackup(info, options.messages, &Interrupt::mayGoOn, password);
        console.clearStatus();
        const auto *failure = std::get_if<Failure>(&opened);
        if (!failure) {
            console.say(u"Backup: %1"_s.arg(Export::describe(info)));
            return opened;
        }
        if (failure->cause != Failure::Cause::WrongPassword || !passwords.canTryAgain())
            return opened;
        console.error(failure->what);
    }
}

} // namespace Cli
