#include "sample/PollPayload.h"

#include "sample/KeyedArchive.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

// The app keeps everything in an address, which nothing ever opens.
QByteArray payload(const QJsonObject &item)
{
    const QJsonObject all { { u"version"_s, 1 }, { u"item"_s, item } };
    const QByteArray data =
        QJsonDocument(all)
            .toJson(QJsonDocument::Compact)
            .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
    const QVariantMap address { { kArchivedClass, u"NSURL"_s },
                                { u"NS.relative"_s,
                                  u"data:,%1?src=p&c=4"_s.arg(QLatin1StringView(data)) } };
    return keyedArchive({ { u"URL"_s, address }, { u"ldtext"_s, u"Sent a poll"_s } });
}

QJsonArray list(const QStringList &options, const QString &idKey)
{
    QJsonArray result;
    for (const QString &option : options)
        result.append(QJsonObject { { idKey, u"id of "_s + option }, { u"text"_s, option } });
    return result;
}

} // namespace

QByteArray pollPayload(const QString &title, const QStringList &options)
{
    return payload({ { u"title"_s, title },
                     { u"orderedPollOptions"_s, list(options, u"optionIdentifier"_s) } });
}

QByteArray votePayload(const QStringList &options)
{
    return payload({ { u"votes"_s, list(options, u"voteOptionIdentifier"_s) } });
}

} // namespace Sample
