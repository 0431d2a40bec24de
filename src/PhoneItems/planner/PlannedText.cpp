#include "PhoneItems/planner/PlannedText.h"

#include "PhoneItems/planner/RepeatText.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

// Empty when nothing is known of them.
QString guestName(const Guest &guest)
{
    if (!guest.name.isEmpty())
        return guest.name;
    return guest.address.isEmpty() ? guest.number : guest.address;
}

QString guestNames(const std::vector<Guest> &guests, bool areOrganizers)
{
    QStringList names;
    for (const Guest &guest : guests) {
        const QString name = guestName(guest);
        if (guest.isOrganizer == areOrganizers && !name.isEmpty())
            names.append(name);
    }
    return names.join(u", "_s);
}

} // namespace

QString plannedText(const PlannedTime &time)
{
    return time.kind() == PlannedTime::Kind::Day
        ? time.day().toString(Qt::ISODate)
        : CCommonUtils::datetimeToMinute(time.moment(), !time.isFloating());
}

QString plannedEndText(const PlannedTime &end, const PlannedTime &start)
{
    return end.kind() == PlannedTime::Kind::Day ? end.lastDay(start).toString(Qt::ISODate)
                                                : plannedText(end);
}

QStringList remarks(const PlannedDetails &details, const QString &description)
{
    QStringList lines;
    for (const RepeatRule &rule : details.repeats) {
        const QString line = repeatText(rule);
        if (rule.isCertain || !lines.contains(line))
            lines.append(line);
    }
    const auto add = [&lines](const QString &text, const QString &what) {
        if (!what.isEmpty())
            lines.append(text.arg(what));
    };
    QStringList exceptions;
    for (const PlannedTime &exception : details.exceptions)
        exceptions.append(plannedText(exception));
    QStringList files;
    for (const AttachedFile &file : details.files) {
        if (!file.name.isEmpty())
            files.append(file.name);
    }
    add(tr("Except on %1"), exceptions.join(u", "_s));
    add(tr("Organizer: %1"), guestNames(details.guests, true));
    add(tr("Invited: %1"), guestNames(details.guests, false));
    add(tr("Attached: %1"), files.join(u", "_s));
    QStringList links;
    for (const QString &link : { details.url, details.conference, details.foundConference }) {
        if (!link.isEmpty() && !links.contains(link) && !description.contains(link))
            links.append(link);
    }
    return lines + links;
}

} // namespace PhoneItems
