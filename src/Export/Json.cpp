#include "Export/Json.h"

using namespace Qt::StringLiterals;

namespace Export::Json {

namespace {

QString statusWord(Status status)
{
    switch (status) {
    case Status::Complete:
        return u"complete"_s;
    case Status::Failed:
        return u"failed"_s;
    case Status::Usage:
        return u"usage"_s;
    case Status::Incomplete:
        return u"incomplete"_s;
    case Status::NoBackup:
        return u"no-backup"_s;
    case Status::Password:
        return u"password"_s;
    case Status::Output:
        return u"output"_s;
    case Status::Cancelled:
        return u"cancelled"_s;
    }
    return {};
}

} // namespace

QJsonObject result(Status status)
{
    return { { u"status"_s, statusWord(status) } };
}

QJsonObject failed(const Failure &failure, const QList<PhoneBackup::BackupInfo> &several)
{
    QJsonObject object = result(failure.status());
    object[u"message"_s] = failure.what;
    if (!failure.advice.isEmpty())
        object[u"advice"_s] = failure.advice;
    if (!several.isEmpty()) {
        QJsonArray backups;
        for (const PhoneBackup::BackupInfo &info : several)
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
    QJsonObject object { { u"type"_s, typeWord(totals.code) }, { u"code"_s, totals.code },
                         { u"name"_s, totals.name },           { u"items"_s, totals.items },
                         { u"deleted"_s, totals.deleted },     { u"bytes"_s, totals.sizeBytes } };
    if (totals.messages >= 0)
        object[u"messages"_s] = totals.messages;
    return object;
}

QJsonArray problems(const QList<Problem> &problems, Problem::Kind kind)
{
    QJsonArray array;
    for (const Problem &problem : problems) {
        if (problem.kind != kind)
            continue;
        QJsonObject object { { u"message"_s, problem.what } };
        if (kind != Problem::Kind::Absence)
            object[u"source"_s] = problem.source;
        if (problem.code >= 0)
            object[u"type"_s] = typeWord(problem.code);
        array += object;
    }
    return array;
}

} // namespace Export::Json
