#ifndef CLI_TEXTTABLE_H
#define CLI_TEXTTABLE_H

#include <QList>
#include <QString>
#include <QStringList>

//! Text for a terminal, where each character takes one column.
namespace Cli {

//! \a text in at most \a columns, with an ellipsis in the middle if it was shortened.
QString elided(const QString &text, int columns);

/*!
    Lines of a table whose columns are two spaces apart and as wide as their widest cell. \a
    alignment has one letter per column, 'l' or 'r'. Cells are made printable.
*/
QStringList tableLines(const QList<QStringList> &rows, const char *alignment);

} // namespace Cli

#endif
