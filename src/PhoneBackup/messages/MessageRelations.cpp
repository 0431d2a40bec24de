#include "PhoneBackup/messages/MessageRelations.h"

#include "PhoneItems/messages/ConversationContent.h"
#include "PhoneItems/messages/MessageWords.h"
#include "PhoneItems/shared/QuoteWords.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace PhoneBackup {

namespace QuoteWords = PhoneItems::QuoteWords;

using namespace Qt::StringLiterals;

namespace {

constexpr int kWholeMessage = -1;
constexpr qint64 kSticker = 1000;
constexpr qint64 kFirstReaction = 2000;
constexpr qint64 kFirstRemoval = 3000;
constexpr qint64 kLastRemoval = 3007;
constexpr qint64 kStickerReaction = 2007;

//! What a row names as the message that it is about.
struct Target
{
    quint64 guid;
    int part = kWholeMessage;
};

// "p:1/<guid>" is about one part, "bp:<guid>" about a balloon; the guid may stand alone.
Target targetOf(QStringView name)
{
    int part = kWholeMessage;
    if (name.startsWith("p:"_L1) && name.contains(u'/')) {
        const qsizetype slash = name.indexOf(u'/');
        part = name.sliced(2, slash - 2).toInt();
        name = name.sliced(slash + 1);
    } else if (name.startsWith("bp:"_L1)) {
        name = name.sliced(3);
    }
    return { MessageRelations::hashOf(name.toUtf8()), part };
}

bool isRemoval(qint64 type)
{
    return type >= kFirstRemoval && type <= kLastRemoval;
}

// Reactions of one kind take each other's place.
int kindOf(qint64 type)
{
    const qint64 given = isRemoval(type) ? type - 1000 : type;
    if (given == kSticker)
        return 3;
    return given < kStickerReaction ? 0 : given == kStickerReaction ? 1 : 2;
}

} // namespace

bool MessageRelations::isReaction(qint64 type)
{
    return (type >= kFirstReaction && type <= kStickerReaction) || isRemoval(type) || type == kVote
        || type == kSticker;
}

quint64 MessageRelations::hashOf(QByteArrayView guid)
{
    return quint64(qHash(guid));
}

void MessageRelations::clear()
{
    m_reactions.clear();
    m_replies.clear();
    m_polls.clear();
    m_pollOf.clear();
    m_targets.clear();
}

void MessageRelations::addReaction(const Reaction &reaction)
{
    const Target target = targetOf(reaction.target);
    m_reactions.push_back({ reaction.message,
                            target.guid,
                            target.part,
                            reaction.type,
                            reaction.emoji,
                            reaction.who,
                            reaction.person,
                            reaction.vote });
}

void MessageRelations::addPoll(Message &message, const Poll &poll, const QString &target)
{
    const quint64 other = target.isEmpty() ? message.guidHash : targetOf(target).guid;
    m_polls.push_back({ &message, other, poll, {} });
}

void MessageRelations::addReply(Message &message, QByteArrayView target, const QString &part)
{
    m_replies.push_back({ &message, hashOf(target), part.section(u':', 0, 0).toInt() });
}

void MessageRelations::apply(ConversationContent &content)
{
    joinPolls();
    if (m_reactions.empty() && m_replies.empty())
        return;
    findTargets(content);
    hideSuperseded();
    // All quotes are taken before any text changes: none holds another.
    QStringList quotes;
    quotes.reserve(qsizetype(m_reactions.size()) + qsizetype(m_replies.size()));
    for (const Known &reaction : m_reactions)
        quotes.append(reaction.message->hidden ? QString() : quote(reaction.target, reaction.part));
    for (const Reply &reply : m_replies)
        quotes.append(quote(reply.target, reply.part));

    auto quoted = quotes.cbegin();
    for (const Known &reaction : m_reactions) {
        const QString line = lineOf(reaction, *quoted++);
        QString &text = reaction.message->text;
        text = text.isEmpty() ? line : line + u' ' + text; // marks stay behind it
    }
    for (const Reply &reply : m_replies) {
        QString &text = reply.message->text;
        const QString line = QuoteWords::replyTo(*quoted++);
        text = text.isEmpty() ? line : line + u'\n' + text;
    }
}

// Who adds an option sends the poll again, with all of its options.
void MessageRelations::joinPolls()
{
    std::sort(m_polls.begin(), m_polls.end(), [](const KnownPoll &a, const KnownPoll &b) {
        return std::tuple(a.message->dateMs, a.message->row)
            < std::tuple(b.message->dateMs, b.message->row);
    });
    for (std::size_t i = 0; i < m_polls.size(); ++i) {
        const KnownPoll &again = m_polls[i];
        const std::size_t known = m_pollOf.value(again.target, i);
        m_pollOf.insert(again.message->guidHash, known);
        if (known == i)
            continue;
        KnownPoll &first = m_polls[known];
        QString &text = first.message->text;
        const QString before = MessageWords::poll(first.poll);
        const qsizetype place = text.indexOf(before); // marks stay around it
        first.poll.options = again.poll.options;
        if (place >= 0)
            text.replace(place, before.size(), MessageWords::poll(first.poll));
        again.message->hidden = true;
    }
    for (KnownPoll &poll : m_polls)
        poll.places = poll.poll.places();
}

QString MessageRelations::lineOf(const Known &reaction, const QString &quoted) const
{
    if (reaction.type != kVote)
        return MessageWords::reaction(reaction.who, reaction.type, reaction.emoji, quoted);
    QStringList options;
    const auto found = m_pollOf.constFind(reaction.target);
    if (found != m_pollOf.cend() && reaction.vote) {
        const KnownPoll &known = m_polls[*found];
        std::set<qsizetype> chosen; // in the order of the poll; what it does not have is dropped
        for (const QString &id : *reaction.vote) {
            const auto place = known.places.constFind(id);
            if (place != known.places.cend())
                chosen.insert(*place);
        }
        for (const qsizetype option : chosen)
            options.append(MessageWords::pollOption(known.poll, option));
    }
    return MessageWords::vote(reaction.who, options, quoted);
}

void MessageRelations::findTargets(ConversationContent &content)
{
    for (const Known &reaction : m_reactions)
        m_targets.insert(reaction.target, nullptr);
    for (const Reply &reply : m_replies)
        m_targets.insert(reply.target, nullptr);
    for (const Message &message : content.messages()) {
        const auto found = m_targets.find(message.guidHash);
        if (found != m_targets.end())
            *found = &message;
    }
}

void MessageRelations::hideSuperseded()
{
    const auto subject = [](const Known &reaction) {
        return std::tuple(reaction.target,
                          reaction.part,
                          kindOf(reaction.type),
                          reaction.message->fromMe,
                          reaction.person);
    };
    std::sort(m_reactions.begin(), m_reactions.end(), [&](const Known &a, const Known &b) {
        const auto first = subject(a);
        const auto second = subject(b);
        if (first != second)
            return first < second;
        return std::tuple(a.message->dateMs, a.message->row)
            < std::tuple(b.message->dateMs, b.message->row);
    });
    for (std::size_t i = 0; i < m_reactions.size(); ++i) {
        const Known &reaction = m_reactions[i];
        if (reaction.type == kSticker)
            continue;
        const bool isLast =
            i + 1 == m_reactions.size() || subject(m_reactions[i + 1]) != subject(reaction);
        const bool isWithdrawn = reaction.vote && reaction.vote->isEmpty();
        if (!isLast || isWithdrawn || isRemoval(reaction.type))
            reaction.message->hidden = true;
    }
}

QString MessageRelations::quote(quint64 target, int part) const
{
    const Message *message = m_targets.value(target);
    if (!message)
        return {};
    if (message->extras && part >= 0 && part < message->extras->parts.size())
        return QuoteWords::quote(message->extras->parts.at(part));
    // The only part is the whole message, without what marks it.
    const qsizetype parts = message->extras ? message->extras->parts.size() : 0;
    if (parts == 1 || (parts > 1 && message->text.isEmpty()))
        return QuoteWords::quote(message->extras->parts.first());
    return QuoteWords::quote(message->text);
}

} // namespace PhoneBackup
