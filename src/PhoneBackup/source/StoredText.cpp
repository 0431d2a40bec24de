#include "PhoneBackup/source/StoredText.h"

#include <algorithm>

namespace PhoneBackup::StoredText {

namespace {

constexpr QChar kFilePlace(0xFFFC);
constexpr QChar kAppPlace(0xFFFD);
constexpr QChar kLineSeparator(0x2028);

bool needsCleaning(QChar c)
{
    return (c < u' ' && c != u'\n' && c != u'\t') || c == kFilePlace || c == kAppPlace
        || c == kLineSeparator;
}

} // namespace

QString cleaned(const QString &text)
{
    if (std::none_of(text.cbegin(), text.cend(), needsCleaning))
        return text;
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (!needsCleaning(c))
            result.append(c);
        else if (c == kLineSeparator
                 || (c == u'\r' && (i + 1 == text.size() || text[i + 1] != u'\n')))
            result.append(u'\n');
    }
    return result;
}

QString beginning(const QString &text, qsizetype longest)
{
    return text.first(beginning(QStringView(text), longest).size());
}

QStringView beginning(QStringView text, qsizetype longest)
{
    if (text.size() <= longest)
        return text;
    const bool insidePair = longest > 0 && text[longest - 1].isHighSurrogate();
    return text.first(longest - (insidePair ? 1 : 0));
}

} // namespace PhoneBackup::StoredText
