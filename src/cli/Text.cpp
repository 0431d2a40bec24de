#include "Text.h"

#include "platform/CCommonUtils.h"

#include <QLocale>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

constexpr QChar kZeroWidthNonJoiner(0x200c);
constexpr QChar kZeroWidthJoiner(0x200d);

bool steersTerminal(QChar c)
{
    switch (c.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Other_Format:
        // Letters and emoji of ordinary names are joined with these two.
        return c != kZeroWidthJoiner && c != kZeroWidthNonJoiner;
    default:
        return false;
    }
}

} // namespace

QString printable(const QString &text)
{
    QString clean = text;
    for (QChar &c : clean) {
        if (steersTerminal(c))
            c = QChar(QChar::ReplacementCharacter);
    }
    return clean;
}

QString grouped(qint64 number)
{
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(number);
}

QString counted(qint64 number, const QString &one, const QString &many)
{
    return grouped(number) + u' ' + (number == 1 ? one : many);
}

QString sizeText(qint64 bytes)
{
    return CCommonUtils::fileSizeToString(bytes, 'f', 1);
}

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
            const QString cell = printable(row.at(c));
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
