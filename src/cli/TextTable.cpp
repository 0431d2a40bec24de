#include "TextTable.h"

#include "Export/Text.h"

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace Cli {

QString elided(const QString &text, int columns)
{
    if (text.size() <= columns)
        return text;
    if (columns < 3)
        return text.left(std::max(columns, 0));
    const qsizetype head = (columns - 1) / 2;
    return text.left(head) + u'…' + text.right(columns - 1 - head);
}

QStringList tableLines(const QList<QStringList> &rows, const char *alignment)
{
    const auto columns = static_cast<qsizetype>(std::strlen(alignment));
    QList<qsizetype> widths(columns, 0);
    for (const QStringList &row : rows) {
        for (qsizetype c = 0; c < std::min(columns, row.size()); ++c)
            widths[c] = std::max(widths[c], row.at(c).size());
    }
    QStringList lines;
    for (const QStringList &row : rows) {
        QString line;
        for (qsizetype c = 0; c < std::min(columns, row.size()); ++c) {
            const QString cell = Export::printable(row.at(c));
            line += alignment[c] == 'r' ? cell.rightJustified(widths[c])
                                        : cell.leftJustified(widths[c]);
            line += u"  "_s;
        }
        while (line.endsWith(u' '))
            line.chop(1);
        lines += line;
    }
    return lines;
}

} // namespace Cli
