#include "ExportCommand.h"

#include "BackupAccess.h"
#include "Console.h"
#include "ExportRun.h"
#include "HeicCopies.h"
#include "Inventory.h"
#include "Options.h"
#include "Preflight.h"
#include "Problems.h"
#include "Refusal.h"

#include <QFileInfo>

#include <sys/stat.h>

namespace Cli {

namespace {

std::optional<Failure>
checkOutput(const Options &options, const QString &output, const PhoneBackup::BackupInfo &info)
{
    if (auto failure = Preflight::checkApart(output, { info.path, options.backup }))
        return failure;
    return Preflight::checkOutput(output, info.path, options.intoExisting);
}

// Who encrypted a backup does not want its contents to be readable for all.
void keepFilesPrivate()
{
    ::umask(::umask(0) | S_IRWXG | S_IRWXO);
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
    const bool isLink = QFileInfo(output).isSymLink();
    const auto opened = openBackup(console, info, options);
    if (const auto *failure = std::get_if<Failure>(&opened))
        return refuse(console, options, *failure);
    const PhoneItems::Backup &backup = *std::get<0>(opened);

    const auto inventory = readInventory(console, backup, options.types);
    if (!inventory)
        return refuse(console, options, stoppedEarly());
    if (const auto failure = temporaryFolderFailure(backup))
        return refuse(console, options, *failure);
    sayWhenNothingFits(console, options, *inventory);
    if (options.checkSpace) {
        const TypeTotals total = inventory->total();
        const qint64 jpegBytes = options.convertHeic ? HeicCopies::roomFor(total.heicBytes) : 0;
        if (const auto failure = Preflight::checkSpace(output, total.diskBytes + jpegBytes))
            return refuse(console, options, *failure);
    }
    if (info.encrypted)
        keepFilesPrivate();
    if (const auto failure = Preflight::createOutput(output))
        return refuse(console, options, *failure);
    // Asking for a password and reading the backup take minutes, in which others may have put
    // something in OUTPUT's place.
    if (const auto failure = checkOutput(options, output, info))
        return refuse(console, options, *failure);
    if (QFileInfo(output).isSymLink() != isLink)
        return refuse(console, options, Preflight::replaced(output));
    return ExportRun(console, options, backup, *inventory, output).execute();
}

} // namespace Cli
