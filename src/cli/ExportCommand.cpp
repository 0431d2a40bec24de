#include "ExportCommand.h"

#include "BackupAccess.h"
#include "Console.h"
#include "ConsoleProgress.h"
#include "Export/Preparation.h"
#include "Export/Run.h"
#include "Export/SummaryJson.h"
#include "Interrupt.h"
#include "Options.h"
#include "OutcomeText.h"
#include "Result.h"

using Export::Failure;

namespace Cli {

namespace {

ExitCode tell(Console &console,
              const Options &options,
              const Export::Outcome &outcome,
              const Export::BackupInfo &info)
{
    sayOutcome(console, outcome);
    const QByteArray text = options.json
        ? document(Export::summaryJson(outcome, info), outcome.status)
        : options.quiet ? QByteArray()
                        : summaryText(outcome);
    const bool told = console.result(text);
    return told || outcome.status != Export::Status::Complete ? exitCode(outcome.status)
                                                              : ExitCode::Failed;
}

} // namespace

ExitCode runExport(Console &console, const Options &options)
{
    const auto choice = chooseBackup(console, options.backup);
    if (const auto *none = std::get_if<NoChoice>(&choice))
        return refuse(console, options, *none);
    const auto &info = std::get<Export::BackupInfo>(choice);
    const Export::Preparation preparation(options, info);
    if (const auto failure = preparation.checkOutput())
        return refuse(console, options, *failure);
    const auto opened = openBackup(console, info, options);
    if (const auto *failure = std::get_if<Failure>(&opened))
        return refuse(console, options, *failure);
    const Export::Backup &backup = *std::get<0>(opened);

    ConsoleProgress progress(console, options);
    const auto prepared = preparation.prepare(backup, progress, &Interrupt::mayGoOn);
    if (const auto *failure = std::get_if<Failure>(&prepared))
        return refuse(console, options, *failure);
    Export::Run run(options,
                    backup,
                    std::get<Export::Inventory>(prepared),
                    preparation.output(),
                    progress,
                    &Interrupt::mayGoOn);
    return tell(console, options, run.execute(), backup.info());
}

} // namespace Cli
