#include "Json.h"

#include "PhoneItems/words/Words.h"
#include "TypeNames.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace Cli::Json {

namespace {

QString statusWord(ExitCode exitCode)
{
    switch (exitCode) {
    case ExitCode::Complete:
        return u"complete"_s;
    case ExitCode::Failed:
        return u"failed"_s;
    case ExitCode::Usage:
        return u"usage"_s;
    case ExitCode::Incomplete:
        return u"incomplete"_s;
    case ExitCode::NoBackup:
        return u"no-backup"_s;
    case ExitCode::Password:
        return u"password"_s;
    case ExitCode::Output:
        return u"output"_s;
    case ExitCode::Cancelled:
        return u"cancelled"_s;
    }
    return {};
}

} // namespace

QJsonObject result(ExitCode exitCode)
{
    return { { u"status"_s, statusWord(exitCode) }, { u"exitCode"_s, static_cast<int>(exitCode) } };
}

QJsonObject failed(const NoChoice &choice)
{
    QJsonObject object = result(choice.failure.exitCode);
    object[u"message"_s] = choice.failure.what;
    if (!choice.failure.advice.isEmpty())
        object[u"advice"_s] = choice.failure.advice;
    if (!choice.several.isEmpty()) {
        QJsonArray backups;
        for (const PhoneBackup::BackupInfo &info : choice.several)
            backups += backup(info);
        object[u"backups"_s] = backups;
    }
    return object;
}

QJsonObject backup(const PhoneBackup::BackupInfo &info)
{
    return { { u"path"_s, info.path },
             { u"name"_s, info.displayName },
             { u"device"_s, info.deviceName },
             { u"product"_s, info.productName },
             { u"version"_s, info.productVersion },
             { u"date"_s,
               info.date.isValid() ? QJsonValue(info.date.toUTC().toString(Qt::ISODate))
                                   : QJsonValue(QJsonValue::Null) },
             { u"encrypted"_s, info.encrypted },
             { u"finished"_s, info.finished } };
}

QJsonObject type(const TypeTotals &totals)
{
    QJsonObject object { { u"type"_s, TypeNames::word(totals.code) },
                         { u"code"_s, totals.code },
                         { u"name"_s, totals.name },
                         { u"items"_s, totals.items },
                         { u"deleted"_s, totals.deleted },
                         { u"bytes"_s, totals.sizeBytes } };
    if (totals.messages >= 0)
        object[u"messages"_s] = totals.messages;
    return object;
}

QJsonArray problems(const QList<PhoneBackup::Problem> &problems, ProblemKind kind)
{
    QJsonArray array;
    for (const PhoneBackup::Problem &problem : problems) {
        if (kindOf(problem) != kind)
            continue;
        QJsonObject object { { u"message"_s, PhoneItems::words(problem.what) } };
        if (kind != ProblemKind::Absence)
            object[u"source"_s] = problem.source;
        if (problem.dataType >= 0)
            object[u"type"_s] = TypeNames::word(problem.dataType);
        array += object;
    }
    return array;
}

QByteArray document(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

} // namespace Cli::Json
