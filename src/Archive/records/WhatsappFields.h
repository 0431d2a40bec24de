#ifndef ARCHIVE_RECORDS_WHATSAPPFIELDS_H
#define ARCHIVE_RECORDS_WHATSAPPFIELDS_H

#include "Archive/records/FieldWriter.h"
#include "PhoneBackup/whatsapp/WhatsappChat.h"
#include "PhoneBackup/whatsapp/WhatsappMessage.h"

namespace Archive {

template <>
inline constexpr std::array kNames<PhoneBackup::WhatsappChat::Kind> { "person", "group", "list" };
template <>
inline constexpr std::array kNames<PhoneBackup::WhatsappMessage::Kind> {
    "text",         "link",     "picture",  "video",       "gif",           "videoNote",
    "audio",        "sticker",  "document", "contactCard", "place",         "poll",
    "plannedEvent", "call",     "event",    "deleted",     "undecrypted",   "invitation",
    "product",      "business", "reply",    "album",       "statusMention", "unsupported"
};
template <>
inline constexpr std::array kNames<PhoneBackup::WhatsappMessage::State> { "",     "waiting",
                                                                          "sent", "delivered",
                                                                          "read", "notSent" };
template <>
inline constexpr std::array kNames<PhoneBackup::WhatsappFile::State> {
    "", "present", "neverDownloaded", "missing"
};
template <>
inline constexpr std::array kNames<PhoneBackup::WhatsappQuote::Kind> {
    "", "text", "picture", "contactCard", "place", "document", "audio", "video"
};
template <>
inline constexpr std::array kNames<PhoneBackup::WhatsappEvent::Kind> { "subjectChanged",
                                                                       "membersAdded",
                                                                       "memberLeft",
                                                                       "pictureChanged",
                                                                       "pictureRemoved",
                                                                       "memberRemoved",
                                                                       "numberChanged",
                                                                       "ownerMadeAdmin",
                                                                       "ownerNoLongerAdmin",
                                                                       "groupCreated",
                                                                       "ownerRemoved",
                                                                       "joinedByLink",
                                                                       "descriptionChanged",
                                                                       "descriptionRemoved",
                                                                       "editingChanged",
                                                                       "sendingChanged",
                                                                       "timerChanged",
                                                                       "addedToCommunity",
                                                                       "removedFromCommunity",
                                                                       "otherInGroup",
                                                                       "encrypted",
                                                                       "missedVoiceCall",
                                                                       "missedVideoCall",
                                                                       "securityCodeChanged",
                                                                       "phoneNumberChanged",
                                                                       "businessNotice",
                                                                       "blocked",
                                                                       "unblocked",
                                                                       "groupCallStarted",
                                                                       "channelNotice",
                                                                       "privacyChanged",
                                                                       "otherNotice" };

void fields(FieldWriter &field, const PhoneBackup::WhatsappChat &chat);
void fields(FieldWriter &field, const PhoneBackup::WhatsappMember &member);
void fields(FieldWriter &field, const PhoneBackup::WhatsappMessage &message);

} // namespace Archive

#endif
