#ifndef PHONEBACKUP_PLANNER_REMINDEROBJECTS_H
#define PHONEBACKUP_PLANNER_REMINDEROBJECTS_H

#include "PhoneBackup/planner/Reminder.h"

#include <QHash>

#include <unordered_map>

namespace PhoneBackup {

class RowDatabase;

/*!
    \brief What a store of reminders keeps of them in its table of objects: rules, alarms, tags,
    people.

    Read once, found by the number of the reminder.
*/
class ReminderObjects
{
public:
    //! \a kinds: names of the kinds of objects by their number.
    ReminderObjects(RowDatabase &store, const QHash<qint64, QString> &kinds);

    //! Moves what belongs to \a reminder into it.
    void moveTo(Reminder &reminder);

    //! The name of the account with this number, empty when it is not known.
    QString account(qint64 number) const { return m_accounts.value(number); }

    //! The name of the table.
    static QString table();

    //! The numbers of the kind \a name, for a query; empty without any.
    static QString numbers(const QHash<qint64, QString> &kinds, const QString &name);

private:
    struct Facts
    {
        PlannedDetails details;
        QStringList tags;
        std::unique_ptr<Guest> assignee;
    };

    QString condition(const QString &kind) const;
    void readRepeats();
    void readAlarms();
    void readTags();
    void readAssignees();

    RowDatabase &m_store;
    const QHash<qint64, QString> m_kinds;
    std::unordered_map<qint64, Facts> m_facts;
    QHash<qint64, QString> m_accounts;
};

} // namespace PhoneBackup

#endif
