#include "Export/Text.h"

#include "PhoneItems/shared/DurationText.h"
#include "platform/CCommonUtils.h"

#include <QLocale>

#include <cmath>

using namespace Qt::StringLiterals;

namespace Export {

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

QString durationText(double seconds)
{
    return PhoneItems::durationText(std::llround(seconds));
}

} // namespace Export
