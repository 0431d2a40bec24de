#ifndef PHONEBACKUP_SOURCE_ROWDATABASE_H
#define PHONEBACKUP_SOURCE_ROWDATABASE_H

#include "PhoneBackup/sqlite/Database.h"

#include <QHash>

#include <functional>
#include <memory>
#include <optional>

namespace PhoneBackup {

class Source;

/*!
    \brief A database whose rows are what is exported, whatever release of the phone wrote it.

    Columns are probed; one that is missing reads as null. What cannot be read is a problem of the
    data type, which the source is told of; what lies before and behind it is read. Rows are read
    by Table.
*/
class RowDatabase
{
public:
    //! What follows when the database cannot be read; sentences that come behind the cause.
    struct Consequence
    {
        //! What its rows tell is lost ("Calls may be missing.").
        Consequence(const Notice &lost) // NOLINT(google-explicit-constructor): the usual case
            : ofNone(lost)
            , ofPart(lost)
        {
        }

        //! For databases that only tell about files: nothing of those is lost.
        static Consequence filesStay();

        Notice ofNone; //!< When it cannot be opened.
        Notice ofPart; //!< When it can, but not be read to its end.
        bool loss = true; //!< As Problem::loss.
    };

    /*!
        The database at this place of the backup. None when the backup has none, and when it cannot
        be opened: that is a problem of \a dataType.
    */
    static std::optional<RowDatabase> open(Source &source,
                                           int dataType,
                                           QByteArrayView domain,
                                           const QString &path,
                                           const Consequence &consequence);

    RowDatabase(Source &source, int dataType, Database database, const Consequence &consequence);

    /*!
        The same database, read for \a dataType: what cannot be read is a problem of that one, with
        its own \a consequence.
    */
    RowDatabase readFor(int dataType, const Consequence &consequence) const;

    bool hasTable(const QString &table) const { return !columns(table).isEmpty(); }
    bool hasColumn(const QString &table, const QString &column) const;

    /*!
        Names of the columns of \a table, empty when there is no such table. A view or the like in
        its place is a loss.
    */
    const QStringList &columns(const QString &table) const;

    //! \a column when \a table has it, else "NULL".
    QString column(const QString &table, const QString &column) const;

    //! Names of its tables, as they are written there, in alphabetical order.
    QStringList tableNames() const { return m_database->tableNames(); }

    enum class Order { ByRow, Any };

    /*!
        For Table: calls \a row for each row of "SELECT \a what FROM \a from" and with its number.
        Where a damaged page ends that, the rest is read from the end backwards, and then what lies
        between damaged pages, so that rows may come twice and in any order. \return whether all
       were read.
    */
    bool readTable(const QString &what,
                   const QString &from,
                   const std::function<void(const Statement &, qint64 number)> &row,
                   Order order);

    //! Prepares a query that is known to fit; none, and a problem, when the database cannot.
    std::unique_ptr<Statement> prepare(const QString &sql);

    //! Says that something of it is lost, and why.
    void addLoss(const Notice &why) const;

    //! The same of the row that \a statement could not read, unless it was stopped on request.
    void addFailure(const Statement &statement) const;

    //! Whether all that was asked for so far could be read.
    bool isComplete() const { return m_firstLoss.isEmpty(); }

    //! Why something of it is lost, as it was told first; empty when nothing is.
    Notice firstLoss() const { return m_firstLoss; }

private:
    using ReadRow = std::function<void(const Statement &, qint64 number)>;

    bool readRows(const QString &sql, qint64 &last, const ReadRow &row);
    void readBetween(const QString &sql, qint64 after, qint64 before, const ReadRow &row);

    Source *m_source;
    int m_dataType;
    std::shared_ptr<const Database> m_database;
    Consequence m_consequence;
    mutable Notice m_firstLoss;
    mutable QHash<QString, QStringList> m_columns;
};

} // namespace PhoneBackup

#endif
