#include "ListCommand.h"

#include "BackupAccess.h"
#include "Console.h"
#include "Inventory.h"
#include "Json.h"
#include "Options.h"
#include "Problems.h"
#include "Refusal.h"
#include "Text.h"
#include "TypeNames.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

QByteArray asText(const PhoneItems::Backup &backup, const Inventory &inventory)
{
    const TypeTotals total = inventory.total();
    const bool hasMessages = total.messages > 0;
    const QString none = u"–"_s;
    QList<QStringList> rows { { u"Type"_s, u"Items"_s, u"Deleted"_s, u"Size"_s } };
    const auto add = [&](const TypeTotals &totals) {
        // What becomes a page has no size before it is written.
        const bool hasSize = !TypeNames::isPage(totals.code);
        rows += { totals.name,
                  grouped(totals.items),
                  grouped(totals.deleted),
                  hasSize ? sizeText(totals.sizeBytes) : none };
        if (hasMessages)
            rows.last().insert(2, totals.messages >= 0 ? grouped(totals.messages) : none);
    };
    if (hasMessages)
        rows.last().insert(2, u"Messages"_s);
    for (const TypeTotals &totals : inventory.types)
        add(totals);
    add(total);
    QStringList lines = tableLines(rows, hasMessages ? "lrrrr" : "lrrr");
    for (const QString &absence : absences(backup))
        lines += printable(absence);
    const qint64 notThere = neverDownloaded(backup.problems());
    if (notThere > 0)
        lines += u"Never downloaded to the phone, and so not in the backup: %1."_s.arg(
            counted(notThere, u"file"_s, u"files"_s));
    return lines.join(u'\n').toUtf8() + '\n';
}

QByteArray asJson(const PhoneItems::Backup &backup, const Inventory &inventory, ExitCode exitCode)
{
    QJsonArray types;
    for (const TypeTotals &totals : inventory.types)
        types += Json::type(totals);
    const TypeTotals sum = inventory.total();
    QJsonObject object = Json::result(exitCode);
    object[u"backup"_s] = Json::backup(backup.info());
    object[u"types"_s] = types;
    object[u"items"_s] = sum.items;
    object[u"deleted"_s] = sum.deleted;
    object[u"bytes"_s] = sum.sizeBytes;
    object[u"neverDownloaded"_s] = neverDownloaded(backup.problems());
    object[u"neverDownloadedFiles"_s] =
        Json::problems(backup.problems(), ProblemKind::NeverDownloaded);
    object[u"unreadable"_s] = Json::problems(backup.problems(), ProblemKind::Loss);
    object[u"warnings"_s] = Json::problems(backup.problems(), ProblemKind::Warning);
    object[u"absent"_s] = Json::problems(backup.problems(), ProblemKind::Absence);
    return Json::document(object);
}

} // namespace

ExitCode runList(Console &console, const Options &options)
{
    const auto choice = chooseBackup(console, options.backup);
    if (const auto *none = std::get_if<NoChoice>(&choice))
        return refuse(console, options, *none);
    const auto opened = openBackup(console, std::get<PhoneBackup::BackupInfo>(choice), options);
    if (const auto *failure = std::get_if<Failure>(&opened))
        return refuse(console, options, *failure);
    const PhoneItems::Backup &backup = *std::get<0>(opened);

    const auto inventory = readInventory(console, backup, options.types);
    if (!inventory)
        return refuse(console, options, stoppedEarly());
    if (const auto failure = temporaryFolderFailure(backup))
        return refuse(console, options, *failure);
    sayWhenNothingFits(console, options, *inventory);

    const QList<PhoneBackup::Problem> problems = backup.problems();
    sayProblems(console, backup, problems);
    const bool lost = std::any_of(problems.begin(), problems.end(), [](const auto &problem) {
        return kindOf(problem) == ProblemKind::Loss;
    });
    const ExitCode exitCode = lost ? ExitCode::Incomplete : ExitCode::Complete;
    const QByteArray text =
        options.json ? asJson(backup, *inventory, exitCode) : asText(backup, *inventory);
    return console.result(text) ? exitCode : ExitCode::Failed;
}

} // namespace Cli
