#ifndef CLI_TEXTTABLE_H
#define CLI_TEXTTABLE_H

#include <QList>
#include <QString>
#include <QStringList>

//! Texts for a terminal, where each letter takes a column.
namespace Cli {

//! \a text in at most \a columns, with an ellipsis in its middle where something was left out.
QString elided(const QString &text, int columns);

/*!
    Lines of a table, columns two blanks apart and as wide as their widest cell. \a alignment has
    one letter a column: 'l' or 'r'. Cells are made printable.
*/
QStringList tableLines(const QList<QStringList> &rows, const char *alignment);

} // namespace Cli

#endif
