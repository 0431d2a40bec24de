#include "model/MessageWords.h"

#include "platform/Translation_p.h"

#include <array>
#include <utility>

namespace PhoneBackup::MessageWords {

using namespace Qt::StringLiterals;
using DataExport::tr;

namespace {

constexpr qsizetype kLongestQuote = 80;

QString shared(const QString &who, qint64 status)
{
    return (status == 0 ? tr("%1 started sharing a location") : tr("%1 stopped sharing a location"))
        .arg(who);
}

QString groupChange(const QString &who, qint64 action)
{
    switch (action) {
    case 0:
        return tr("%1 left the conversation").arg(who);
    case 1:
        return tr("%1 changed the group photo").arg(who);
    case 2:
        return tr("%1 removed the group photo").arg(who);
    case 4:
        return tr("%1 changed the background").arg(who);
    case 6:
        return tr("%1 removed the background").arg(who);
    default:
        return tr("%1 changed the conversation").arg(who);
    }
}

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
    return u"“%1”"_s.arg(line);
}

QString reaction(const QString &who, qint64 type, const QString &emoji, const QString &quotedText)
{
    const QString what = quotedText.isEmpty() ? tr("a message") : quotedText;
    switch (type) {
    case 2000:
        return tr("%1 loved %2").arg(who, what);
    case 2001:
        return tr("%1 liked %2").arg(who, what);
    case 2002:
        return tr("%1 disliked %2").arg(who, what);
    case 2003:
        return tr("%1 laughed at %2").arg(who, what);
    case 2004:
        return tr("%1 emphasized %2").arg(who, what);
    case 2005:
        return tr("%1 questioned %2").arg(who, what);
    case 2006:
        return tr("%1 reacted with %2 to %3").arg(who, emoji, what);
    case 4000:
        return tr("%1 voted on %2").arg(who, what);
    default:
        return tr("%1 put a sticker on %2").arg(who, what);
    }
}

QString replyTo(const QString &quotedText)
{
    return quotedText.isEmpty() ? tr("[Reply]") : tr("[Reply to %1]").arg(quotedText);
}

QString event(const Event &event)
{
    switch (event.type) {
    case 1:
        if (event.action == 0 && event.toOneself)
            return tr("%1 changed the phone number").arg(event.who);
        if (event.action == 0)
            return tr("%1 added %2 to the conversation").arg(event.who, event.other);
        return tr("%1 removed %2 from the conversation").arg(event.who, event.other);
    case 2:
        if (event.title.isEmpty())
            return tr("%1 removed the name of the conversation").arg(event.who);
        return tr("%1 named the conversation “%2”").arg(event.who, event.title);
    case 3:
        return groupChange(event.who, event.action);
    case 4:
        return shared(event.who, event.shareStatus);
    case 5:
        return tr("%1 kept an audio message").arg(event.who);
    case 6:
        return tr("%1 started a call or a shared session").arg(event.who);
    default:
        return tr("[Event %1 by %2]").arg(QString::number(event.type), event.who);
    }
}

QString deleted()
{
    return tr("[Deleted]");
}

QString edited()
{
    return tr("[Edited]");
}

QString unsent()
{
    return tr("[Unsent]");
}

QString unreadable()
{
    return tr("[This message could not be read]");
}

QString effect(const QString &identifier)
{
    // The names that the phone shows, by the end of the identifier.
    static constexpr std::array<std::pair<QLatin1StringView, const char *>, 13> kEffects { {
        { ".impact"_L1, "Slam" },
        { ".loud"_L1, "Loud" },
        { ".gentle"_L1, "Gentle" },
        { ".invisibleink"_L1, "Invisible Ink" },
        { "CKConfettiEffect"_L1, "Confetti" },
        { "CKEchoEffect"_L1, "Echo" },
        { "CKFireworksEffect"_L1, "Fireworks" },
        { "CKHappyBirthdayEffect"_L1, "Balloons" },
        { "CKHeartEffect"_L1, "Love" },
        { "CKLasersEffect"_L1, "Lasers" },
        { "CKShootingStarEffect"_L1, "Shooting Star" },
        { "CKSparklesEffect"_L1, "Celebration" },
        { "CKSpotlightEffect"_L1, "Spotlight" },
    } };
    for (const auto &[end, name] : kEffects) {
        if (identifier.endsWith(end, Qt::CaseInsensitive))
            return tr("[Sent with %1]").arg(tr(name));
    }
    return tr("[Sent with an effect]");
}

QString scheduled()
{
    return tr("[Scheduled]");
}

} // namespace PhoneBackup::MessageWords
