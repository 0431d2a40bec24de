#ifndef TESTS_ARCHIVE_CASESQL_H
#define TESTS_ARCHIVE_CASESQL_H

/*!
    Adds what cases say of the records in databases, as functions of SQL:
    note('["plain", {"text": …, "style": …, …}]'), noteTable('[["cell", …], …]', '{shape}'),
    attributed('text'), plist('{…}') and gzip(bytes). \return whether SQLite took them.
*/
bool addCaseFunctions();

#endif
