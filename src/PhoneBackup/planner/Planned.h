#ifndef PHONEBACKUP_PLANNER_PLANNED_H
#define PHONEBACKUP_PLANNER_PLANNED_H

#include "PhoneBackup/planner/PlannedTime.h"
#include "PhoneBackup/planner/RepeatRule.h"

#include <QString>

#include <optional>
#include <vector>

namespace PhoneBackup {

//! Somewhere on earth.
struct Place
{
    QString title;
    QString address;
    std::optional<double> latitude; //!< Degrees.
    std::optional<double> longitude;
    std::optional<double> radiusMeters; //!< Of what counts as being there.

    bool isEmpty() const { return title.isEmpty() && address.isEmpty() && !latitude; }
};

//! Somebody who takes part in an event, or who a reminder is assigned to.
struct Guest
{
    enum class Answer { None, Accepted, Declined, Tentative };

    QString name;
    QString address; //!< E-mail.
    QString number;
    QString comment; //!< What they answered besides.
    Answer answer = Answer::None;
    bool isOrganizer = false;
    bool isOwner = false; //!< The phone's owner.
};

//! What reminds of an event or reminder.
struct Alarm
{
    enum class At { Moment, Offset, Arriving, Leaving, Unknown };

    At at = At::Unknown;
    PlannedTime moment;
    std::optional<double> offsetSeconds; //!< From the beginning; negative: before it.
    Place place; //!< Where one arrives or leaves.
};

//! A file that belongs to an event; only its name is on the phone.
struct AttachedFile
{
    QString name;
    QString address;
    qint64 bytes = -1; //!< -1 when not known.
};

//! What few events and reminders have.
struct PlannedDetails
{
    std::vector<RepeatRule> repeats;
    std::vector<PlannedTime> exceptions; //!< Days on which it does not come again.
    std::vector<Guest> guests; //!< The organizer, who may be there, too, among them.
    std::vector<Alarm> alarms;
    std::vector<AttachedFile> files;
    QString url;
    QString conference; //!< Address of a meeting.
    QString foundConference; //!< That which the phone found in the texts.
};

} // namespace PhoneBackup

#endif
