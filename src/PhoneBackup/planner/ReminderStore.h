#ifndef PHONEBACKUP_PLANNER_REMINDERSTORE_H
#define PHONEBACKUP_PLANNER_REMINDERSTORE_H

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace PhoneBackup {

class Source;

//! A reminder, whatever store it comes from.
struct Reminder
{
    qint64 id = 0;
    qint64 listNumber = 0; //!< Lists are ordered by it.
    qint64 parent = 0; //!< The reminder that this one is a part of, 0 for none.
    QString title;
    QString list;
    QString notes;
    QStringList remarks; //!< Lines behind the notes.
    std::optional<double> due; //!< Seconds since 2001, as all dates.
    QString dueZone;
    bool isAllDay = false;
    bool isCompleted = false;
    std::optional<double> completed;
    qint64 priority = 0; //!< 0 none, 1 high, 5 medium, 9 low.
    bool isFlagged = false;
    bool deleted = false;
};

/*!
    The reminders in the store at \a domain and \a path, one of those that phones have since iOS 13:
    one a account, each with numbers of its own. In the order of the store.
*/
QList<Reminder> readReminderStore(Source &source, QByteArrayView domain, const QString &path);

} // namespace PhoneBackup

#endif
