#include "model/SmsDatabase.h"

#include "model/Conversation.h"
#include "model/Source.h"
#include "platform/Translation_p.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using DataExport::tr;

namespace {

constexpr qint64 kBase2001Ms = 978307200000;
constexpr qint64 kYear2200Ms = 7258118400000;
constexpr qint64 kLargestSeconds = 1'000'000'000'000; // beyond it a value counts nanoseconds

qint64 floorDivide(qint64 value, qint64 by)
{
    return value / by - (value % by < 0 ? 1 : 0);
}

} // namespace

std::unique_ptr<SmsDatabase> SmsDatabase::open(Source &source)
{
    const QString path = u"Library/SMS/sms.db"_s;
    Result<Database> database = source.files().openDatabase("HomeDomain", path);
    if (database)
        return std::make_unique<SmsDatabase>(source, database.take());
    if (database.error().fault != Fault::NotFound) {
        source.addProblem({ kMessages,
                            u"HomeDomain/"_s + path,
                            database.error().what + u' ' + tr("No message could be read from it."),
                            true });
    }
    return nullptr;
}

SmsDatabase::SmsDatabase(Source &source, Database database)
    : m_source(source)
    , m_database(std::move(database))
{
    if (m_database.isDamaged())
        addLoss(m_database.damage());
}

const QStringList &SmsDatabase::columns(const QString &table) const
{
    const auto known = m_columns.constFind(table);
    return known != m_columns.constEnd() ? *known
                                         : *m_columns.insert(table, m_database.columns(table));
}

bool SmsDatabase::hasColumn(const QString &table, const QString &column) const
{
    return columns(table).contains(column, Qt::CaseInsensitive);
}

QString SmsDatabase::column(const QString &table, const QString &column) const
{
    return hasColumn(table, column) ? column : u"NULL"_s;
}

bool SmsDatabase::query(const QString &what,
                        const QString &from,
                        const std::function<void(const Statement &)> &row,
                        Order order)
{
    const QString sql = u"SELECT %1 FROM %2"_s.arg(what, from);
    // In any order: an index that holds all of it is read in place of a table with long rows.
    if (order == Order::Any && readRows(sql, row))
        return true;
    const bool complete = readRows(sql + u" ORDER BY ROWID"_s, row);
    if (!complete)
        readRows(sql + u" ORDER BY ROWID DESC"_s, row);
    return complete;
}

bool SmsDatabase::readRows(const QString &sql, const std::function<void(const Statement &)> &row)
{
    const std::unique_ptr<Statement> statement = prepare(sql);
    if (!statement)
        return false;
    for (qint64 left = m_database.maxRowCount();; --left) {
        const Statement::Step step = statement->step();
        if (step == Statement::Step::Done)
            return true;
        if (step == Statement::Step::Failed) {
            addLoss(tr("It is damaged: %1.").arg(statement->error()));
            return false;
        }
        if (left <= 0) {
            addLoss(tr("It is damaged: its rows repeat without an end."));
            return false;
        }
        row(*statement);
        if (!m_source.keepGoing())
            return false;
    }
}

std::unique_ptr<Statement> SmsDatabase::prepare(const QString &sql)
{
    Result<Statement> statement = m_database.prepare(sql);
    if (statement)
        return std::make_unique<Statement>(statement.take());
    addLoss(statement.error().what);
    return nullptr;
}

void SmsDatabase::addLoss(const QString &why)
{
    m_source.addProblem(
        { kMessages, m_database.name(), why + u' ' + tr("Messages may be missing."), true });
}

qint64 SmsDatabase::dateMs(qint64 value)
{
    const bool isSeconds = value <= kLargestSeconds && value >= -kLargestSeconds;
    if (value == 0)
        return Conversation::kNoDate;
    const qint64 ms = kBase2001Ms + (isSeconds ? value * 1000 : floorDivide(value, 1'000'000));
    return ms > 0 && ms < kYear2200Ms ? ms : Conversation::kNoDate;
}

} // namespace PhoneBackup
