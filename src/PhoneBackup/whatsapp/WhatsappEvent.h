#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPEVENT_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPEVENT_H

#include "PhoneBackup/whatsapp/WhatsappPerson.h"

#include <vector>

namespace PhoneBackup {

//! What happened to a chat or to somebody in it.
struct WhatsappEvent
{
    enum class Kind : quint8 {
        // In a group: whom it happened to stands in the text.
        SubjectChanged, //!< To the text.
        MembersAdded,
        MemberLeft,
        PictureChanged,
        PictureRemoved,
        MemberRemoved, //!< By whom stands in the text.
        NumberChanged,
        OwnerMadeAdmin,
        OwnerNoLongerAdmin,
        GroupCreated, //!< With the text for its subject.
        OwnerRemoved,
        JoinedByLink,
        DescriptionChanged,
        DescriptionRemoved,
        EditingChanged, //!< Who may edit the group.
        SendingChanged, //!< Who may send messages.
        TimerChanged, //!< Of messages that disappear.
        AddedToCommunity,
        RemovedFromCommunity,
        OtherInGroup,
        // Notices of the app.
        Encrypted,
        MissedVoiceCall,
        MissedVideoCall,
        SecurityCodeChanged,
        PhoneNumberChanged,
        BusinessNotice,
        Blocked,
        Unblocked,
        GroupCallStarted,
        ChannelNotice,
        PrivacyChanged,
        OtherNotice,
    };

    //! An identifier in the text, and who that is.
    struct Mention
    {
        qsizetype at = 0; //!< Where it begins; in the order of the text.
        qsizetype length = 0;
        WhatsappPerson person;
    };

    Kind kind = Kind::OtherNotice;
    qint64 storedCode = 0; //!< What kind was made of.
    WhatsappPerson by; //!< Who did it.
    QString text; //!< A subject, identifiers of people or words; empty for data of the app's own.
    std::vector<Mention> mentions;
};

//! The kind that WhatsApp's number \a storedCode stands for, in a group or among its notices.
WhatsappEvent::Kind whatsappGroupEvent(qint64 storedCode);
WhatsappEvent::Kind whatsappNotice(qint64 storedCode);

/*!
    Puts \a stored, the text of a row, into \a event, whose kind is known: what a person can read.
    Data of the app's own is none but for the new subject in it.
*/
void setEventText(WhatsappEvent &event, const QString &stored);

//! The identifiers in the text of an event; who they are is still to be found.
std::vector<WhatsappEvent::Mention> mentionsIn(const QString &text);

} // namespace PhoneBackup

#endif
