#include "Export/Failure.h"

#include "PhoneItems/words/Words.h"

using namespace Qt::StringLiterals;

namespace Export {

Status Failure::status() const
{
    switch (cause) {
    case Cause::Stopped:
        return Status::Cancelled;
    case Cause::Unsuitable:
    case Cause::NotEmpty:
        return Status::Usage;
    case Cause::NoBackup:
        return Status::NoBackup;
    case Cause::NoPassword:
    case Cause::WrongPassword:
        return Status::Password;
    case Cause::TemporaryFolder:
    case Cause::NoRoom:
    case Cause::DiskFull:
    case Cause::Output:
        return Status::Output;
    }
    return Status::Failed;
}

Failure failureOf(const PhoneBackup::Error &error)
{
    using Cause = Failure::Cause;
    using PhoneBackup::Fault;
    const QString what = PhoneItems::words(error.what);
    if (error.fault == Fault::Cancelled)
        return stoppedEarly();
    if (error.fault == Fault::Encrypted || error.fault == Fault::WrongPassword) {
        return { error.fault == Fault::WrongPassword ? Cause::WrongPassword : Cause::NoPassword,
                 what,
                 {},
                 u"Use the one set when backup encryption was turned on; it is case-sensitive."_s };
    }
    if (error.fault == Fault::TemporaryFolder)
        return { Cause::TemporaryFolder, what, {}, {}, error.systemError };
    Failure failure { Cause::NoBackup, what, {}, {}, error.systemError };
    if (!error.path.isEmpty() && !what.contains(error.path))
        failure.details += u"  in “%1”"_s.arg(error.path);
    return failure;
}

Failure stoppedEarly()
{
    return { Failure::Cause::Stopped, u"Stopped before anything was written."_s };
}

} // namespace Export
