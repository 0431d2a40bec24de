#include "Result.h"

#include "Console.h"
#include "Export/Json.h"
#include "Export/Text.h"
#include "Interrupt.h"
#include "Options.h"
#include "TextTable.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;
using Export::Failure;

namespace Cli {

namespace {

// Where an option of the command line helps, the advice names it.
Failure withOptions(Failure failure)
{
    if (failure.cause == Failure::Cause::NotEmpty)
        failure.advice = u"Choose a new or empty folder, or use --into-existing to add the "
                         "files to those already there."_s;
    else if (failure.cause == Failure::Cause::NoRoom)
        failure.advice =
            u"Free up space, choose an OUTPUT on another disk, or export less with --only "
            "or --skip."_s;
    return failure;
}

// Sizes tell full backups from those that were just begun; to measure them takes a while.
QByteArray choices(Console &console, const QList<Export::BackupInfo> &backups)
{
    constexpr int kNameColumns = 40;
    QList<QStringList> rows { { u"Device"_s, u"Date"_s, u"Size"_s, u"BACKUP"_s } };
    for (const Export::BackupInfo &info : backups) {
        if (Interrupt::requested())
            break;
        console.status(u"Measuring “%1” …"_s.arg(info.path));
        rows += { elided(info.displayName, kNameColumns),
                  Export::dateText(info),
                  Export::sizeText(Export::backupSizeBytes(info.path)),
                  info.path };
    }
    return tableLines(rows, "llrl").join(u'\n').toUtf8() + '\n';
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

ExitCode refuse(Console &console, const Options &options, const Export::Refusal &refusal)
{
    const Failure failure = withOptions(refusal.failure);
    QByteArray result;
    if (options.json) {
        result = document(Export::Json::failed(failure, refusal.several), failure.status());
    } else if (!refusal.several.isEmpty()) {
        result = choices(console, refusal.several);
        if (Interrupt::requested())
            return refuse(console, options, { Export::stoppedEarly(), {} });
    }
    say(console, failure);
    return console.result(result) ? exitCode(failure.status()) : ExitCode::Failed;
}

} // namespace Cli
