#include "ListCommand.h"

#include "Console.h"
#include "ConsoleObserver.h"
#include "Export/Json.h"
#include "Export/Run.h"
#include "Export/Text.h"
#include "Interrupt.h"
#include "Options.h"
#include "Result.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;
using Export::Contents;
using Export::grouped;
using Export::Problem;
using Export::TypeTotals;

namespace Cli {

namespace {

QByteArray asText(const Contents &contents)
{
    const TypeTotals total = contents.inventory.total();
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
    for (const TypeTotals &totals : contents.inventory.types)
        add(totals);
    add(total);
    QStringList lines = tableLines(rows, hasMessages ? "lrrrr" : "lrrr");
    for (const QString &absence : Export::absences(contents.problems))
        lines += Export::printable(absence);
    const qint64 notThere = Export::neverDownloaded(contents.problems);
    if (notThere > 0)
        lines += Export::neverDownloadedSentence(notThere);
    return lines.join(u'\n').toUtf8() + '\n';
}

QJsonObject asJson(const Contents &contents)
{
    namespace Json = Export::Json;
    QJsonArray types;
    for (const TypeTotals &totals : contents.inventory.types)
        types += Json::type(totals);
    const TypeTotals sum = contents.inventory.total();
    const QList<Problem> &problems = contents.problems;
    QJsonObject object = Json::result(contents.status());
    object[u"backup"_s] = Json::backup(contents.backup);
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
    ConsoleObserver observer(console, options);
    const auto found = Export::look(options, observer, &Interrupt::mayGoOn);
    if (const auto *refusal = std::get_if<Export::Refusal>(&found))
        return refuse(console, options, *refusal);
    const auto &contents = std::get<Contents>(found);
    QList<Problem> faults = contents.problems;
    faults.removeIf([](const Problem &problem) { return !problem.isFault(); });
    observer.problemsFound(faults);
    const QByteArray text =
        options.json ? document(asJson(contents), contents.status()) : asText(contents);
    return console.result(text) ? exitCode(contents.status()) : ExitCode::Failed;
}

} // namespace Cli
