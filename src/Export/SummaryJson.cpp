#include "Export/SummaryJson.h"

#include "Export/Json.h"
#include "Export/Outcome.h"

using namespace Qt::StringLiterals;

namespace Export {

namespace {

QString wordOf(int code)
{
    return code >= 0 ? typeWord(code) : u"backup"_s;
}

QJsonArray failuresJson(const QList<RunReport::Failed> &list)
{
    QJsonArray array;
    for (const RunReport::Failed &failed : list)
        array += QJsonObject { { u"type"_s, wordOf(failed.code) },
                               { u"item"_s, failed.item },
                               { u"cause"_s, failed.causeText().toLower() },
                               { u"reason"_s, failed.reason } };
    return array;
}

QJsonArray neverDownloadedJson(const QList<RunReport::Failed> &list)
{
    QJsonArray array;
    for (const RunReport::Failed &file : list)
        array += QJsonObject { { u"type"_s, wordOf(file.code) }, { u"item"_s, file.item } };
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

QJsonObject summaryJson(const Outcome &outcome)
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
        object[u"folder"_s] = orNull(type.folderIn(outcome.absoluteOutput));
        types += object;
    }
    QJsonObject object = Json::result(outcome.status);
    if (outcome.failure)
        object[u"message"_s] = outcome.failure->what;
    object[u"backup"_s] = Json::backup(outcome.backup);
    object[u"output"_s] = outcome.absoluteOutput;
    object[u"types"_s] = types;
    addSums(object, Sums(outcome.types));
    object[u"seconds"_s] = outcome.seconds;
    object[u"report"_s] = orNull(outcome.reportPath);
    object[u"index"_s] = orNull(outcome.indexPath);
    object[u"failureCount"_s] = outcome.failureCount;
    object[u"failures"_s] = failuresJson(outcome.failures);
    object[u"neverDownloadedFiles"_s] = neverDownloadedJson(outcome.neverDownloaded);
    object[u"warnings"_s] = Json::problems(outcome.remarks, Problem::Kind::Warning);
    object[u"absent"_s] = Json::problems(outcome.remarks, Problem::Kind::Absence);
    return object;
}

} // namespace Export
