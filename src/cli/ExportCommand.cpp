#include "ExportCommand.h"

#include "BackupAccess.h"
#include "Console.h"
#include "ExportRun.h"
#include "HeicCopies.h"
#include "Inventory.h"
#include "Options.h"
#include "Preflight.h"
#include "Refusal.h"

namespace Cli {

namespace {

std::optional<Failure>
checkOutput(const Options &options, const QString &output, const PhoneBackup::BackupInfo &info)
{
    if (auto failure = Preflight::checkApart(output, { info.path, options.backup }))
        return failure;
    return Preflight::checkOutput(output, info.path, options.intoExisting);
}

} // namespace

ExitCode runExport(Console &console, const Options &options)
{
    const QString output = Preflight::absoluteOutput(options.output);
    const auto choice = chooseBackup(console, options.backup);
    if (const auto *none = std::get_if<NoChoice>(&choice))
        return refuse(console, options, *none);
    const auto &info = std::get<PhoneBackup::BackupInfo>(choice);
    if (const auto failure = checkOutput(options, output, info))
        return refuse(console, options, *failure);
    const auto opened = openBackup(console, info, options);
    if (const auto *failure = std::get_if<Failure>(&opened))
        return refuse(console, options, *failure);
    const PhoneBackup::Backup &backup = *std::get<0>(opened);

    const auto inventory = readInventory(console, backup, options.types);
    if (!inventory)
        return refuse(console, options, stoppedEarly());
    sayWhenNothingFits(console, options, *inventory);
    if (options.checkSpace) {
        const TypeTotals total = inventory->total();
        const qint64 jpegBytes = options.convertHeic ? HeicCopies::roomFor(total.heicBytes) : 0;
        if (const auto failure = Preflight::checkSpace(output, total.diskBytes + jpegBytes))
            return refuse(console, options, *failure);
    }
    if (const auto failure = Preflight::createOutput(output))
        return refuse(console, options, *failure);
    return ExportRun(console, options, backup, *inventory, output).execute();
}

} // namespace Cli
