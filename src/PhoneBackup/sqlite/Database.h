#ifndef PHONEBACKUP_SQLITE_DATABASE_H
#define PHONEBACKUP_SQLITE_DATABASE_H

#include "PhoneBackup/base/KeepGoing.h"
#include "PhoneBackup/base/Result.h"
#include "PhoneBackup/sqlite/Statement.h"

#include <QHash>
#include <QStringList>

#include <memory>
#include <optional>

struct sqlite3;

namespace PhoneBackup {

class PrivateFolder;

//! Where a database and what SQLite kept beside it lie on disk; name is what a person calls it.
struct DatabaseFiles
{
    QString name;
    QString path;
    QString walPath; //!< Write-ahead log, empty when there is none.
    QString journalPath; //!< Roll-back journal, likewise.
    bool isPrivate = false; //!< They lie in the private folder, named as SQLite looks for them.
    Notice lost = {}; //!< What is known to be missing of it, for a person; empty when nothing is.
};

/*!
    \brief A database of the backup, for reading only. Knows no schema.

    With a log or a journal beside it, a copy of all of them in the private folder is opened (they
    themselves, when they lie there), so that the newest rows are seen and a half transaction is
    rolled back. Otherwise the file itself is opened as one that does not change, which leaves no
    trace.

    A damaged database opens as far as it can be read; isDamaged() tells. The private folder must
    outlive this object.

    Only ordinary tables are read: a view, a virtual table, or a table with a column that hides the
    numbers of its rows can be made to run without an end, and reading it fails. A value of more
    than 32 MB fails as well.
*/
class Database
{
public:
    //! How the file of each database begins.
    static constexpr QByteArrayView kMagic { "SQLite format 3\0", 16 };

    /*!
        \a keepGoing is kept and asked while queries run, from the thread that runs them; false ends
        the query, which then is Statement::isStopped(), and makes opening Fault::Cancelled.
    */
    static Result<Database>
    open(const DatabaseFiles &files, PrivateFolder &folder, const KeepGoing &keepGoing = {});

    ~Database();
    Database(Database &&other) noexcept;
    Database &operator=(Database &&other) noexcept;

    //! Whether something of the database could not be used; damage() says what, for a person.
    bool isDamaged() const { return !m_damage.isEmpty(); }
    const Notice &damage() const { return m_damage; }

    //! Prepares \a sql, one statement.
    Result<Statement> prepare(const QString &sql) const;

    /*!
        The temporary folder, when the last thing that SQLite was asked failed because of it: what
        does not fit into memory is sorted there. Nothing is wrong with the database then.
    */
    std::optional<Error> temporaryFolderError() const;

    //! Whether there is a table \a name that can be read (case does not matter).
    bool hasTable(const QString &name) const { return !m_tables.value(name.toLower(), true); }

    //! Whether something that is never read, as a view, stands in the place of the table \a name.
    bool refusesTable(const QString &name) const { return m_tables.value(name.toLower(), false); }

    //! Names of the tables that can be read, in alphabetical order.
    QStringList tableNames() const { return m_tableNames; }

    //! Names of the columns of \a table, empty when there is no such table.
    QStringList columns(const QString &table) const;

    /*!
        More rows than any table of it can have: a query that gives more goes round in the circle of
        damaged pages.
    */
    qint64 maxRowCount() const;

    QString name() const { return m_files.name; }
    QString path() const { return m_files.path; }

    //! Bytes of the database without its log.
    qint64 sizeBytes() const;

private:
    struct Close
    {
        void operator()(sqlite3 *database) const;
    };
    enum class Access { Immutable, Copy };

    Database(const DatabaseFiles &files, const KeepGoing &keepGoing);
    bool connect(const QString &path, Access access, bool salvage);
    int readTables();
    bool copyAndConnect(PrivateFolder &folder, bool salvage, Error &error);
    Error lastError() const;

    DatabaseFiles m_files;
    KeepGoing m_keepGoing;
    std::shared_ptr<QueryGuard> m_guard; // outlives the connection
    std::unique_ptr<sqlite3, Close> m_database;
    int m_code = 0;
    QString m_message;
    Notice m_damage;
    QStringList m_tableNames;
    QHash<QString, bool> m_tables; // by the name in lower case: whether it may not be read
};

} // namespace PhoneBackup

#endif
