#include "PhoneItems/messages/MessageWords.h"

#include "PhoneBackup/messages/Balloon.h"
#include "PhoneBackup/messages/Conversation.h"
#include "PhoneBackup/messages/GroupEvent.h"
#include "PhoneBackup/messages/Reaction.h"
#include "PhoneItems/shared/QuoteWords.h"
#include "platform/Translation_p.h"

#include <array>
#include <utility>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems::MessageWords {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

bool isWebLink(const QString &address)
{
    return address.startsWith("https://"_L1, Qt::CaseInsensitive)
        || address.startsWith("http://"_L1, Qt::CaseInsensitive);
}

} // namespace

QString conversation(const Conversation &conversation)
{
    if (!conversation.title.isEmpty())
        return conversation.title;
    if (!conversation.names.isEmpty())
        return conversation.names.join(u", "_s);
    if (!conversation.identifier.isEmpty())
        return conversation.identifier;
    return conversation.isNowhere ? tr("No conversation") : tr("Unknown");
}

QString reaction(const QString &who, const Reaction &reaction, const QString &quoted)
{
    const QString what = QuoteWords::orMessage(quoted);
    switch (reaction.kind) {
    case Reaction::Kind::Love:
        return tr("%1 loved %2").arg(who, what);
    case Reaction::Kind::Like:
        return tr("%1 liked %2").arg(who, what);
    case Reaction::Kind::Dislike:
        return tr("%1 disliked %2").arg(who, what);
    case Reaction::Kind::Laugh:
        return tr("%1 laughed at %2").arg(who, what);
    case Reaction::Kind::Emphasis:
        return tr("%1 emphasized %2").arg(who, what);
    case Reaction::Kind::Question:
        return tr("%1 questioned %2").arg(who, what);
    case Reaction::Kind::Emoji:
        return QuoteWords::reaction(who, reaction.emoji, quoted);
    case Reaction::Kind::Sticker:
    case Reaction::Kind::PutSticker:
    case Reaction::Kind::Vote:
        break;
    }
    return tr("%1 put a sticker on %2").arg(who, what);
}

QString vote(const QString &who, const QStringList &chosen, const QString &quotedPoll)
{
    const QString poll = quotedPoll.isEmpty() ? tr("a poll") : quotedPoll;
    if (chosen.isEmpty())
        return tr("%1 voted on %2").arg(who, poll);
    QStringList options;
    for (const QString &option : chosen)
        options.append(QuoteWords::quote(option));
    return tr("%1 voted for %2 in %3").arg(who, options.join(u", "_s), poll);
}

QString event(const GroupEvent &event, const QString &who, const QString &other)
{
    using Kind = GroupEvent::Kind;
    switch (event.kind) {
    case Kind::Added:
        return tr("%1 added %2 to the conversation").arg(who, other);
    case Kind::Removed:
        return tr("%1 removed %2 from the conversation").arg(who, other);
    case Kind::ChangedNumber:
        return tr("%1 changed the phone number").arg(who);
    case Kind::Named:
        return tr("%1 named the conversation “%2”").arg(who, event.title);
    case Kind::NameRemoved:
        return tr("%1 removed the name of the conversation").arg(who);
    case Kind::Left:
        return tr("%1 left the conversation").arg(who);
    case Kind::PhotoChanged:
        return tr("%1 changed the group photo").arg(who);
    case Kind::PhotoRemoved:
        return tr("%1 removed the group photo").arg(who);
    case Kind::BackgroundChanged:
        return tr("%1 changed the background").arg(who);
    case Kind::BackgroundRemoved:
        return tr("%1 removed the background").arg(who);
    case Kind::Changed:
        return tr("%1 changed the conversation").arg(who);
    case Kind::LocationShared:
        return tr("%1 started sharing a location").arg(who);
    case Kind::LocationHidden:
        return tr("%1 stopped sharing a location").arg(who);
    case Kind::AudioKept:
        return tr("%1 kept an audio message").arg(who);
    case Kind::CallStarted:
        return tr("%1 started a call or a shared session").arg(who);
    case Kind::Unknown:
        break;
    }
    return tr("[Event %1 by %2]").arg(QString::number(event.type), who);
}

QString balloon(const Balloon &balloon)
{
    QString app = balloon.app;
    switch (balloon.kind) {
    case Balloon::Kind::Handwriting:
        return tr("[Handwritten message]");
    case Balloon::Kind::DigitalTouch:
        return tr("[Digital Touch message]");
    case Balloon::Kind::Link:
        if (balloon.address.isEmpty())
            return balloon.title.isEmpty() ? tr("[Link]") : linkTitle(balloon.title);
        return balloon.title.isEmpty() ? balloon.address
                                       : balloon.address + u' ' + linkTitle(balloon.title);
    case Balloon::Kind::Payment:
        app = tr("Payment");
        break;
    case Balloon::Kind::Poll:
        app = tr("Poll");
        break;
    case Balloon::Kind::App:
        if (app.isEmpty())
            app = tr("App message");
        break;
    }
    const QString caption = balloon.captions.join(u", "_s);
    const QString label =
        caption.isEmpty() || caption == app ? u"[%1]"_s.arg(app) : u"[%1: %2]"_s.arg(app, caption);
    return isWebLink(balloon.address) ? label + u' ' + balloon.address : label;
}

QString linkTitle(const QString &title)
{
    return tr("[Link: %1]").arg(title);
}

QString pollTitle(const Poll &poll)
{
    return poll.title.isEmpty() ? tr("[Poll]") : tr("[Poll: %1]").arg(poll.title);
}

QString poll(const Poll &poll)
{
    QString lines = pollTitle(poll);
    for (qsizetype i = 0; i < poll.options.size(); ++i)
        lines += u"\n• "_s + pollOption(poll, i);
    return lines;
}

QString pollOption(const Poll &poll, qsizetype option)
{
    const QString &text = poll.options.at(option).text;
    return text.isEmpty() ? tr("[Option %1]").arg(option + 1) : text;
}

QString attachment()
{
    return tr("[Attachment]");
}

QString voiceMessage(bool isExpired, const QString &transcription)
{
    const QString line = isExpired ? tr("[Expired voice message]") : tr("[Voice message]");
    return transcription.isEmpty() ? line : line + u' ' + transcription;
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

} // namespace PhoneItems::MessageWords
