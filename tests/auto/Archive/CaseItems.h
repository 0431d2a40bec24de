#ifndef TESTS_ARCHIVE_CASEITEMS_H
#define TESTS_ARCHIVE_CASEITEMS_H

#include "PhoneItems/Backup.h"

#include <QStringList>

/*!
    What the item model shows, for \a what: a data type by its word ("contacts"), a line per row:
    cells with bars between them, and what belongs to it on further lines. Behind the word may stand
    "columns" for the names of columns and the numbers of rows, or "files" for the files as
    "group/name". " [deleted]" stands behind what is.
*/
QStringList itemsOf(PhoneItems::Backup &backup, const QString &what);

#endif
