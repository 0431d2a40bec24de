#include "PhoneBackup/source/RowDatabase.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

#include <algorithm>
#include <limits>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

RowDatabase::Consequence RowDatabase::Consequence::filesStay()
{
    Consequence consequence(Notice("source.filesStay"));
    consequence.ofPart = Notice("source.namesMayBeMissing");
    consequence.loss = false;
    return consequence;
}

std::optional<RowDatabase> RowDatabase::open(Source &source,
                                             int dataType,
                                             QByteArrayView domain,
                                             const QString &path,
                                             const Consequence &consequence)
{
    Result<Database> database = source.files().openDatabase(domain, path);
    if (database)
        return RowDatabase(source, dataType, database.take(), consequence);
    if (database.error().fault == Fault::Cancelled) {
        source.stop();
    } else if (database.error().fault != Fault::NotFound) {
        source.addProblem(dataType,
                          PathParts::text(domain) + u'/' + path,
                          database.error(),
                          consequence.ofNone,
                          consequence.loss);
    }
    return std::nullopt;
}

RowDatabase::RowDatabase(Source &source,
                         int dataType,
                         Database database,
                         const Consequence &consequence)
    : m_source(&source)
    , m_dataType(dataType)
    , m_database(std::make_shared<const Database>(std::move(database)))
    , m_consequence(consequence)
{
    if (m_database->isDamaged())
        addLoss(m_database->damage());
}

RowDatabase RowDatabase::readFor(int dataType, const Consequence &consequence) const
{
    RowDatabase other = *this;
    other.m_dataType = dataType;
    other.m_consequence = consequence;
    other.m_firstLoss = {};
    return other;
}

const QStringList &RowDatabase::columns(const QString &table) const
{
    const auto known = m_columns.constFind(table);
    if (known != m_columns.constEnd())
        return *known;
    if (m_database->refusesTable(table))
        addLoss(Notice("source.noOrdinaryTable", { table }));
    return *m_columns.insert(table, m_database->columns(table));
}

bool RowDatabase::hasColumn(const QString &table, const QString &column) const
{
    return columns(table).contains(column, Qt::CaseInsensitive);
}

QString RowDatabase::column(const QString &table, const QString &column) const
{
    return hasColumn(table, column) ? column : u"NULL"_s;
}

bool RowDatabase::readTable(const QString &what,
                            const QString &from,
                            const ReadRow &row,
                            Order order)
{
    // The number of the row comes last, where columns do not move it.
    const QString sql =
        u"SELECT %1ROWID AS row_number FROM %2"_s.arg(what.isEmpty() ? what : what + u", "_s, from);
    qint64 lastForward = 0;
    // In any order: an index that holds all of it is read in place of a table with long rows.
    if (order == Order::Any && readRows(sql, lastForward, row))
        return true;
    lastForward = 0;
    qint64 lastBackward = std::numeric_limits<qint64>::max();
    if (readRows(sql + u" ORDER BY ROWID"_s, lastForward, row))
        return true;
    if (m_source->keepGoing() && !readRows(sql + u" ORDER BY ROWID DESC"_s, lastBackward, row))
        readBetween(sql, std::max<qint64>(lastForward, 0), lastBackward, row);
    return false;
}

// \a last becomes the number of the last row that was read.
bool RowDatabase::readRows(const QString &sql, qint64 &last, const ReadRow &row)
{
    const std::unique_ptr<Statement> statement = prepare(sql);
    if (!statement)
        return false;
    const int numberPlace = statement->columnCount() - 1;
    for (qint64 left = m_database->maxRowCount();; --left) {
        const Statement::Step step = statement->step();
        if (step == Statement::Step::Done)
            return true;
        if (step == Statement::Step::Failed) {
            addFailure(*statement);
            return false;
        }
        if (left <= 0) {
            addLoss(Notice("source.endlessRows"));
            return false;
        }
        last = statement->integer(numberPlace);
        row(*statement, last);
        if (!m_source->keepGoing())
            return false;
    }
}

// What lies between damaged pages: behind each of them reading goes on at the first row that
// answers, which is looked for in leaps that double, and then between the last two of them.
void RowDatabase::readBetween(const QString &sql, qint64 after, qint64 before, const ReadRow &row)
{
    constexpr int kMaxDamagedPlaces = 10'000;
    constexpr qint64 kLongestLeap = qint64(1) << 60;
    const std::unique_ptr<Statement> statement =
        prepare(u"SELECT * FROM (%1) WHERE row_number >= ?1 AND row_number < ?2 "
                "ORDER BY row_number"_s.arg(sql));
    if (!statement || before - after < 2)
        return;
    statement->bind(2, before);
    const auto stepFrom = [this, &statement](qint64 place) {
        statement->reset();
        statement->bind(1, place);
        const Statement::Step step = statement->step();
        if (statement->isStopped())
            m_source->stop();
        return step;
    };
    qint64 left = m_database->maxRowCount();
    for (int place = 0; place < kMaxDamagedPlaces && m_source->keepGoing(); ++place) {
        qint64 failing = after;
        qint64 answering = after + 1;
        for (qint64 leap = 1; stepFrom(answering) == Statement::Step::Failed;
             leap = std::min(2 * leap, kLongestLeap)) {
            failing = answering;
            if (answering >= before - 1)
                return;
            answering += std::min(leap, before - 1 - answering);
        }
        while (answering - failing > 1) {
            const qint64 middle = failing + (answering - failing) / 2;
            (stepFrom(middle) == Statement::Step::Failed ? failing : answering) = middle;
        }
        Statement::Step step = stepFrom(answering);
        for (; step == Statement::Step::Row; step = statement->step()) {
            const qint64 number = statement->integer(statement->columnCount() - 1);
            if (number <= after || --left < 0 || !m_source->keepGoing())
                return;
            after = number;
            row(*statement, number);
        }
        if (step == Statement::Step::Done || after >= before - 1)
            return;
    }
}

std::unique_ptr<Statement> RowDatabase::prepare(const QString &sql)
{
    Result<Statement> statement = m_database->prepare(sql);
    if (statement)
        return std::make_unique<Statement>(statement.take());
    addLoss(statement.error().what);
    return nullptr;
}

void RowDatabase::addFailure(const Statement &statement) const
{
    if (statement.isStopped())
        m_source->stop();
    else
        addLoss(Notice("source.damaged", { statement.failure() }));
}

void RowDatabase::addLoss(const Notice &why) const
{
    const Error error = m_database->temporaryFolderError().value_or(
        Error { Fault::Corrupt, m_database->path(), why });
    if (m_firstLoss.isEmpty())
        m_firstLoss = error.what;
    m_source->addProblem(
        m_dataType, m_database->name(), error, m_consequence.ofPart, m_consequence.loss);
}

} // namespace PhoneBackup
