#include "Summary.h"

#include "Json.h"
#include "Text.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

QString folderOf(const QString &output, const TypeOutcome &type)
{
    if (type.counts.exported == 0)
        return {};
    return (output.endsWith(u'/') ? output : output + u'/') + type.totals.name;
}

TypeOutcome::State stateOf(const TypeOutcome &type, bool mayBeCut)
{
    if (type.totals.items == 0)
        return TypeOutcome::State::Complete;
    if (!type.counts.started)
        return TypeOutcome::State::NotBegun;
    if (type.counts.lost)
        return TypeOutcome::State::Lost;
    const bool allTried = type.counts.exported + type.counts.failed >= type.totals.items;
    return mayBeCut && !allTried ? TypeOutcome::State::Stopped : TypeOutcome::State::Complete;
}

QJsonArray failuresJson(const RunReport &report)
{
    QJsonArray array;
    for (const RunReport::Failed &failed : report.failures())
        array += QJsonObject { { u"type"_s, failed.type },
                               { u"item"_s, failed.item },
                               { u"cause"_s, failed.cause.toLower() },
                               { u"reason"_s, failed.reason } };
    return array;
}

} // namespace

QString stateWord(TypeOutcome::State state)
{
    switch (state) {
    case TypeOutcome::State::Complete:
        return u"complete"_s;
    case TypeOutcome::State::Stopped:
        return u"stopped"_s;
    case TypeOutcome::State::NotBegun:
        return u"not begun"_s;
    case TypeOutcome::State::Lost:
        return u"failed"_s;
    }
    return {};
}

int TypeOutcome::failed() const
{
    const int items = state == State::Lost ? totals.items - counts.exported : counts.failed;
    return items + counts.unreadable;
}

QList<TypeOutcome> typeOutcomes(const Inventory &inventory, const RunReport &report, bool stopped)
{
    QList<TypeOutcome> outcomes;
    for (const TypeTotals &totals : inventory.types) {
        TypeOutcome type { totals, report.counts(totals.code) };
        type.state = stateOf(type, stopped && totals.code == report.currentType());
        outcomes += type;
    }
    return outcomes;
}

QByteArray summaryText(const Outcome &outcome)
{
    const bool early =
        std::any_of(outcome.types.begin(), outcome.types.end(), [](const TypeOutcome &type) {
            return type.state != TypeOutcome::State::Complete;
        });
    QList<QStringList> rows { { u"Type"_s, u"Exported"_s, u"Failed"_s } };
    if (early)
        rows.last() += u"State"_s;
    rows.last() += u"Where"_s;
    qint64 exported = 0;
    qint64 failed = 0;
    for (const TypeOutcome &type : outcome.types) {
        if (type.totals.items == 0 && type.failed() == 0)
            continue;
        rows += { type.totals.name, grouped(type.counts.exported), grouped(type.failed()) };
        if (early)
            rows.last() += stateWord(type.state);
        rows.last() += folderOf(outcome.output, type);
        exported += type.counts.exported;
        failed += type.failed();
    }
    rows += { u"Total"_s, grouped(exported), grouped(failed) };
    QStringList lines = tableLines(rows, early ? "lrrll" : "lrrl");
    for (const QString &absence : outcome.absences)
        lines += printable(absence);
    if (!outcome.indexPath.isEmpty()) {
        const QString page = QDir(outcome.output).filePath(QFileInfo(outcome.indexPath).fileName());
        lines += u"To look at all of it, open “%1”."_s.arg(printable(page));
    }
    return lines.join(u'\n').toUtf8() + '\n';
}

QByteArray
summaryJson(const Outcome &outcome, const PhoneBackup::Backup &backup, const RunReport &report)
{
    QJsonArray types;
    qint64 exported = 0;
    qint64 failed = 0;
    for (const TypeOutcome &type : outcome.types) {
        QJsonObject object = Json::type(type.totals);
        object[u"exported"_s] = type.counts.exported;
        object[u"failed"_s] = type.failed();
        object[u"state"_s] = stateWord(type.state);
        const QString folder = folderOf(outcome.absoluteOutput, type);
        object[u"folder"_s] = folder.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(folder);
        types += object;
        exported += type.counts.exported;
        failed += type.failed();
    }
    QJsonObject object = Json::result(outcome.exitCode);
    if (!outcome.message.isEmpty())
        object[u"message"_s] = outcome.message;
    const QString reportPath = report.file().path();
    object[u"backup"_s] = Json::backup(backup.info());
    object[u"output"_s] = outcome.absoluteOutput;
    object[u"types"_s] = types;
    object[u"exported"_s] = exported;
    object[u"failed"_s] = failed;
    object[u"seconds"_s] = outcome.seconds;
    object[u"report"_s] =
        reportPath.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(reportPath);
    object[u"index"_s] =
        outcome.indexPath.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(outcome.indexPath);
    object[u"failureCount"_s] = report.failureCount();
    object[u"failures"_s] = failuresJson(report);
    object[u"warnings"_s] = Json::problems(backup.problems(), ProblemKind::Warning);
    object[u"absent"_s] = Json::problems(backup.problems(), ProblemKind::Absence);
    return Json::document(object);
}

} // namespace Cli
