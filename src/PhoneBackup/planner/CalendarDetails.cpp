#include "PhoneBackup/planner/CalendarDetails.h"

#include "PhoneBackup/source/Table.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

QString withoutScheme(const QString &address)
{
    constexpr QLatin1StringView kScheme("mailto:");
    return address.startsWith(kScheme, Qt::CaseInsensitive) ? address.sliced(kScheme.size())
                                                            : address;
}

// Of two lists of these numbers this is the one that readers of this database agree on; the phone's
// programming interface counts otherwise.
Guest::Answer answerOf(qint64 status)
{
    constexpr qint64 kAccepted = 1;
    constexpr qint64 kDeclined = 2;
    constexpr qint64 kTentative = 3;
    switch (status) {
    case kAccepted:
        return Guest::Answer::Accepted;
    case kDeclined:
        return Guest::Answer::Declined;
    case kTentative:
        return Guest::Answer::Tentative;
    default:
        return Guest::Answer::None;
    }
}

} // namespace

CalendarDetails::CalendarDetails(RowDatabase &database)
    : m_database(database)
{
    readPlaces();
    readRepeats();
    readGuests();
    readAlarms();
    readFiles();
}

std::unique_ptr<PlannedDetails> CalendarDetails::take(qint64 id)
{
    const auto found = m_details.find(id);
    return found == m_details.end() ? nullptr
                                    : std::make_unique<PlannedDetails>(std::move(found->second));
}

std::unique_ptr<Place> CalendarDetails::place(qint64 number) const
{
    const auto found = m_places.constFind(number);
    return found == m_places.constEnd() || found->isEmpty() ? nullptr
                                                            : std::make_unique<Place>(*found);
}

void CalendarDetails::readPlaces()
{
    Table table(m_database, u"Location"_s);
    const auto [title, address, latitude, longitude, radius, alarm] = table.columns(
        u"title"_s, u"address"_s, u"latitude"_s, u"longitude"_s, u"radius"_s, u"alarm_owner_id"_s);
    table.forEach([&, this](const Table::Row &row) {
        m_places.insert(row.id(),
                        { row.text(title).trimmed(),
                          row.text(address).trimmed(),
                          row.number(latitude),
                          row.number(longitude),
                          row.number(radius) });
        if (!row.isNull(alarm))
            m_placesOfAlarms.insert(row.integer(alarm), row.id());
    });
}

void CalendarDetails::readRepeats()
{
    Table rules(m_database, u"Recurrence"_s);
    const auto [owner, frequency, interval, count, end, specifier] = rules.columns(
        u"owner_id"_s, u"frequency"_s, u"interval"_s, u"count"_s, u"end_date"_s, u"specifier"_s);
    rules.forEach([&, this](const Table::Row &row) {
        RepeatRule rule;
        rule.interval = row.integer(interval);
        rule.count = row.integer(count);
        rule.until = PlannedTime(row.number(end), {}, PlannedTime::Kind::Day);
        rule.setSpecifier(row.text(specifier).trimmed(), row.integer(frequency));
        m_details[row.integer(owner)].repeats.push_back(std::move(rule));
    });
    Table exceptions(m_database, u"ExceptionDate"_s);
    const auto [item, date] = exceptions.columns(u"owner_id"_s, u"date"_s);
    exceptions.forEach([&, this](const Table::Row &row) {
        const PlannedTime day(row.number(date), {}, PlannedTime::Kind::Day);
        if (day.isValid())
            m_details[row.integer(item)].exceptions.push_back(day);
    });
}

void CalendarDetails::readGuests()
{
    constexpr qint64 kOrganizer = 8; // kind of a participant; others are 7
    Table identities(m_database, u"Identity"_s);
    const auto [shown, first, last, contact] =
        identities.columns(u"display_name"_s, u"first_name"_s, u"last_name"_s, u"address"_s);
    QHash<qint64, std::pair<QString, QString>> people; // name and address
    identities.forEach([&](const Table::Row &row) {
        QString name = row.text(shown).trimmed();
        if (name.isEmpty())
            name = (row.text(first) + u' ' + row.text(last)).trimmed();
        people.insert(row.id(), { name, withoutScheme(row.text(contact).trimmed()) });
    });

    Table guests(m_database, u"Participant"_s);
    const auto [owner, kind, identity, status, isSelf, comment] = guests.columns(
        u"owner_id"_s, u"entity_type"_s, u"identity_id"_s, u"status"_s, u"is_self"_s, u"comment"_s);
    const auto [email, number] = guests.columns(u"email"_s, u"phone_number"_s);
    guests.forEach([&, this](const Table::Row &row) {
        Guest guest;
        std::tie(guest.name, guest.address) = people.value(row.integer(identity));
        if (guest.address.isEmpty())
            guest.address = withoutScheme(row.text(email).trimmed());
        guest.number = row.text(number).trimmed();
        guest.comment = row.text(comment).trimmed();
        guest.answer = answerOf(row.integer(status));
        guest.isOrganizer = row.integer(kind) == kOrganizer;
        guest.isOwner = row.integer(isSelf) != 0;
        m_details[row.integer(owner)].guests.push_back(std::move(guest));
    });
}

void CalendarDetails::readAlarms()
{
    constexpr qint64 kArriving = 1;
    constexpr qint64 kLeaving = 2;
    Table alarms(m_database, u"Alarm"_s);
    const QString current = u"calendaritem_owner_id"_s;
    const auto owner = alarms.column(alarms.hasColumn(current) ? current : u"owner_id"_s);
    const auto [date, interval, proximity] =
        alarms.columns(u"trigger_date"_s, u"trigger_interval"_s, u"proximity"_s);
    alarms.forEach([&, this](const Table::Row &row) {
        if (row.isNull(owner))
            return;
        Alarm alarm;
        alarm.moment = PlannedTime(row.number(date), {}, PlannedTime::Kind::Moment);
        const qint64 near = row.integer(proximity);
        if (near == kArriving || near == kLeaving) {
            alarm.at = near == kArriving ? Alarm::At::Arriving : Alarm::At::Leaving;
            alarm.place = m_places.value(m_placesOfAlarms.value(row.id()));
        } else if (alarm.moment.isValid()) {
            alarm.at = Alarm::At::Moment;
        } else if (!row.isNull(interval)) {
            alarm.at = Alarm::At::Offset;
            alarm.offsetSeconds = row.number(interval);
        }
        m_details[row.integer(owner)].alarms.push_back(std::move(alarm));
    });
}

void CalendarDetails::readFiles()
{
    Table files(m_database, u"AttachmentFile"_s);
    const auto [name, url, size] = files.columns(u"filename"_s, u"url"_s, u"file_size"_s);
    QHash<qint64, AttachedFile> known;
    files.forEach([&](const Table::Row &row) {
        known.insert(row.id(),
                     { row.text(name).trimmed(),
                       row.text(url).trimmed(),
                       row.isNull(size) ? -1 : row.integer(size) });
    });
    Table attachments(m_database, u"Attachment"_s);
    const auto [owner, file] = attachments.columns(u"owner_id"_s, u"file_id"_s);
    attachments.forEach([&, this](const Table::Row &row) {
        const auto found = known.constFind(row.integer(file));
        if (found != known.constEnd())
            m_details[row.integer(owner)].files.push_back(*found);
    });
}

} // namespace PhoneBackup
