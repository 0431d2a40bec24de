#include "PhoneBackup/sqlite/Statement.h"

#include <sqlite3.h>

#include <utility>

namespace PhoneBackup {

Statement::Statement(sqlite3_stmt *statement, std::shared_ptr<QueryGuard> guard)
    : m_guard(std::move(guard))
    , m_statement(statement)
{
}

Statement::~Statement() = default;
Statement::Statement(Statement &&other) noexcept = default;
Statement &Statement::operator=(Statement &&other) noexcept = default;

Statement::Step Statement::step()
{
    switch (m_guard->step(m_statement.get(), m_share)) {
    case SQLITE_ROW:
        return Step::Row;
    case SQLITE_DONE:
        return Step::Done;
    default:
        return Step::Failed;
    }
}

void Statement::reset()
{
    sqlite3_reset(m_statement.get());
    m_share = {};
}

void Statement::bind(int number, qint64 value)
{
    sqlite3_bind_int64(m_statement.get(), number, value);
}

void Statement::bind(int number, const QString &value)
{
    const QByteArray utf8 = value.toUtf8();
    // SQLITE_TRANSIENT: SQLite keeps a copy of its own.
    sqlite3_bind_text64(m_statement.get(),
                        number,
                        utf8.constData(),
                        sqlite3_uint64(utf8.size()),
                        SQLITE_TRANSIENT, // NOLINT: the macro's cast is SQLite's
                        SQLITE_UTF8);
}

int Statement::columnCount() const
{
    return sqlite3_column_count(m_statement.get());
}

bool Statement::isNull(int column) const
{
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

qint64 Statement::integer(int column) const
{
    return sqlite3_column_int64(m_statement.get(), column);
}

std::optional<double> Statement::number(int column) const
{
    switch (sqlite3_column_type(m_statement.get(), column)) {
    case SQLITE_INTEGER:
    case SQLITE_FLOAT:
        return sqlite3_column_double(m_statement.get(), column);
    case SQLITE_TEXT: {
        bool ok = false;
        const double value = bytes(column).toByteArray().toDouble(&ok);
        return ok ? std::optional(value) : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

QString Statement::text(int column) const
{
    return QString::fromUtf8(bytes(column));
}

QByteArrayView Statement::bytes(int column) const
{
    // A blob as it is, anything else as text; the length is asked for after the conversion.
    const void *data = sqlite3_column_type(m_statement.get(), column) == SQLITE_BLOB
        ? sqlite3_column_blob(m_statement.get(), column)
        : sqlite3_column_text(m_statement.get(), column);
    const int size = sqlite3_column_bytes(m_statement.get(), column);
    return data ? QByteArrayView(static_cast<const char *>(data), size) : QByteArrayView();
}

Notice Statement::failure() const
{
    if (m_share.stopped)
        return Notice("sqlite.stopped");
    if (m_share.exhausted)
        return Notice("sqlite.circles");
    return Notice(QString::fromUtf8(sqlite3_errmsg(sqlite3_db_handle(m_statement.get()))));
}

void Statement::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

} // namespace PhoneBackup
