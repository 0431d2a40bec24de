#include "ListCommand.h"

#include "BackupAccess.h"
#include "Console.h"
#include "ConsoleProgress.h"
#include "Export/Json.h"
#include "Export/Preparation.h"
#include "Export/Text.h"
#include "Interrupt.h"
#include "Options.h"
#include "Result.h"
#include "TextTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using Export::Failure;
using Export::grouped;
using Export::Inventory;
using Export::Problem;
using Export::Status;
using Export::TypeTotals;

namespace Cli {

namespace {

QByteArray asText(const Inventory &inventory, const QList<Problem> &problems)
{
    const TypeTotals total = inventory.total();
    const bool hasMessages = total.messages > 0;
    const QString none = u"–"_s;
    QList<QStringList> rows { { u"Type"_s, u"Items"_s, u"Deleted"_s, u"Size"_s } };
    const auto add = [&](const TypeTotals &totals) {
        // What becomes a page has no size before it is written.
        const bool hasSize = !totals.isPage();
        rows += { totals.name,
                  grouped(totals.items),
                  grouped(totals.deleted),
                  hasSize ? Export::sizeText(totals.sizeBytes) : none };
        if (hasMessages)
            rows.last().insert(2, totals.messages >= 0 ? grouped(totals.messages) : none);
    };
    if (hasMessages)
        rows.last().insert(2, u"Messages"_s);
    for (const TypeTotals &totals : inventory.types)
        add(totals);
    add(total);
    QStringList lines = tableLines(rows, hasMessages ? "lrrrr" : "lrrr");
    for (const QString &absence : Export::absences(problems))
        lines += Export::printable(absence);
    const qint64 notThere = Export::neverDownloaded(problems);
    if (notThere > 0)
        lines += Export::neverDownloadedSentence(notThere);
    return lines.join(u'\n').toUtf8() + '\n';
}

QJsonObject asJson(const Export::BackupInfo &info,
                   const Inventory &inventory,
                   const QList<Problem> &problems,
                   Status status)
{
    namespace Json = Export::Json;
    QJsonArray types;
    for (const TypeTotals &totals : inventory.types)
        types += Json::type(totals);
    const TypeTotals sum = inventory.total();
    QJsonObject object = Json::result(status);
    object[u"backup"_s] = Json::backup(info);
    object[u"types"_s] = types;
    object[u"items"_s] = sum.items;
    object[u"deleted"_s] = sum.deleted;
    object[u"bytes"_s] = sum.sizeBytes;
    object[u"neverDownloaded"_s] = Export::neverDownloaded(problems);
    object[u"neverDownloadedFiles"_s] = Json::problems(problems, Problem::Kind::NeverDownloaded);
    object[u"unreadable"_s] = Json::problems(problems, Problem::Kind::Loss);
    object[u"warnings"_s] = Json::problems(problems, Problem::Kind::Warning);
    object[u"absent"_s] = Json::problems(problems, Problem::Kind::Absence);
    return object;
}

} // namespace

ExitCode runList(Console &console, const Options &options)
{
    const auto choice = chooseBackup(console, options.backup);
    if (const auto *none = std::get_if<NoChoice>(&choice))
        return refuse(console, options, *none);
    const auto opened = openBackup(console, std::get<Export::BackupInfo>(choice), options);
    if (const auto *failure = std::get_if<Failure>(&opened))
        return refuse(console, options, *failure);
    const Export::Backup &backup = *std::get<0>(opened);

    ConsoleProgress progress(console, options);
    const auto taken = Export::takeInventory(backup, options.types, progress, &Interrupt::mayGoOn);
    if (const auto *failure = std::get_if<Failure>(&taken))
        return refuse(console, options, *failure);
    const auto &inventory = std::get<Inventory>(taken);

    const QList<Problem> problems = Export::problems(backup);
    QList<Problem> faults = problems;
    faults.removeIf([](const Problem &problem) { return !problem.isFault(); });
    progress.problemsFound(faults);
    const bool lost = std::any_of(faults.begin(), faults.end(), [](const Problem &problem) {
        return problem.kind == Problem::Kind::Loss;
    });
    const Status status = lost ? Status::Incomplete : Status::Complete;
    const QByteArray text = options.json
        ? document(asJson(backup.info(), inventory, problems, status), status)
        : asText(inventory, problems);
    return console.result(text) ? exitCode(status) : ExitCode::Failed;
}

} // namespace Cli
