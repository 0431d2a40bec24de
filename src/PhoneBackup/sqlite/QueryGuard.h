#ifndef PHONEBACKUP_SQLITE_QUERYGUARD_H
#define PHONEBACKUP_SQLITE_QUERYGUARD_H

#include "PhoneBackup/base/KeepGoing.h"

#include <QByteArray>
#include <QSet>

#include <functional>

struct sqlite3;
struct sqlite3_stmt;

namespace PhoneBackup {

/*!
    \brief Keeps the queries of one connection from going on without an end.

    A damaged database can keep SQLite busy for ever before it gives a single row: pages that lead
    to each other are walked in ever new ways. Each query therefore has a number of steps in
    proportion to the size of the database, and every few milliseconds the caller is asked whether
    to go on. It must outlive the connection's last query.
*/
class QueryGuard
{
public:
    //! \a bytes: size of the database with its log. \a keepGoing may be empty.
    QueryGuard(qint64 bytes, KeepGoing keepGoing);

    //! Watches over \a database from now on.
    void attach(sqlite3 *database);

    //! No query that is prepared from now on may read \a tables.
    void refuse(sqlite3 *database, const QSet<QByteArray> &tables);

    //! How much of its share a query has used.
    struct Share
    {
        qint64 ticks = 0;
        bool stopped = false; //!< On request.
        bool exhausted = false; //!< It has no end.
    };

    //! Takes \a query on by one row. \return what SQLite says.
    int step(sqlite3_stmt *query, Share &share);

private:
    static int tick(void *guard);
    static int authorize(void *guard,
                         int action,
                         const char *table,
                         const char *column,
                         const char *database,
                         const char *view);

    qint64 m_maxTicks;
    KeepGoing m_keepGoing;
    Share m_setup; // what SQLite does on its own, as reading the schema
    Share *m_running;
    QSet<QByteArray> m_refused;
};

} // namespace PhoneBackup

#endif
