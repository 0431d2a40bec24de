#ifndef ARCHIVE_RECORDS_MESSAGEFIELDS_H
#define ARCHIVE_RECORDS_MESSAGEFIELDS_H

#include "Archive/records/FieldWriter.h"
#include "Archive/records/RecordTaker.h"
#include "PhoneBackup/messages/Conversation.h"
#include "PhoneBackup/messages/MessageList.h"

namespace Archive {

template <>
inline constexpr std::array kNames<PhoneBackup::MessageService> {
    "", "iMessage", "iMessageLite", "SMS", "RCS", "satelliteSMS", "other"
};
template <>
inline constexpr std::array kNames<PhoneBackup::Delivery> {
    "received", "sent", "waiting", "failed"
};
template <>
inline constexpr std::array kNames<PhoneBackup::MessagePart::Kind> { "text", "file", "lostFile" };
template <>
inline constexpr std::array kNames<PhoneBackup::MessageAttachment::Kind> { "picture",  "video",
                                                                           "audio",    "contact",
                                                                           "location", "other" };
template <>
inline constexpr std::array kNames<PhoneBackup::MessageAttachment::State> { "present",
                                                                            "neverDownloaded",
                                                                            "missing" };
template <>
inline constexpr std::array kNames<PhoneBackup::Balloon::Kind> { "link",        "app",
                                                                 "payment",     "poll",
                                                                 "handwriting", "digitalTouch" };
template <>
inline constexpr std::array kNames<PhoneBackup::Reaction::Kind> { "love",  "like",     "dislike",
                                                                  "laugh", "emphasis", "question",
                                                                  "emoji", "sticker",  "putSticker",
                                                                  "vote" };
template <>
inline constexpr std::array kNames<PhoneBackup::GroupEvent::Kind> { "added",
                                                                    "removed",
                                                                    "changedNumber",
                                                                    "named",
                                                                    "nameRemoved",
                                                                    "left",
                                                                    "photoChanged",
                                                                    "photoRemoved",
                                                                    "backgroundChanged",
                                                                    "backgroundRemoved",
                                                                    "changed",
                                                                    "locationShared",
                                                                    "locationHidden",
                                                                    "audioKept",
                                                                    "callStarted",
                                                                    "unknown" };

void fields(FieldWriter &field, const MessageOf &of);
void fields(FieldWriter &field, const PhoneBackup::Conversation &conversation);

} // namespace Archive

#endif
