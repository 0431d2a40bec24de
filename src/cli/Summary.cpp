#include "Summary.h"

#include "Json.h"
#include "Text.h"
#include "TypeNames.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

using Output = CIExportReport::Output;
using End = CIExportReport::End;

QString folderOf(const QString &output, const TypeOutcome &type)
{
    const QString folder = (output.endsWith(u'/') ? output : output + u'/') + type.totals.name;
    const bool hasOutput =
        std::any_of(type.counts.outputs.begin(), type.counts.outputs.end(), [](const auto &ended) {
            return ended.output != Output::Copies && ended.end == End::Complete;
        });
    return type.exported > 0 || hasOutput ? folder : QString();
}

bool hasEnded(const TypeOutcome &type, End end)
{
    return std::any_of(type.counts.outputs.begin(),
                       type.counts.outputs.end(),
                       [end](const auto &output) { return output.end == end; });
}

End stateOf(const TypeOutcome &type)
{
    if (type.totals.items == 0)
        return End::Complete;
    if (!type.counts.started)
        return End::NotStarted;
    if (hasEnded(type, End::Stopped))
        return End::Stopped;
    if (hasEnded(type, End::Failed))
        return End::Failed;
    // A stop between two outputs.
    return type.counts.outputs.isEmpty() || hasEnded(type, End::NotStarted) ? End::Stopped
                                                                            : End::Complete;
}

QString outputName(Output output)
{
    switch (output) {
    case Output::Page:
        return u"page"_s;
    case Output::Table:
        return u"CSV"_s;
    case Output::Cards:
        return u"vCards"_s;
    case Output::Copies:
        return u"copies"_s;
    }
    return {};
}

QString typeWord(int code)
{
    return code >= 0 ? TypeNames::word(code) : u"backup"_s;
}

QJsonArray failuresJson(const RunReport &report)
{
    QJsonArray array;
    for (const RunReport::Failed &failed : report.failures())
        array += QJsonObject { { u"type"_s, typeWord(failed.code) },
                               { u"item"_s, failed.item },
                               { u"cause"_s, failed.cause.toLower() },
                               { u"reason"_s, failed.reason } };
    return array;
}

QJsonArray neverDownloadedJson(const RunReport &report)
{
    QJsonArray array;
    for (const RunReport::Failed &file : report.neverDownloaded())
        array += QJsonObject { { u"type"_s, typeWord(file.code) }, { u"item"_s, file.item } };
    return array;
}

QJsonArray outputsJson(const TypeOutcome &type)
{
    QJsonArray array;
    for (const RunReport::OutputEnd &output : type.counts.outputs)
        array += QJsonObject { { u"output"_s, outputName(output.output).toLower() },
                               { u"state"_s, stateWord(output.end) } };
    return array;
}

void addSums(QJsonObject &object, const Sums &sums)
{
    object[u"exported"_s] = sums.exported;
    object[u"failed"_s] = sums.failed;
    object[u"missing"_s] = sums.missing;
    object[u"neverDownloaded"_s] = sums.neverDownloaded;
}

QJsonValue orNull(const QString &path)
{
    return path.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(path);
}

} // namespace

Sums::Sums(const QList<TypeOutcome> &types)
{
    for (const TypeOutcome &type : types) {
        exported += type.exported;
        failed += type.failed;
        missing += type.missing;
        neverDownloaded += type.counts.neverDownloaded;
    }
}

QString stateWord(End state)
{
    switch (state) {
    case End::Complete:
        return u"complete"_s;
    case End::Stopped:
        return u"stopped"_s;
    case End::NotStarted:
        return u"not begun"_s;
    case End::Failed:
        return u"failed"_s;
    }
    return {};
}

QString stateText(const TypeOutcome &type)
{
    QStringList concerned;
    for (const RunReport::OutputEnd &output : type.counts.outputs) {
        if (output.end != End::Complete)
            concerned += outputName(output.output);
    }
    const QString word = stateWord(type.state);
    return concerned.isEmpty() || concerned.size() == type.counts.outputs.size()
        ? word
        : u"%1 (%2)"_s.arg(word, concerned.join(u", "_s));
}

TypeOutcome typeOutcome(const TypeTotals &totals, const RunReport &report)
{
    TypeOutcome type { totals, report.counts(totals.code) };
    const RunReport::Counts &counts = type.counts;
    type.state = stateOf(type);
    // The first output tells of the items. A page that did not come to its end is not there.
    const bool isPage = TypeNames::isPage(totals.code);
    const bool hasFirst = !counts.outputs.isEmpty() && counts.outputs.first().end == End::Complete;
    type.exported = isPage && !hasFirst ? 0 : counts.exported;
    const int others = std::max(totals.items - type.exported, 0);
    if (hasFirst || type.state == End::Failed)
        type.failed = others;
    else
        type.failed = isPage ? 0 : std::min(counts.faults, others);
    type.missing = counts.unreadable + std::max(counts.faults - type.failed, 0);
    return type;
}

QByteArray summaryText(const Outcome &outcome)
{
    const bool early =
        std::any_of(outcome.types.begin(), outcome.types.end(), [](const TypeOutcome &type) {
            return type.state != End::Complete;
        });
    const Sums sums(outcome.types);
    const bool hasMissing = sums.missing > 0;
    const bool hasNeverDownloaded = sums.neverDownloaded > 0;
    QByteArray alignment = "lrr";
    QList<QStringList> rows { { u"Type"_s, u"Exported"_s, u"Failed"_s } };
    const auto addNumbers = [&](const QString &missing, const QString &neverDownloaded) {
        if (hasMissing)
            rows.last() += missing;
        if (hasNeverDownloaded)
            rows.last() += neverDownloaded;
    };
    addNumbers(u"Missing"_s, u"Never downloaded"_s);
    alignment += QByteArray(rows.last().size() - alignment.size(), 'r');
    if (early)
        rows.last() += u"State"_s;
    rows.last() += u"Where"_s;
    alignment += QByteArray(rows.last().size() - alignment.size(), 'l');
    for (const TypeOutcome &type : outcome.types) {
        if (type.isNothing())
            continue;
        rows += { type.totals.name, grouped(type.exported), grouped(type.failed) };
        addNumbers(grouped(type.missing), grouped(type.counts.neverDownloaded));
        if (early)
            rows.last() += stateText(type);
        rows.last() += folderOf(outcome.output, type);
    }
    rows += { u"Total"_s, grouped(sums.exported), grouped(sums.failed) };
    addNumbers(grouped(sums.missing), grouped(sums.neverDownloaded));
    QStringList lines = tableLines(rows, alignment.constData());
    for (const QString &absence : outcome.absences)
        lines += printable(absence);
    if (!outcome.indexPath.isEmpty()) {
        const QString page = QDir(outcome.output).filePath(QFileInfo(outcome.indexPath).fileName());
        lines += u"To look at all of it, open “%1”."_s.arg(printable(page));
    }
    return lines.join(u'\n').toUtf8() + '\n';
}

QByteArray
summaryJson(const Outcome &outcome, const PhoneItems::Backup &backup, const RunReport &report)
{
    QJsonArray types;
    for (const TypeOutcome &type : outcome.types) {
        QJsonObject object = Json::type(type.totals);
        object[u"exported"_s] = type.exported;
        object[u"failed"_s] = type.failed;
        object[u"missing"_s] = type.missing;
        object[u"neverDownloaded"_s] = type.counts.neverDownloaded;
        object[u"state"_s] = stateWord(type.state);
        object[u"outputs"_s] = outputsJson(type);
        object[u"folder"_s] = orNull(folderOf(outcome.absoluteOutput, type));
        types += object;
    }
    QJsonObject object = Json::result(outcome.exitCode);
    if (!outcome.message.isEmpty())
        object[u"message"_s] = outcome.message;
    object[u"backup"_s] = Json::backup(backup.info());
    object[u"output"_s] = outcome.absoluteOutput;
    object[u"types"_s] = types;
    addSums(object, Sums(outcome.types));
    object[u"seconds"_s] = outcome.seconds;
    object[u"report"_s] = orNull(report.file().path());
    object[u"index"_s] = orNull(outcome.indexPath);
    object[u"failureCount"_s] = report.failureCount();
    object[u"failures"_s] = failuresJson(report);
    object[u"neverDownloadedFiles"_s] = neverDownloadedJson(report);
    object[u"warnings"_s] = Json::problems(backup.problems(), ProblemKind::Warning);
    object[u"absent"_s] = Json::problems(backup.problems(), ProblemKind::Absence);
    return Json::document(object);
}

} // namespace Cli
