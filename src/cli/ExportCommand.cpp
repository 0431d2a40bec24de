#include "ExportCommand.h"

#include "Console.h"
#include "ConsoleObserver.h"
#include "Export/Run.h"
#include "Export/SummaryJson.h"
#include "Interrupt.h"
#include "Options.h"
#include "OutcomeText.h"
#include "Result.h"

namespace Cli {

ExitCode runExport(Console &console, const Options &options)
{
    ConsoleObserver observer(console, options);
    const Export::Outcome outcome = Export::run(options, observer, &Interrupt::mayGoOn);
    if (!outcome.hasStarted && outcome.failure)
        return refuse(console, options, { *outcome.failure, outcome.several });
    sayOutcome(console, outcome);
    const QByteArray text = options.json ? document(Export::summaryJson(outcome), outcome.status)
        : options.quiet                  ? QByteArray()
                                         : summaryText(outcome);
    const bool told = console.result(text);
    return told || outcome.status != Export::Status::Complete ? exitCode(outcome.status)
                                                              : ExitCode::Failed;
}

} // namespace Cli
