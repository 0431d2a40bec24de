#ifndef PHONEBACKUP_PLANNER_PLANNEDTIME_H
#define PHONEBACKUP_PLANNER_PLANNEDTIME_H

#include <QDateTime>
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

    //! No time at all.
    PlannedTime() = default;

    //! \a seconds since 2001. \a zone: the name of a time zone, floating() for the time on the
    //! clock wherever one is, empty when not known.
    PlannedTime(std::optional<double> seconds, const QString &zone, Kind kind);

    //! What stands in the place of a zone where a time on the clock is meant.
    static QString floating();

    bool isValid() const { return m_moment.isValid(); }
    Kind kind() const { return m_kind; }

    //! The zone that it was planned in, empty when none is known.
    const QString &zone() const { return m_zone; }

    //! Whether it is a time on the clock: then the clock's time is what moment() has in UTC.
    bool isFloating() const { return m_zone == floating(); }

    //! The moment, in UTC; of a day its beginning or end. Invalid when there is none.
    const QDateTime &moment() const { return m_moment; }

    //! The day of something that takes days. Invalid when there is none.
    QDate day() const { return dayOf(m_moment); }

    /*!
        The last day of something that begins at \a start and ends at this, whether that is stored
        as the last second of the day or as the midnight after it.
    */
    QDate lastDay(const PlannedTime &start) const;

private:
    QDate dayOf(const QDateTime &moment) const;

    QDateTime m_moment;
    QString m_zone;
    Kind m_kind = Kind::Moment;
};

} // namespace PhoneBackup

#endif
