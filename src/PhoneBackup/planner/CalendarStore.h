#ifndef PHONEBACKUP_PLANNER_CALENDARSTORE_H
#define PHONEBACKUP_PLANNER_CALENDARSTORE_H

#include "PhoneBackup/source/RowDatabase.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace PhoneBackup {

/*!
    \brief The phone's calendar database: its events, and until iOS 12 the reminders.

    What belongs to an item is read once and found by the item's number.
*/
class CalendarStore
{
public:
    enum class Kind { Event, Reminder };

    //! An event or reminder as it is stored.
    struct Item
    {
        qint64 id = 0;
        QString title;
        QString calendar;
        QString location;
        QString description;
        std::optional<double> start; //!< Seconds since 2001, as all dates.
        std::optional<double> end;
        QString startZone;
        QString endZone;
        bool isAllDay = false;
        std::optional<double> due;
        QString dueZone;
        bool isDueAllDay = false;
        std::optional<double> completed;
        qint64 priority = 0;
        std::optional<double> replaces; //!< The occurrence of a repeated event that this one is.
        QStringList remarks; //!< How it repeats, who is invited, what is attached: lines.
    };

    //! None when the backup has no calendar. Problems belong to \a dataType, and end in
    //! \a consequence.
    static std::optional<CalendarStore>
    open(Source &source, int dataType, const QString &consequence);

    //! The items of \a kind, in the order of the store. Birthdays made from contacts are left out.
    QList<Item> items(Kind kind);

private:
    using Lines = QHash<qint64, QStringList>; // by the number of the item
    struct Names
    {
        QHash<qint64, QString> calendars;
        QHash<qint64, QString> locations;
        Lines repeats;
        Lines exceptions;
        Lines organizers;
        Lines invited;
        Lines attachments;
    };

    explicit CalendarStore(RowDatabase &&database);

    void readRows(const QString &table,
                  const QStringList &columns,
                  const std::function<void(const Statement &)> &row);
    QHash<qint64, QString> readTexts(const QString &table, const QStringList &columns);
    Names readNames();
    void readRepeats(Names &names);
    void readPeople(Names &names);
    void readAttachments(Names &names);
    Item itemOf(const Statement &row, const Names &names) const;

    RowDatabase m_database;
};

} // namespace PhoneBackup

#endif
