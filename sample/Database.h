#ifndef SAMPLE_DATABASE_H
#define SAMPLE_DATABASE_H

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace Sample {

class Database;

//! A prepared statement; belongs to its database and is gone once that is finished.
class Statement
{
public:
    //! Binds \a values from the first parameter on and runs once. QByteArray is a BLOB, an invalid
    //! value NULL.
    void run(const QList<QVariant> &values);

private:
    friend class Database;
    Statement(Database *database, sqlite3_stmt *statement)
        : m_database(database)
        , m_statement(statement)
    {
    }

    Database *m_database;
    sqlite3_stmt *m_statement;
};

/*!
    \brief A new SQLite database whose bytes depend on the statements alone.

    \par Order
    Constructor, any statements, then finish() or image(). All happens in one transaction.
    \par Errors
    The first one is kept in error(); every later call is without effect.
    \par Format
    Page size 4096; the header says write-ahead log, as on the phone, without a log being left.
*/
class Database
{
public:
    //! Makes the file \a path and in it what \a definitions says; an empty path keeps the database
    //! in memory.
    explicit Database(const QString &path, const char *definitions = "");
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    //! Runs \a sql, any number of statements.
    void execute(const char *sql);

    Statement prepare(const char *sql);

    //! The whole file as it stands now; the database stays open for more.
    QByteArray image();

    //! Commits and closes. \return false when anything failed.
    bool finish();

    QString error() const { return m_error; }

private:
    friend class Statement;

    bool check(int code);
    void close();

    QString m_path;
    sqlite3 *m_handle = nullptr;
    QString m_error;
};

//! The write-ahead log that turns the file \a before into \a after, both images of one database.
QByteArray writeAheadLog(const QByteArray &before, const QByteArray &after);

} // namespace Sample

#endif
