#include "PhoneItems/shared/QuoteWords.h"

#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems::QuoteWords {

namespace {

constexpr qsizetype kLongestQuote = 80;

} // namespace

QString quote(const QString &text)
{
    // What is simplified is bounded, too: a text may be megabytes long.
    QString line = text.left(8 * kLongestQuote).simplified();
    if (line.isEmpty())
        return {};
    if (line.size() > kLongestQuote) {
        const bool insidePair = line[kLongestQuote - 1].isHighSurrogate();
        line.truncate(kLongestQuote - (insidePair ? 1 : 0));
        line = line.trimmed() + u'…';
    }
    return QStringLiteral("“%1”").arg(line);
}

QString orMessage(const QString &quotedText)
{
    return quotedText.isEmpty() ? tr("a message") : quotedText;
}

QString reaction(const QString &who, const QString &emoji, const QString &quotedText)
{
    return tr("%1 reacted with %2 to %3").arg(who, emoji, orMessage(quotedText));
}

QString replyTo(const QString &quotedText)
{
    return quotedText.isEmpty() ? tr("[Reply]") : tr("[Reply to %1]").arg(quotedText);
}

} // namespace PhoneItems::QuoteWords
