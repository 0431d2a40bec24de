#ifndef CLI_TEXT_H
#define CLI_TEXT_H

#include <QList>
#include <QString>
#include <QStringList>

//! Texts for a person: numbers, sizes, times, tables.
namespace Cli {

/*!
    \a text with every character replaced that would steer a terminal or turn the direction of
    writing: names in a backup come from strangers.
*/
QString printable(const QString &text);

//! "12,480".
QString grouped(qint64 number);

//! "1 item", "12,480 items".
QString counted(qint64 number, const QString &one, const QString &many);

//! "3.4 MB".
QString sizeText(qint64 bytes);

//! \a text in at most \a columns, with an ellipsis in its middle where something was left out.
QString elided(const QString &text, int columns);

/*!
    Lines of a table, columns two blanks apart and as wide as their widest cell. \a alignment has
    one letter a column: 'l' or 'r'. Cells are made printable.
*/
QStringList tableLines(const QList<QStringList> &rows, const char *alignment);

} // namespace Cli

#endif
