#include "PhoneBackup/planner/ReminderStore.h"

#include "PhoneBackup/source/ObjectStore.h"
#include "PhoneBackup/source/RowDatabase.h"
#include "PhoneBackup/source/Source.h"
#include "platform/Translation_p.h"

#include <QHash>
#include <QSet>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kReminders = 13;
const QString kReminderTable = u"ZREMCDREMINDER"_s;
const QString kListTable = u"ZREMCDBASELIST"_s;
const QString kObjectTable = u"ZREMCDOBJECT"_s;

// What a reminder is read as, in the order of the query.
enum Column {
    Key,
    Title,
    ListKey,
    Due,
    AllDay,
    IsCompleted,
    Completed,
    Notes,
    Deleted,
    Priority,
    Flagged,
    Parent,
    Zone,
};

class ReminderStore
{
public:
    explicit ReminderStore(RowDatabase &store)
        : m_store(store)
        , m_kinds(ObjectStore::entityNames(store))
    {
    }

    QList<Reminder> read()
    {
        const bool isWide = !m_store.hasTable(kReminderTable); // until iOS 15
        const QString table = isWide ? kObjectTable : kReminderTable;
        if (!m_store.hasTable(table)) {
            m_store.addLoss(tr("It has no table of reminders that can be read."));
            return {};
        }
        readLists(m_store.hasTable(kListTable) ? kListTable : kObjectTable);
        readRepeats();
        readReminders(
            table, isWide ? u" WHERE Z_ENT IN (%1)"_s.arg(numbers(u"REMCDReminder"_s)) : QString());
        return m_reminders;
    }

private:
    // The numbers of the kind \a name, for a query.
    QString numbers(const QString &name) const
    {
        QStringList list;
        for (auto it = m_kinds.cbegin(); it != m_kinds.cend(); ++it) {
            if (it.value() == name)
                list.append(QString::number(it.key()));
        }
        return list.join(u", "_s);
    }

    void readLists(const QString &table)
    {
        if (!m_store.hasTable(table))
            return;
        m_store.query(u"Z_PK, "_s + ObjectStore::attribute(m_store, table, u"ZNAME"_s),
                      table,
                      [this](const Statement &row) {
                          m_lists.insert(row.integer(0), row.text(1).trimmed());
                      });
    }

    void readRepeats()
    {
        const QString kinds = numbers(u"REMCDRecurrenceRule"_s);
        if (kinds.isEmpty() || !m_store.hasColumn(kObjectTable, u"Z_ENT"_s))
            return;
        m_store.query(ObjectStore::attribute(m_store, kObjectTable, u"ZREMINDER"_s),
                      kObjectTable + u" WHERE Z_ENT IN (%1)"_s.arg(kinds),
                      [this](const Statement &row) { m_repeated.insert(row.integer(0)); });
    }

    void readReminders(const QString &table, const QString &condition)
    {
        const auto attribute = [&](const QString &name) {
            return ObjectStore::attribute(m_store, table, name);
        };
        const QStringList columns {
            u"Z_PK"_s,
            attribute(u"ZTITLE"_s),
            attribute(u"ZLIST"_s),
            attribute(u"ZDUEDATE"_s),
            attribute(u"ZALLDAY"_s),
            attribute(u"ZCOMPLETED"_s),
            attribute(u"ZCOMPLETIONDATE"_s),
            attribute(u"ZNOTES"_s),
            attribute(u"ZMARKEDFORDELETION"_s),
            attribute(u"ZPRIORITY"_s),
            attribute(u"ZFLAGGED"_s),
            attribute(u"ZPARENTREMINDER"_s),
            attribute(u"ZTIMEZONE"_s),
        };
        m_store.query(columns.join(u", "_s), table + condition, [this](const Statement &row) {
            const qint64 key = row.integer(Key);
            if (m_seen.contains(key)) // rows of a damaged table may come twice
                return;
            m_seen.insert(key);
            Reminder reminder;
            reminder.id = key;
            reminder.title = row.text(Title).trimmed();
            reminder.listNumber = row.integer(ListKey);
            reminder.list = m_lists.value(reminder.listNumber);
            reminder.due = row.number(Due);
            reminder.dueZone = row.text(Zone);
            reminder.isAllDay = row.integer(AllDay) != 0;
            reminder.isCompleted = row.integer(IsCompleted) != 0;
            reminder.completed = row.number(Completed);
            reminder.notes = row.text(Notes).trimmed();
            reminder.deleted = row.integer(Deleted) != 0;
            reminder.priority = row.integer(Priority);
            reminder.isFlagged = row.integer(Flagged) != 0;
            reminder.parent = row.integer(Parent);
            if (m_repeated.contains(key))
                reminder.remarks.append(tr("Repeats"));
            m_reminders.append(reminder);
        });
    }

    RowDatabase &m_store;
    const QHash<qint64, QString> m_kinds;
    QHash<qint64, QString> m_lists;
    QSet<qint64> m_repeated;
    QSet<qint64> m_seen;
    QList<Reminder> m_reminders;
};

} // namespace

QList<Reminder> readReminderStore(Source &source, QByteArrayView domain, const QString &path)
{
    std::optional<RowDatabase> store =
        RowDatabase::open(source, kReminders, domain, path, tr("Reminders may be missing."));
    return store ? ReminderStore(*store).read() : QList<Reminder>();
}

} // namespace PhoneBackup
