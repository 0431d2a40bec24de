#ifndef TESTS_SUPPORT_FAKEWHATSAPP_H
#define TESTS_SUPPORT_FAKEWHATSAPP_H

#include "message/BkWhatsappChat.h"
#include "message/BkWhatsappItem.h"
#include "message/BkWhatsappMsg.h"
#include "support/Files.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>
#include <vector>

//! A received and delivered text, unless it is told otherwise.
class FakeWhatsappMsg : public BkWhatsappMsg
{
public:
    int type() const override { return code; }
    const QString &content() const override { return text; }
    bool isFromMe() const override { return fromMe; }
    bool isSentDone() const override { return done; }
    bool isBroadcast() const override { return broadcast; }
    const QString &member() const override { return author; }
    QDateTime msgDate() const override { return date; }
    const QString &media() const override { return path; }
    QString mediaName() const override { return fileName; }

    int code = 0;
    QString text;
    bool fromMe = false;
    bool done = true;
    bool broadcast = false;
    QString author;
    QDateTime date;
    QString path;
    QString fileName;
};

class FakeWhatsappItem : public BkWhatsappItem, public BkWhatsappChat
{
public:
    explicit FakeWhatsappItem(const QStringList &values)
        : m_values(values)
    {
    }
    QString value(int index) const override { return m_values.value(index); }
    bool flag(int index) const override { return index == 0 && deleted; }
    BkWhatsappChat *detailContent() const override
    {
        return readable ? const_cast<FakeWhatsappItem *>(this) : nullptr;
    }
    const QList<BkWhatsappMsg *> &messages() const override { return m_messages; }

    FakeWhatsappMsg &add(const QString &text)
    {
        m_owned.push_back(std::make_unique<FakeWhatsappMsg>());
        m_owned.back()->text = text;
        m_messages.append(m_owned.back().get());
        return *m_owned.back();
    }
    void addNull() { m_messages.append(nullptr); }

    bool deleted = false;
    bool readable = true; //!< false: there is no detailContent().

private:
    QStringList m_values;
    std::vector<std::unique_ptr<FakeWhatsappMsg>> m_owned;
    QList<BkWhatsappMsg *> m_messages;
};

/*!
    Chats as a golden case tells them, an array of objects: values, deleted, messages. A message:
    type, text, me, undelivered, broadcast, member, date, media (a file of the folder), name. Null
   stands for a null pointer among messages.
*/
namespace WhatsappFromJson {

using Items = std::vector<std::unique_ptr<FakeWhatsappItem>>;

inline Items load(const QString &folder)
{
    using namespace Qt::StringLiterals;
    Items items;
    const QJsonArray chats =
        QJsonDocument::fromJson(Files::read(folder + "/input.json"_L1)).array();
    for (const QJsonValue &entry : chats) {
        QStringList values;
        for (const QJsonValue &value : entry["values"_L1].toArray())
            values.append(value.toString());
        items.push_back(std::make_unique<FakeWhatsappItem>(values));
        FakeWhatsappItem &item = *items.back();
        item.deleted = entry["deleted"_L1].toBool();
        for (const QJsonValue &from : entry["messages"_L1].toArray()) {
            if (from.isNull()) {
                item.addNull();
                continue;
            }
            FakeWhatsappMsg &message = item.add(from["text"_L1].toString());
            message.code = from["type"_L1].toInt();
            message.fromMe = from["me"_L1].toBool();
            message.done = !from["undelivered"_L1].toBool();
            message.broadcast = from["broadcast"_L1].toBool();
            message.author = from["member"_L1].toString();
            message.date = QDateTime::fromString(from["date"_L1].toString(), Qt::ISODateWithMs);
            const QString media = from["media"_L1].toString();
            if (!media.isEmpty())
                message.path = folder + u'/' + media;
            message.fileName = from["name"_L1].toString();
        }
    }
    return items;
}

} // namespace WhatsappFromJson

#endif
