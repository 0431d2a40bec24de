#ifndef PHONEBACKUP_SQLITE_STATEMENT_H
#define PHONEBACKUP_SQLITE_STATEMENT_H

#include "PhoneBackup/base/Notice.h"
#include "PhoneBackup/sqlite/QueryGuard.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <memory>
#include <optional>

struct sqlite3_stmt;

namespace PhoneBackup {

/*!
    \brief A prepared query and its current row.

    Columns convert to the type that is asked for as SQLite does it; a null gives 0, an empty text,
    or no value. Columns count from 0.
*/
class Statement
{
public:
    enum class Step {
        Row, //!< A row is there to be read.
        Done, //!< There are no more rows.
        Failed, //!< The database could not be read on; rows may be missing.
    };

    Statement(sqlite3_stmt *statement, std::shared_ptr<QueryGuard> guard);
    ~Statement();
    Statement(Statement &&other) noexcept;
    Statement &operator=(Statement &&other) noexcept;

    Step step();

    //! Whether step() failed because the caller asked to stop, and not because of any damage.
    bool isStopped() const { return m_share.stopped; }

    //! Takes the query back to its beginning; bound values stay.
    void reset();

    //! Binds parameter \a number (from 1).
    void bind(int number, qint64 value);
    void bind(int number, const QString &value);

    int columnCount() const;

    bool isNull(int column) const;
    qint64 integer(int column) const;

    //! The number in \a column, none for a null or a text that is no number.
    std::optional<double> number(int column) const;

    //! Text by its byte length; bytes that are not UTF-8 become U+FFFD.
    QString text(int column) const;

    //! The bytes of a text or blob, valid until the next step() or reset().
    QByteArrayView bytes(int column) const;

    //! Why step() failed, to be put into a sentence: it has no full stop.
    Notice failure() const;

private:
    struct Finalize
    {
        void operator()(sqlite3_stmt *statement) const;
    };
    std::shared_ptr<QueryGuard> m_guard; // outlives the query
    QueryGuard::Share m_share;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

} // namespace PhoneBackup

#endif
