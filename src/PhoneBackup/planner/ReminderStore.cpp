#include "PhoneBackup/planner/ReminderStore.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/planner/ReminderObjects.h"
#include "PhoneBackup/source/ObjectStore.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"

#include <QUuid>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

const QString kReminderTable = u"ZREMCDREMINDER"_s;
const QString kListTable = u"ZREMCDBASELIST"_s;

// The identifier of the cloud, else that of the phone.
QString uuidOf(const QString &cloud, QByteArrayView own)
{
    constexpr qsizetype kUuidBytes = 16;
    return !cloud.isEmpty() || own.size() != kUuidBytes
        ? cloud
        : QUuid::fromRfc4122(own).toString(QUuid::WithoutBraces).toUpper();
}

class ReminderStore
{
public:
    explicit ReminderStore(RowDatabase &store)
        : m_store(store)
        , m_kinds(ObjectStore::entityNames(store))
    {
    }

    std::vector<Reminder> read()
    {
        const bool isWide = !m_store.hasTable(kReminderTable); // until iOS 15
        const QString table = isWide ? ReminderObjects::table() : kReminderTable;
        if (!m_store.hasTable(table)) {
            m_store.addLoss(Notice("planner.noReminders"));
            return {};
        }
        readLists(m_store.hasTable(kListTable) ? kListTable : ReminderObjects::table());
        readReminders(
            table,
            isWide ? u"Z_ENT IN (%1)"_s.arg(ReminderObjects::numbers(m_kinds, u"REMCDReminder"_s))
                   : QString());
        return std::move(m_reminders);
    }

private:
    struct StoredList
    {
        QString title;
        QString uuid;
        qint64 group;
        qint64 account;
    };

    // A column that may bear a number behind its name.
    Table::Column column(Table &table, const QString &name, const QString &attribute) const
    {
        return table.expression(ObjectStore::attribute(m_store, name, attribute));
    }

    void readLists(const QString &name)
    {
        Table table(m_store, name);
        const auto title = column(table, name, u"ZNAME"_s);
        const auto group = column(table, name, u"ZPARENTLIST"_s);
        const auto account = column(table, name, u"ZACCOUNT"_s);
        const auto cloudId = column(table, name, u"ZCKIDENTIFIER"_s);
        const auto ownId = column(table, name, u"ZIDENTIFIER"_s);
        table.forEach([&, this](const Table::Row &row) {
            const QString text = row.text(title).trimmed();
            if (!text.isEmpty()) // of an older store everything is a row of this table
                m_stored.insert(row.id(),
                                { text,
                                  uuidOf(row.text(cloudId), row.bytes(ownId)),
                                  row.integer(group),
                                  row.integer(account) });
        });
    }

    std::shared_ptr<const ReminderList> list(qint64 number, const ReminderObjects &objects)
    {
        std::shared_ptr<const ReminderList> &list = m_lists[number];
        if (!list) {
            const StoredList stored = m_stored.value(number);
            list = std::make_shared<ReminderList>(ReminderList { number,
                                                                 stored.uuid,
                                                                 stored.title,
                                                                 m_stored.value(stored.group).title,
                                                                 objects.account(stored.account),
                                                                 {} });
        }
        return list;
    }

    void readReminders(const QString &name, const QString &condition)
    {
        ReminderObjects objects(m_store, m_kinds);
        Table table(m_store, name);
        const auto bind = [&, this](const QString &attribute) {
            return column(table, name, attribute);
        };
        const auto title = bind(u"ZTITLE"_s);
        const auto listNumber = bind(u"ZLIST"_s);
        const auto due = bind(u"ZDUEDATE"_s);
        const auto zone = bind(u"ZTIMEZONE"_s);
        const auto allDay = bind(u"ZALLDAY"_s);
        const auto isCompleted = bind(u"ZCOMPLETED"_s);
        const auto completed = bind(u"ZCOMPLETIONDATE"_s);
        const auto notes = bind(u"ZNOTES"_s);
        const auto deleted = bind(u"ZMARKEDFORDELETION"_s);
        const auto priority = bind(u"ZPRIORITY"_s);
        const auto flagged = bind(u"ZFLAGGED"_s);
        const auto parent = bind(u"ZPARENTREMINDER"_s);
        const auto created = bind(u"ZCREATIONDATE"_s);
        const auto modified = bind(u"ZLASTMODIFIEDDATE"_s);
        const auto cloudId = bind(u"ZCKIDENTIFIER"_s);
        const auto ownId = bind(u"ZIDENTIFIER"_s);
        table.forEach(
            [&, this](const Table::Row &row) {
                Reminder reminder;
                reminder.id = row.id();
                reminder.parent = row.integer(parent);
                reminder.uuid = uuidOf(row.text(cloudId), row.bytes(ownId));
                reminder.title = row.text(title).trimmed();
                reminder.notes = row.text(notes).trimmed();
                reminder.list = list(row.integer(listNumber), objects);
                reminder.isAllDay = row.integer(allDay) != 0;
                reminder.due = PlannedTime(row.number(due),
                                           row.text(zone),
                                           reminder.isAllDay ? PlannedTime::Kind::Day
                                                             : PlannedTime::Kind::Moment);
                reminder.isCompleted = row.integer(isCompleted) != 0;
                reminder.completed = PhoneTime::since2001(row.number(completed));
                reminder.created = PhoneTime::since2001(row.number(created));
                reminder.modified = PhoneTime::since2001(row.number(modified));
                reminder.priority = priorityOf(row.integer(priority));
                reminder.isFlagged = row.integer(flagged) != 0;
                reminder.deleted = row.integer(deleted) != 0;
                objects.moveTo(reminder);
                m_reminders.push_back(std::move(reminder));
            },
            condition);
    }

    RowDatabase &m_store;
    const QHash<qint64, QString> m_kinds;
    QHash<qint64, StoredList> m_stored;
    QHash<qint64, std::shared_ptr<const ReminderList>> m_lists;
    std::vector<Reminder> m_reminders;
};

} // namespace

Reminder::Priority priorityOf(qint64 number)
{
    constexpr qint64 kMedium = 5;
    constexpr qint64 kLow = 9;
    if (number < 1 || number > kLow)
        return Reminder::Priority::None;
    return number < kMedium ? Reminder::Priority::High
        : number == kMedium ? Reminder::Priority::Medium
                            : Reminder::Priority::Low;
}

std::vector<Reminder> readReminderStore(Source &source, QByteArrayView domain, const QString &path)
{
    std::optional<RowDatabase> store = RowDatabase::open(
        source, DataType::Reminders, domain, path, Notice("planner.remindersMayBeMissing"));
    return store ? ReminderStore(*store).read() : std::vector<Reminder>();
}

} // namespace PhoneBackup
