#ifndef PHONEBACKUP_PLANNER_PLANNEDTIME_H
#define PHONEBACKUP_PLANNER_PLANNEDTIME_H

#include <QString>

#include <optional>

namespace PhoneBackup {

/*!
    \brief A moment or day that a person planned, as calendar and reminders store it.

    Unlike what has happened, it may lie before 1970 and far ahead; years before 1700 and after 2400
    are none, and so is 0.
*/
class PlannedTime
{
public:
    enum class Kind {
        Moment,
        Day, //!< All day: the hour does not matter.
    };

    //! \a seconds since 2001. \a zone: the name of a time zone, "_float" for the time on the clock
    //! wherever one is, empty when not known.
    PlannedTime(std::optional<double> seconds, const QString &zone, Kind kind);

    bool isValid() const { return m_seconds.has_value(); }
    std::optional<double> seconds() const { return m_seconds; }

    //! "2023-03-08 21:26" in local time or as planned on the clock, or "2023-03-08".
    QString text() const;

    /*!
        The end of something that begins at \a start: for days the last one that it takes, whether
        the end is stored as the last second of that day or as the midnight after it.
    */
    QString endText(const PlannedTime &start) const;

private:
    QString dayText(double seconds) const;

    std::optional<double> m_seconds;
    QString m_zone;
    Kind m_kind;
};

} // namespace PhoneBackup

#endif
