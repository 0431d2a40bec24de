#include "Archive/lists/PlannerPages.h"

#include "Archive/html/Html.h"
#include "Archive/media/Site.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/planner/Event.h"
#include "PhoneBackup/planner/Reminder.h"
#include "PhoneItems/planner/PlannedText.h"

#include <algorithm>

namespace Archive {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

QDate dayOf(const PlannedTime &time)
{
    if (!time.isValid())
        return {};
    return time.kind() == PlannedTime::Kind::Day || time.isFloating()
        ? time.moment().date()
        : time.moment().toLocalTime().date();
}

QString timeOf(const PlannedTime &time)
{
    if (!time.isValid())
        return {};
    const QString day = dayText(time.kind() == PlannedTime::Kind::Day ? time.day() : dayOf(time));
    if (time.kind() == PlannedTime::Kind::Day)
        return day;
    const QDateTime moment = time.isFloating() ? time.moment() : time.moment().toLocalTime();
    return day + u", "_s + moment.toString(u"HH:mm"_s);
}

QString spanOf(const Event &event)
{
    const QString start = timeOf(event.start);
    QString end = event.end.kind() == PlannedTime::Kind::Day && event.end.isValid()
        ? dayText(event.end.lastDay(event.start))
        : timeOf(event.end);
    if (end.isEmpty() || end == start)
        return start;
    if (dayOf(event.start) == dayOf(event.end) && end.contains(u", "_s))
        end = end.section(u", "_s, -1);
    return start + u" – "_s + end;
}

QString answerText(Guest::Answer answer)
{
    switch (answer) {
    case Guest::Answer::Accepted:
        return u" (accepted)"_s;
    case Guest::Answer::Declined:
        return u" (declined)"_s;
    case Guest::Answer::Tentative:
        return u" (maybe)"_s;
    case Guest::Answer::None:
        break;
    }
    return {};
}

QString alarmText(const Alarm &alarm)
{
    switch (alarm.at) {
    case Alarm::At::Moment:
        return timeOf(alarm.moment);
    case Alarm::At::Offset: {
        const double minutes = alarm.offsetSeconds.value_or(0) / 60;
        if (minutes == 0)
            return u"at its time"_s;
        const QString length = std::abs(minutes) < 120 ? u"%1 min"_s.arg(std::abs(minutes))
            : std::abs(minutes) < 2880                 ? u"%1 h"_s.arg(std::abs(minutes) / 60)
                                                       : u"%1 days"_s.arg(std::abs(minutes) / 1440);
        return length + (minutes < 0 ? u" before"_s : u" after"_s);
    }
    case Alarm::At::Arriving:
        return u"on arriving at "_s + alarm.place.title;
    case Alarm::At::Leaving:
        return u"on leaving "_s + alarm.place.title;
    case Alarm::At::Unknown:
        break;
    }
    return {};
}

void putLine(Html &html, const char *name, const QString &text)
{
    if (text.trimmed().isEmpty())
        return;
    html << "<span class=\"fact\" dir=\"auto\">" << name;
    html.linkedText(text) << "</span>";
}

void putDetails(Html &html, const PlannedDetails *details, const QString &description)
{
    if (!details)
        return;
    for (const QString &line : PhoneItems::remarks(*details, description)) {
        if (!line.startsWith("Invited: "_L1) && !line.startsWith("Organizer: "_L1))
            putLine(html, "", line);
    }
    QStringList guests;
    for (const Guest &guest : details->guests) {
        const QString name = !guest.name.isEmpty() ? guest.name
            : !guest.address.isEmpty()             ? guest.address
                                                   : guest.number;
        QString one = guest.isOwner ? name + u" (you)"_s : name;
        if (guest.isOrganizer)
            one += u" (organizer)"_s;
        one += answerText(guest.answer);
        if (!guest.comment.isEmpty())
            one += u": "_s + guest.comment;
        guests.append(one);
    }
    putLine(html, "Guests: ", guests.join(u", "_s));
    QStringList alarms;
    for (const Alarm &alarm : details->alarms)
        alarms.append(alarmText(alarm));
    alarms.removeAll(QString());
    putLine(html, "Alert: ", alarms.join(u", "_s));
}

} // namespace

PlannerPages::PlannerPages(Site &site)
    : m_events(site, "calendar", "event", "cards")
    , m_reminders(site, "reminders", "reminder", "cards")
{
}

void PlannerPages::take(const Event &event)
{
    Planned &planned = m_calendar.emplace_back();
    planned.entry.date = event.start.moment();
    const QDate day = dayOf(event.start);
    planned.group = day.isValid() ? monthText(day) : u"Without a date"_s;
    const QString title = event.title.isEmpty() ? u"Event"_s : event.title;
    Html html(planned.entry.html);
    html << "<b dir=\"auto\""
         << (event.status == Event::Status::Cancelled ? " class=\"done\">" : ">");
    html.text(title) << "</b><span class=\"when\">";
    html.text(spanOf(event)) << "</span>";
    QString place;
    if (event.place) {
        place = event.place->title;
        if (!event.place->address.isEmpty() && event.place->address != place)
            place += (place.isEmpty() ? u""_s : u", "_s) + event.place->address;
    }
    putLine(html, "", place);
    putLine(html, "", event.description);
    putDetails(html, event.details.get(), event.description);
    QStringList facts;
    if (event.calendar)
        facts.append(event.calendar->title);
    if (event.status == Event::Status::Cancelled)
        facts.append(u"Cancelled"_s);
    else if (event.status == Event::Status::Tentative)
        facts.append(u"Tentative"_s);
    if (event.isPrivate)
        facts.append(u"Private"_s);
    if (event.travelSeconds > 0)
        facts.append(u"Travel time %1"_s.arg(lengthText(double(event.travelSeconds))));
    html << "<small dir=\"auto\">";
    html.text(facts.join(u" · "_s)) << "</small>";
    planned.entry.who = title;
    planned.entry.text = place + u' ' + event.description;
    planned.entry.latest = title + u", "_s + timeOf(event.start);
}

void PlannerPages::take(const Reminder &reminder)
{
    const QString list = reminder.list ? reminder.list->title : u"Reminders"_s;
    const auto same = std::find_if(
        m_lists.begin(), m_lists.end(), [&](const auto &one) { return one.first == list; });
    auto &planned = same != m_lists.end()
        ? same->second
        : m_lists.emplace_back(list, std::vector<Planned>()).second;
    Planned &one = planned.emplace_back();
    const QString title = reminder.title.isEmpty() ? u"Reminder"_s : reminder.title;
    Html html(one.entry.html);
    html << "<b dir=\"auto\" class=\"" << (reminder.isCompleted ? "done" : "todo")
         << (reminder.parent != 0 ? " sub\">" : "\">") << (reminder.isCompleted ? "☑ " : "☐ ");
    html.text(title) << "</b>";
    if (reminder.due.isValid()) {
        html << "<span class=\"when\">Due ";
        html.text(reminder.isAllDay ? dayText(dayOf(reminder.due)) : timeOf(reminder.due))
            << "</span>";
    }
    putLine(html, "", reminder.notes);
    putDetails(html, reminder.details.get(), reminder.notes);
    QStringList facts;
    if (reminder.isFlagged)
        facts.append(u"Flagged"_s);
    static constexpr std::array kPriorities {
        "", "High priority", "Medium priority", "Low priority"
    };
    facts.append(QString::fromLatin1(kPriorities[std::size_t(reminder.priority)]));
    for (const QString &tag : reminder.tags)
        facts.append(u'#' + tag);
    if (reminder.assignee)
        facts.append(u"For "_s + reminder.assignee->name);
    if (reminder.completed.isValid())
        facts.append(u"Completed "_s + dayText(reminder.completed.toLocalTime().date()));
    if (reminder.deleted)
        facts.append(u"Deleted"_s);
    facts.removeAll(QString());
    html << "<small dir=\"auto\">";
    html.text(facts.join(u" · "_s)) << "</small>";
    one.entry.date = reminder.due.isValid() ? reminder.due.moment() : reminder.created;
    one.entry.who = title;
    one.entry.text = reminder.notes + u' ' + reminder.tags.join(u' ');
    if (!reminder.isCompleted)
        one.entry.latest = title;
}

void PlannerPages::finish()
{
    std::stable_sort(m_calendar.begin(), m_calendar.end(), [](const Planned &a, const Planned &b) {
        return PhoneTime::isNewer(a.entry.date, b.entry.date);
    });
    for (const Planned &event : m_calendar) {
        m_events.group(event.group);
        m_events.add(event.entry);
    }
    m_events.finish();
    for (const auto &[list, reminders] : m_lists) {
        m_reminders.group(list);
        for (const Planned &reminder : reminders)
            m_reminders.add(reminder.entry);
    }
    m_reminders.finish();
}

} // namespace Archive
