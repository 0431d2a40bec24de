#ifndef TESTS_SUPPORT_CONTACTFROMJSON_H
#define TESTS_SUPPORT_CONTACTFROMJSON_H

#include "support/FakeContact.h"
#include "support/Files.h"

#include <QBuffer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

/*!
    Contacts as a golden case tells them, an array of objects: name, deleted, unreadable,
    unselected, fields (by the names of BkContactPrivate), photo (width and height of a picture, or
    a text that is none), properties. A property: type, label, and value or parts. Null stands for a
    null pointer in each list.
*/
namespace ContactFromJson {

inline QByteArray photo(const QJsonValue &from)
{
    if (!from.isArray())
        return from.toString().toUtf8();
    QImage image(from[0].toInt(), from[1].toInt(), QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

inline QMap<QString, QString> texts(const QJsonValue &from)
{
    QMap<QString, QString> map;
    const QJsonObject object = from.toObject();
    for (auto text = object.begin(); text != object.end(); ++text)
        map.insert(text.key(), text.value().toString());
    return map;
}

//! Fills \a data from the file \a path. \return whether that is an array.
inline bool load(const QString &path, FakeContactData &data)
{
    using namespace Qt::StringLiterals;
    const QJsonDocument document = QJsonDocument::fromJson(Files::read(path));
    int index = 0;
    for (const QJsonValue &from : document.array()) {
        const int number = index++;
        if (from.isNull()) {
            data.addForeign(nullptr);
            continue;
        }
        FakeContact &contact = data.addContact(from["name"_L1].toString());
        contact.deleted = from["deleted"_L1].toBool();
        contact.readable = !from["unreadable"_L1].toBool();
        if (from["unselected"_L1].toBool())
            data.unselected.append(number);
        contact.fields = texts(from["fields"_L1]);
        contact.photoBytes = photo(from["photo"_L1]);
        for (const QJsonValue &property : from["properties"_L1].toArray()) {
            if (property.isNull()) {
                contact.addNull();
                continue;
            }
            contact.add(property["type"_L1].toInt(),
                        property["label"_L1].toString(),
                        property["value"_L1].toString(),
                        texts(property["parts"_L1]));
        }
    }
    return document.isArray();
}

} // namespace ContactFromJson

#endif
