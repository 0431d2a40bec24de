#include "PhoneItems/whatsapp/WhatsappWords.h"

#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/VCardText.h"
#include "PhoneBackup/whatsapp/WhatsappMedia.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"
#include "PhoneItems/whatsapp/WhatsappMessage.h"
#include "platform/Translation_p.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <cmath>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup::WhatsappWords {

using namespace Qt::StringLiterals;

namespace {

// The new subject in the data that some versions store for a change of it.
QString newSubject(const QString &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json.toUtf8()).object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.key().contains("new"_L1, Qt::CaseInsensitive))
            return it.value().toString();
    }
    return {};
}

// Data, even when its end is missing; people's own words may begin with a bracket, too.
bool isJson(const QString &text)
{
    if (!text.startsWith(u'{') && !text.startsWith(u'['))
        return false;
    const QString start = text.left(32).remove(u' ').left(2);
    return start == "{\""_L1 || start == "[{"_L1 || start == "[\""_L1
        || !QJsonDocument::fromJson(text.toUtf8()).isNull();
}

// "=E4=BD=A0" as older cards write a name; anything else as it is.
QString withoutQuoting(const QString &name)
{
    static const QRegularExpression quoted(u"^(=[0-9A-Fa-f]{2})+$"_s);
    if (!quoted.match(name).hasMatch())
        return name;
    return QString::fromUtf8(QByteArray::fromPercentEncoding(name.toLatin1(), '='));
}

QString subjectChanged(const QString &who, const QString &subject)
{
    return subject.isEmpty() ? tr("%1 changed the subject").arg(who)
                             : tr("%1 changed the subject to “%2”").arg(who, subject);
}

QString removed(const Event &event, const QString &who)
{
    if (event.byOwner)
        return event.text.isEmpty() ? tr("You were removed")
                                    : tr("You were removed by %1").arg(event.text);
    return event.text.isEmpty() ? tr("%1 was removed").arg(who)
                                : tr("%1 was removed by %2").arg(who, event.text);
}

} // namespace

QString readable(const QString &text)
{
    // A short word may be valid data by accident.
    constexpr qsizetype shortestData = 8;
    const QString trimmed = StoredText::cleaned(text).trimmed();
    if (isJson(trimmed)
        || (trimmed.size() >= shortestData && !trimmed.contains(u' ')
            && WhatsappNames::chosen(trimmed).isEmpty()))
        return {};
    return trimmed;
}

QString groupEvent(const Event &event)
{
    const QString who = event.byOwner ? tr("You")
        : event.who.isEmpty()         ? tr("Somebody")
                                      : event.who;
    const QString &text = event.text;
    switch (event.code) {
    case 1:
    case 56:
        return subjectChanged(who, text.isEmpty() ? newSubject(event.stored) : text);
    case 2:
    case 50:
        return text.isEmpty() ? tr("Members were added") : tr("%1 added %2").arg(who, text);
    case 3:
        return tr("%1 left").arg(who);
    case 4:
        return tr("%1 changed the group's picture").arg(who);
    case 5:
        return tr("%1 removed the group's picture").arg(who);
    case 7:
        return removed(event, who);
    case 9:
        return tr("%1 changed the phone number").arg(who);
    case 10:
        return tr("You are now an admin");
    case 11:
        return tr("You are no longer an admin");
    case 12:
        return text.isEmpty() ? tr("%1 created the group").arg(who)
                              : tr("%1 created the group “%2”").arg(who, text);
    case 14:
        return tr("You were removed");
    case 15:
    case 23:
        return tr("%1 joined by an invitation link").arg(who);
    case 17:
        return tr("%1 changed the description").arg(who);
    case 22:
        return tr("%1 removed the description").arg(who);
    case 18:
    case 19:
        return tr("Who may edit the group was changed");
    case 20:
    case 21:
        return tr("Who may send messages was changed");
    case 26:
        return tr("Disappearing messages were changed");
    case 30:
    case 31:
    case 61:
        return tr("The group was added to a community");
    case 33:
        return tr("The group was removed from a community");
    default:
        return text.isEmpty() ? tr("Group event") : tr("Group event: %1").arg(text);
    }
}

QString notice(const Event &event)
{
    switch (event.code) {
    case 2:
        return tr("Messages are end-to-end encrypted");
    case 1:
    case 21:
    case 45:
        return tr("Missed voice call");
    case 4:
    case 22:
    case 46:
        return tr("Missed video call");
    case 3:
    case 36:
        return tr("Security code changed");
    case 5:
    case 6:
        return tr("Phone number changed");
    case 25:
    case 26:
    case 29:
    case 30:
    case 38:
        return tr("Business account notice");
    case 34:
        return tr("You blocked this contact");
    case 35:
        return tr("You unblocked this contact");
    case 40:
    case 41:
        return tr("Group call started");
    default:
        return event.text.isEmpty() ? tr("Notice") : event.text;
    }
}

QString mediaKind(int code)
{
    switch (code) {
    case WhatsappCode::Picture:
        return tr("Photo");
    case WhatsappCode::Video:
        return tr("Video");
    case WhatsappCode::Audio:
        return tr("Audio");
    default:
        return {};
    }
}

QString contactCards(const WhatsappMediaItem &item)
{
    if (item.cardText.isEmpty() && item.cardName.isEmpty())
        return {};
    const QStringList cards = item.cardText.split(u"_$!<VCard-Separator>!$_"_s, Qt::SkipEmptyParts);
    QStringList names = item.cardName.split(u"_$!<Name-Separator>!$_"_s);
    if (names.size() == cards.size() + 1 && !cards.isEmpty())
        names.removeFirst(); // a summary of the others
    QStringList lines;
    for (qsizetype i = 0; i < std::max(cards.size(), names.size()); ++i) {
        const QByteArray card = cards.value(i).toUtf8();
        QString name = WhatsappNames::cleaned(withoutQuoting(names.value(i).trimmed()));
        if (name.isEmpty())
            name = vCardText(card, "FN");
        QStringList parts { name.isEmpty() ? tr("Contact") : name };
        for (QString number : vCardTexts(card, "TEL")) {
            if (number.startsWith("tel:"_L1, Qt::CaseInsensitive))
                number.remove(0, 4);
            if (!parts.contains(number))
                parts.append(number);
        }
        lines.append(parts.join(u", "_s));
    }
    return lines.join(u'\n');
}

QString location(const WhatsappMediaItem &item, const QString &comment)
{
    QStringList parts;
    for (const QString &part : { item.title, StoredText::cleaned(item.cardName) }) {
        if (!part.isEmpty())
            parts.append(part);
    }
    const bool isPlace = std::abs(item.latitude) <= 90 && std::abs(item.longitude) <= 180
        && (item.latitude != 0 || item.longitude != 0);
    if (isPlace) {
        const QString latitude = QString::number(item.latitude, 'f', 6);
        const QString longitude = QString::number(item.longitude, 'f', 6);
        parts.append(latitude + u',' + longitude);
        parts.append(u"https://www.openstreetmap.org/?mlat=%1&mlon=%2"_s.arg(latitude, longitude));
    }
    QStringList lines;
    if (!comment.isEmpty())
        lines.append(comment);
    if (!parts.isEmpty())
        lines.append(parts.join(u", "_s));
    return lines.join(u'\n');
}

} // namespace PhoneBackup::WhatsappWords
