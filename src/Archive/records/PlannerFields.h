#ifndef ARCHIVE_RECORDS_PLANNERFIELDS_H
#define ARCHIVE_RECORDS_PLANNERFIELDS_H

#include "Archive/records/FieldWriter.h"
#include "PhoneBackup/planner/Event.h"
#include "PhoneBackup/planner/Reminder.h"

namespace Archive {

template <>
inline constexpr std::array kNames<PhoneBackup::PlannedTime::Kind> { "", "day" };
template <>
inline constexpr std::array kNames<PhoneBackup::RepeatRule::Unit> {
    "", "day", "week", "month", "year"
};
template <>
inline constexpr std::array kNames<PhoneBackup::RepeatRule::Choice::Kind> { "weekday",
                                                                            "monthDay",
                                                                            "month" };
template <>
inline constexpr std::array kNames<Qt::DayOfWeek> { "",         "monday", "tuesday",  "wednesday",
                                                    "thursday", "friday", "saturday", "sunday" };
template <>
inline constexpr std::array kNames<PhoneBackup::Guest::Answer> {
    "", "accepted", "declined", "tentative"
};
template <>
inline constexpr std::array kNames<PhoneBackup::Alarm::At> {
    "moment", "offset", "arriving", "leaving", ""
};
template <>
inline constexpr std::array kNames<PhoneBackup::EventCalendar::Sharing> { "",
                                                                          "byOwner",
                                                                          "withOwner" };
template <>
inline constexpr std::array kNames<PhoneBackup::Event::Status> {
    "", "confirmed", "tentative", "cancelled"
};
template <>
inline constexpr std::array kNames<PhoneBackup::Event::Availability> {
    "", "free", "tentative", "away"
};
template <>
inline constexpr std::array kNames<PhoneBackup::Reminder::Priority> { "", "high", "medium", "low" };

inline void fields(FieldWriter &field, const PhoneBackup::PlannedTime &time)
{
    field("moment", time.moment());
    field("kind", time.kind());
    field("zone", time.zone());
}

inline void fields(FieldWriter &field, const PhoneBackup::RepeatRule::Choice &choice)
{
    using Kind = PhoneBackup::RepeatRule::Choice::Kind;
    field("kind", choice.kind);
    field("number", choice.number, 0);
    if (choice.kind == Kind::Weekday)
        field("weekday", choice.weekday);
}

inline void fields(FieldWriter &field, const PhoneBackup::RepeatRule &rule)
{
    field("unit", rule.unit);
    field("interval", rule.interval);
    field("count", rule.count, 0);
    field("until", rule.until);
    field("choices", rule.choices);
    field("specifier", rule.specifier);
    field("notUnderstood", !rule.isUnderstood);
    field("uncertain", !rule.isCertain);
}

inline void fields(FieldWriter &field, const PhoneBackup::Place &place)
{
    field("title", place.title);
    field("address", place.address);
    field("latitude", place.latitude);
    field("longitude", place.longitude);
    field("radiusMeters", place.radiusMeters);
}

inline void fields(FieldWriter &field, const PhoneBackup::Guest &guest)
{
    field("name", guest.name);
    field("address", guest.address);
    field("number", guest.number);
    field("comment", guest.comment);
    field("answer", guest.answer);
    field("organizer", guest.isOrganizer);
    field("owner", guest.isOwner);
}

inline void fields(FieldWriter &field, const PhoneBackup::Alarm &alarm)
{
    field("at", alarm.at);
    field("moment", alarm.moment);
    field("offsetSeconds", alarm.offsetSeconds);
    field("place", alarm.place);
}

inline void fields(FieldWriter &field, const PhoneBackup::AttachedFile &file)
{
    field("name", file.name);
    field("address", file.address);
    field("bytes", file.bytes, -1);
}

inline void fields(FieldWriter &field, const PhoneBackup::PlannedDetails &details)
{
    field("repeats", details.repeats);
    field("exceptions", details.exceptions);
    field("guests", details.guests);
    field("alarms", details.alarms);
    field("files", details.files);
    field("url", details.url);
    field("conference", details.conference);
    field("foundConference", details.foundConference);
}

inline void fields(FieldWriter &field, const PhoneBackup::EventCalendar &calendar)
{
    field("id", calendar.uuid);
    field("row", calendar.id, 0);
    field("title", calendar.title);
    field("color", calendar.color);
    field("account", calendar.account);
    field("notes", calendar.notes);
    field("sharing", calendar.sharing);
}

inline void fields(FieldWriter &field, const PhoneBackup::Event &event)
{
    field("id", event.uuid);
    field("row", event.id, 0);
    field("title", event.title);
    field("description", event.description);
    field("calendar", event.calendar);
    field("place", event.place);
    field("start", event.start);
    field("end", event.end);
    field("allDay", event.isAllDay);
    field("replaces", event.replaces);
    field("replacesIn", event.replacesIn, 0);
    field("status", event.status);
    field("availability", event.availability);
    field("private", event.isPrivate);
    field("travelSeconds", event.travelSeconds, 0);
    field("created", event.created);
    field("modified", event.modified);
    field("details", event.details);
}

inline void fields(FieldWriter &field, const PhoneBackup::ReminderList &list)
{
    field("id", list.uuid);
    field("row", list.id, 0);
    field("title", list.title);
    field("group", list.group);
    field("account", list.account);
    field("color", list.color);
}

inline void fields(FieldWriter &field, const PhoneBackup::Reminder &reminder)
{
    field("id", reminder.uuid);
    field("row", reminder.id, 0);
    field("parent", reminder.parent, 0);
    field("title", reminder.title);
    field("notes", reminder.notes);
    field("list", reminder.list);
    field("due", reminder.due);
    field("allDay", reminder.isAllDay);
    field("completed", reminder.isCompleted);
    field("completedOn", reminder.completed);
    field("created", reminder.created);
    field("modified", reminder.modified);
    field("priority", reminder.priority);
    field("flagged", reminder.isFlagged);
    field("deleted", reminder.deleted);
    field("tags", reminder.tags);
    field("assignee", reminder.assignee);
    field("details", reminder.details);
}

} // namespace Archive

#endif
