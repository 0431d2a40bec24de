#include "Failure.h"

#include "Console.h"
#include "PhoneItems/words/Words.h"

using namespace Qt::StringLiterals;

namespace Cli {

Failure failureOf(const PhoneBackup::Error &error)
{
    const QString what = PhoneItems::words(error.what);
    if (error.fault == PhoneBackup::Fault::Cancelled)
        return stoppedEarly();
    const bool isOfPassword = error.fault == PhoneBackup::Fault::Encrypted
        || error.fault == PhoneBackup::Fault::WrongPassword;
    if (isOfPassword) {
        return { ExitCode::Password,
                 what,
                 {},
                 u"It is the one that was set when the encryption of backups was switched on; "
                 "letters in capitals and small ones differ."_s };
    }
    if (error.fault == PhoneBackup::Fault::TemporaryFolder)
        return { ExitCode::Output, what, {}, {} };
    Failure failure { ExitCode::NoBackup, what, {}, {} };
    if (!error.path.isEmpty() && !what.contains(error.path))
        failure.details += u"  in “%1”"_s.arg(error.path);
    return failure;
}

Failure stoppedEarly()
{
    return { ExitCode::Cancelled, u"Stopped before anything was written."_s, {}, {} };
}

void say(Console &console, const Failure &failure)
{
    if (failure.exitCode == ExitCode::Cancelled)
        console.note(failure.what);
    else
        console.error(failure.what);
    for (const QString &line : failure.details)
        console.note(line);
    if (!failure.advice.isEmpty())
        console.note(failure.advice);
}

} // namespace Cli
