#ifndef ARCHIVE_HTML_LOCALCLOCK_H
#define ARCHIVE_HTML_LOCALCLOCK_H

#include <QDate>
#include <QDateTime>
#include <QString>

namespace Archive {

//! Moments in local time. Asked for millions of moments, most of them near the last one.
class LocalClock
{
public:
    struct Time
    {
        qint64 day = 0; //!< Since 1970.
        int minute = 0; //!< Of the day.

        QDate date() const { return QDate::fromJulianDay(day + kJulian1970); }
        QByteArray clock() const; //!< "16:40"
    };

    //! \a ms since 1970, UTC, which must be a moment.
    Time at(qint64 ms);

    //! The month of \a ms: the year times 12, and the month from 0.
    int month(qint64 ms);

    QString day(qint64 ms); //!< "25 May 2024"
    QString dayAndTime(qint64 ms); //!< "25 May 2024, 16:40"
    QString dayAndTime(const QDateTime &moment); //!< The same; empty for an invalid one.

private:
    static constexpr qint64 kJulian1970 = 2440588;

    qint64 m_block = -1; // the quarter of an hour that was asked for last
    qint64 m_offsetMs = 0;
    qint64 m_day = -1; // that the month was asked for last
    int m_month = 0;
};

QString dayText(const QDate &date); //!< "25 May 2024"
QString weekdayText(const QDate &date); //!< "Saturday, 25 May 2024"
QString monthText(const QDate &date); //!< "May 2024"
QString lengthText(double seconds); //!< "0:12", "1:02:03"
QString sizeText(qint64 bytes); //!< "3.4 MB"

} // namespace Archive

#endif
