#include "PhoneBackup/messages/Poll.h"

#include "PhoneBackup/source/StoredText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// "data:,<JSON in base64url>?src=p&c=4"
QJsonObject itemOf(const QString &address)
{
    QStringView data(address);
    const qsizetype comma = data.indexOf(u',');
    if (comma < 0 || !data.startsWith("data:"_L1))
        return {};
    data = data.sliced(comma + 1);
    const qsizetype query = data.indexOf(u'?');
    if (query >= 0)
        data.truncate(query);
    const QByteArray json = QByteArray::fromBase64(data.toLatin1(), QByteArray::Base64UrlEncoding);
    return QJsonDocument::fromJson(json).object().value("item"_L1).toObject();
}

QString line(const QJsonValue &text)
{
    return StoredText::cleaned(text.toString()).simplified();
}

} // namespace

Poll Poll::read(const QString &address)
{
    const QJsonObject item = itemOf(address);
    Poll poll;
    poll.title = line(item.value("title"_L1));
    const QJsonArray options = item.value("orderedPollOptions"_L1).toArray();
    for (const auto &value : options) {
        const QJsonObject option = value.toObject();
        poll.options.append(
            { option.value("optionIdentifier"_L1).toString(), line(option.value("text"_L1)) });
    }
    return poll;
}

QHash<QString, qsizetype> Poll::places() const
{
    QHash<QString, qsizetype> result;
    for (qsizetype i = options.size() - 1; i >= 0; --i)
        result.insert(options.at(i).id, i);
    return result;
}

std::optional<QStringList> Poll::readVote(const QString &address)
{
    const QJsonValue votes = itemOf(address).value("votes"_L1);
    if (!votes.isArray())
        return std::nullopt;
    QStringList ids;
    const QJsonArray list = votes.toArray();
    for (const auto &vote : list)
        ids.append(vote.toObject().value("voteOptionIdentifier"_L1).toString());
    return ids;
}

} // namespace PhoneBackup
