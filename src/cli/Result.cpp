#include "Result.h"

#include "Console.h"
#include "Export/Json.h"
#include "Options.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;
using Export::Failure;

namespace Cli {

namespace {

// Where an option of the command line helps, the advice names it.
Failure withOptions(Failure failure)
{
    if (failure.cause == Failure::Cause::NotEmpty)
        failure.advice = u"Choose a new or an empty folder, or add --into-existing to put the "
                         "files beside those that are there."_s;
    else if (failure.cause == Failure::Cause::NoRoom)
        failure.advice = u"Make room, choose an OUTPUT on another disk, or export less with --only "
                         "or --skip."_s;
    return failure;
}

} // namespace

ExitCode exitCode(Export::Status status)
{
    using Export::Status;
    switch (status) {
    case Status::Complete:
        return ExitCode::Complete;
    case Status::Failed:
        return ExitCode::Failed;
    case Status::Usage:
        return ExitCode::Usage;
    case Status::Incomplete:
        return ExitCode::Incomplete;
    case Status::NoBackup:
        return ExitCode::NoBackup;
    case Status::Password:
        return ExitCode::Password;
    case Status::Output:
        return ExitCode::Output;
    case Status::Cancelled:
        return ExitCode::Cancelled;
    }
    return ExitCode::Failed;
}

QByteArray document(QJsonObject result, Export::Status status)
{
    result[u"exitCode"_s] = static_cast<int>(exitCode(status));
    return QJsonDocument(result).toJson(QJsonDocument::Indented);
}

void say(Console &console, const Failure &failure)
{
    if (failure.cause == Failure::Cause::Stopped)
        console.note(failure.what);
    else
        console.error(failure.what);
    for (const QString &line : failure.details)
        console.note(line);
    if (!failure.advice.isEmpty())
        console.note(failure.advice);
}

ExitCode refuse(Console &console, const Options &options, const Failure &failure)
{
    return refuse(console, options, NoChoice { failure, {}, {} });
}

ExitCode refuse(Console &console, const Options &options, const NoChoice &choice)
{
    const Failure failure = withOptions(choice.failure);
    say(console, failure);
    const QByteArray result = options.json
        ? document(Export::Json::failed(failure, choice.several), failure.status())
        : choice.table.isEmpty() ? QByteArray()
                                 : choice.table.join(u'\n').toUtf8() + '\n';
    return console.result(result) ? exitCode(failure.status()) : ExitCode::Failed;
}

} // namespace Cli
