#ifndef TESTS_SAMPLE_SQLITEROWS_H
#define TESTS_SAMPLE_SQLITEROWS_H

#include <QByteArray>
#include <QList>
#include <QString>

#include <sqlite3.h>

//! The rows of \a sql, each as its columns' bytes; an error gives one row with the message.
inline QList<QByteArrayList> sqliteRows(const QString &path, const char *sql, bool immutable = true)
{
    const QByteArray uri = "file:" + path.toUtf8() + (immutable ? "?immutable=1" : "");
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    QList<QByteArrayList> rows;
    sqlite3_open_v2(uri.constData(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI, nullptr);
    int code = sqlite3_prepare_v2(database, sql, -1, &statement, nullptr);
    while (code == SQLITE_OK && (code = sqlite3_step(statement)) == SQLITE_ROW) {
        QByteArrayList row;
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            const auto *bytes = static_cast<const char *>(sqlite3_column_blob(statement, column));
            row.append(QByteArray(bytes, sqlite3_column_bytes(statement, column)));
        }
        rows.append(row);
        code = SQLITE_OK;
    }
    if (code != SQLITE_OK && code != SQLITE_DONE)
        rows = { { sqlite3_errmsg(database) } };
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return rows;
}

#endif
