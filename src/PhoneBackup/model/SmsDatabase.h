#ifndef PHONEBACKUP_MODEL_SMSDATABASE_H
#define PHONEBACKUP_MODEL_SMSDATABASE_H

#include "sqlite/Database.h"

#include <QDateTime>
#include <QHash>

#include <functional>
#include <memory>

namespace PhoneBackup {

class Source;

/*!
    \brief The phone's message database, and what it can be asked whatever release wrote it.

    Columns are probed; one that is missing reads as null. What cannot be read is a loss that the
    source is told of; what lies before and behind it is read.
*/
class SmsDatabase
{
public:
    static constexpr int kMessages = 6; //!< The data type that its problems belong to.

    //! None when the backup has none or it cannot be opened.
    static std::unique_ptr<SmsDatabase> open(Source &source);

    SmsDatabase(Source &source, Database database);

    bool hasTable(const QString &table) const { return !columns(table).isEmpty(); }
    bool hasColumn(const QString &table, const QString &column) const;

    //! \a column when \a table has it, else "NULL".
    QString column(const QString &table, const QString &column) const;

    enum class Order { ByRow, Any };

    /*!
        Calls \a row for each row of "SELECT \a what FROM \a from". Where a damaged page ends that,
        the rest is read from the end backwards, so that rows may come twice and in any order.
        \return whether all were read.
    */
    bool query(const QString &what,
               const QString &from,
               const std::function<void(const Statement &)> &row,
               Order order = Order::ByRow);

    //! Prepares a query that is known to fit; none, and a problem, when the database cannot.
    std::unique_ptr<Statement> prepare(const QString &sql);

    //! Says that something of it is lost, and why.
    void addLoss(const QString &why);

    /*!
        A moment as its columns hold it, in milliseconds since 1970: seconds or nanoseconds since
        2001, told apart value by value. Conversation::kNoDate for none and for an absurd one.
    */
    static qint64 dateMs(qint64 value);

private:
    const QStringList &columns(const QString &table) const;
    bool readRows(const QString &sql, const std::function<void(const Statement &)> &row);

    Source &m_source;
    Database m_database;
    mutable QHash<QString, QStringList> m_columns;
};

} // namespace PhoneBackup

#endif
