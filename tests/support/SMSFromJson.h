#ifndef TESTS_SUPPORT_SMSFROMJSON_H
#define TESTS_SUPPORT_SMSFROMJSON_H

#include "support/FakeSMS.h"
#include "support/Files.h"

#include <QBuffer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

/*!
    Conversations as a golden case tells them, an array of objects: name, phone, email, deleted,
    unreadable, members (address to name), chats. A chat: me, undelivered, imessage, date, addr,
    subject, text, pieces. A piece: type, location, and either text or picture (width, height).
    Null stands for a null pointer in each list.
*/
namespace SMSFromJson {

inline QByteArray pngOf(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

inline void addPiece(FakeSMSChat &chat, const QJsonObject &from)
{
    using namespace Qt::StringLiterals;
    const QJsonArray picture = from["picture"_L1].toArray();
    chat.addPiece(from["type"_L1].toString(),
                  picture.isEmpty() ? from["text"_L1].toString().toUtf8()
                                    : pngOf(picture.at(0).toInt(), picture.at(1).toInt()),
                  from["location"_L1].toString());
}

inline void addChat(FakeSMSItem &item, const QJsonObject &from)
{
    using namespace Qt::StringLiterals;
    FakeSMSChat &chat = item.addChat(from["text"_L1].toString());
    chat.fromMe = from["me"_L1].toBool();
    chat.done = !from["undelivered"_L1].toBool();
    chat.sms = !from["imessage"_L1].toBool();
    chat.date = QDateTime::fromString(from["date"_L1].toString(), Qt::ISODateWithMs);
    chat.address = from["addr"_L1].toString();
    chat.title = from["subject"_L1].toString();
    for (const QJsonValue &piece : from["pieces"_L1].toArray()) {
        if (piece.isNull())
            chat.addNullPiece();
        else
            addPiece(chat, piece.toObject());
    }
}

//! Fills \a data from the file \a path. \return whether that is an array.
inline bool load(const QString &path, FakeSMSData &data)
{
    using namespace Qt::StringLiterals;
    const QJsonDocument document = QJsonDocument::fromJson(Files::read(path));
    for (const QJsonValue &entry : document.array()) {
        if (entry.isNull()) {
            data.addForeign(nullptr);
            continue;
        }
        const QJsonObject from = entry.toObject();
        FakeSMSItem &item = data.addConversation(
            from["name"_L1].toString(), from["phone"_L1].toString(), from["email"_L1].toString());
        item.deleted = from["deleted"_L1].toBool();
        item.readable = !from["unreadable"_L1].toBool();
        const QJsonObject members = from["members"_L1].toObject();
        for (auto member = members.begin(); member != members.end(); ++member)
            item.members.insert(member.key(), member.value().toString());
        for (const QJsonValue &chat : from["chats"_L1].toArray()) {
            if (chat.isNull())
                item.addNullChat();
            else
                addChat(item, chat.toObject());
        }
    }
    return document.isArray();
}

} // namespace SMSFromJson

#endif
