#include "PhoneItems/whatsapp/WhatsappWords.h"
#include "platform/Translation_p.h"

#include <QRegularExpression>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems::WhatsappWords {

using namespace Qt::StringLiterals;
using namespace PhoneBackup;

namespace {

using Kind = WhatsappEvent::Kind;

// The text with names in the place of identifiers. Where it is nothing but a list of people, a
// comma stands between them, whatever stood there.
QString withNames(const WhatsappEvent &event)
{
    static const QRegularExpression separator(u"^[\\s,;]*$"_s);
    const QString &text = event.text;
    QString result;
    qsizetype from = 0;
    bool onlyPeople = true;
    for (const WhatsappEvent::Mention &mention : event.mentions) {
        const QString between = text.sliced(from, mention.at - from);
        onlyPeople = onlyPeople && separator.match(between).hasMatch();
        const QString who = mention.person.isOwner() ? tr("you") : name(mention.person);
        result += onlyPeople && !result.isEmpty() ? u", "_s + who : between + who;
        from = mention.at + mention.length;
    }
    if (from == 0)
        return text;
    const QString rest = text.sliced(from);
    return onlyPeople && separator.match(rest).hasMatch() ? result : result + rest;
}

QString removed(const WhatsappEvent &event, const QString &who, const QString &by)
{
    if (event.by.isOwner())
        return by.isEmpty() ? tr("You were removed") : tr("You were removed by %1").arg(by);
    return by.isEmpty() ? tr("%1 was removed").arg(who) : tr("%1 was removed by %2").arg(who, by);
}

// \return an empty text for what is no event of a group.
QString groupEvent(const WhatsappEvent &event, const QString &text)
{
    const WhatsappPerson &by = event.by;
    const QString who = by.isOwner()            ? tr("You")
        : by.who == WhatsappPerson::Who::Nobody ? tr("Somebody")
                                                : name(by);
    switch (event.kind) {
    case Kind::SubjectChanged:
        return text.isEmpty() ? tr("%1 changed the subject").arg(who)
                              : tr("%1 changed the subject to “%2”").arg(who, text);
    case Kind::MembersAdded:
        return text.isEmpty() ? tr("Members were added") : tr("%1 added %2").arg(who, text);
    case Kind::MemberLeft:
        return tr("%1 left").arg(who);
    case Kind::PictureChanged:
        return tr("%1 changed the group's picture").arg(who);
    case Kind::PictureRemoved:
        return tr("%1 removed the group's picture").arg(who);
    case Kind::MemberRemoved:
        return removed(event, who, text);
    case Kind::NumberChanged:
        return tr("%1 changed the phone number").arg(who);
    case Kind::OwnerMadeAdmin:
        return tr("You are now an admin");
    case Kind::OwnerNoLongerAdmin:
        return tr("You are no longer an admin");
    case Kind::GroupCreated:
        return text.isEmpty() ? tr("%1 created the group").arg(who)
                              : tr("%1 created the group “%2”").arg(who, text);
    case Kind::OwnerRemoved:
        return tr("You were removed");
    case Kind::JoinedByLink:
        return tr("%1 joined by an invitation link").arg(who);
    case Kind::DescriptionChanged:
        return tr("%1 changed the description").arg(who);
    case Kind::DescriptionRemoved:
        return tr("%1 removed the description").arg(who);
    case Kind::EditingChanged:
        return tr("Who may edit the group was changed");
    case Kind::SendingChanged:
        return tr("Who may send messages was changed");
    case Kind::TimerChanged:
        return tr("Disappearing messages were changed");
    case Kind::AddedToCommunity:
        return tr("The group was added to a community");
    case Kind::RemovedFromCommunity:
        return tr("The group was removed from a community");
    case Kind::OtherInGroup:
        return text.isEmpty() ? tr("Group event") : tr("Group event: %1").arg(text);
    default:
        return {};
    }
}

} // namespace

QString event(const WhatsappEvent &event)
{
    const QString text = withNames(event);
    switch (event.kind) {
    case Kind::Encrypted:
        return tr("Messages are end-to-end encrypted");
    case Kind::MissedVoiceCall:
        return tr("Missed voice call");
    case Kind::MissedVideoCall:
        return tr("Missed video call");
    case Kind::SecurityCodeChanged:
        return tr("Security code changed");
    case Kind::PhoneNumberChanged:
        return tr("Phone number changed");
    case Kind::BusinessNotice:
        return tr("Business account notice");
    case Kind::Blocked:
        return tr("You blocked this contact");
    case Kind::Unblocked:
        return tr("You unblocked this contact");
    case Kind::GroupCallStarted:
        return tr("Group call started");
    case Kind::ChannelNotice:
        return event.text.isEmpty() ? tr("Channel") : event.text;
    case Kind::PrivacyChanged:
        return tr("Advanced chat privacy was changed");
    case Kind::OtherNotice:
        return text.isEmpty() ? tr("Notice") : text;
    default:
        return groupEvent(event, text);
    }
}

} // namespace PhoneItems::WhatsappWords
