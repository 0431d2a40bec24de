#ifndef ARCHIVE_RECORDS_CALLFIELDS_H
#define ARCHIVE_RECORDS_CALLFIELDS_H

#include "Archive/records/FieldWriter.h"
#include "PhoneBackup/calls/Voicemail.h"
#include "PhoneBackup/source/Call.h"

namespace Archive {

template <>
inline constexpr std::array kNames<PhoneBackup::Call::Direction> { "", "incoming", "outgoing" };
template <>
inline constexpr std::array kNames<PhoneBackup::Call::Kind> { "", "telephone", "faceTime", "app" };

inline void fields(FieldWriter &field, const PhoneBackup::Call &call)
{
    field("id", call.id);
    field("row", call.row, 0);
    field("date", call.date);
    field("seconds", call.seconds);
    field("direction", call.direction);
    field("kind", call.kind);
    field("missed", call.isMissed);
    field("video", call.isVideo);
    field("seen", call.isSeen);
    field("ofLog", call.isOfLog);
    field("app", call.app);
    field("addresses", call.addresses);
    field("names", call.names);
    field("group", call.group);
    field("place", call.place);
    field("country", call.country);
}

inline void fields(FieldWriter &field, const PhoneBackup::Voicemail &voicemail)
{
    field("row", voicemail.row, -1);
    field("file", File { voicemail.file });
    field("date", voicemail.date);
    field("sender", voicemail.sender);
    field("callback", voicemail.callback);
    field("seconds", voicemail.seconds);
    field("deleted", voicemail.isDeleted);
    field("deletedOn", voicemail.deletedOn);
    field("heard", voicemail.isHeard);
}

} // namespace Archive

#endif
