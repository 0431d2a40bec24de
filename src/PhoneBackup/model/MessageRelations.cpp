#include "model/MessageRelations.h"

#include "model/ConversationContent.h"
#include "model/MessageWords.h"

#include <algorithm>
#include <tuple>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kWholeMessage = -1;
constexpr qint64 kSticker = 1000;
constexpr qint64 kFirstRemoval = 3000;
constexpr qint64 kLastRemoval = 3007;
constexpr qint64 kStickerReaction = 2007;

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

quint64 MessageRelations::hashOf(QByteArrayView guid)
{
    return quint64(qHash(guid));
}

void MessageRelations::clear()
{
    m_reactions.clear();
    m_replies.clear();
    m_targets.clear();
}

void MessageRelations::addReaction(const Reaction &reaction)
{
    // "p:1/<guid>" is about one part, "bp:<guid>" about a balloon; the guid may stand alone.
    QStringView guid = reaction.target;
    int part = kWholeMessage;
    if (guid.startsWith("p:"_L1) && guid.contains(u'/')) {
        const qsizetype slash = guid.indexOf(u'/');
        part = guid.sliced(2, slash - 2).toInt();
        guid = guid.sliced(slash + 1);
    } else if (guid.startsWith("bp:"_L1)) {
        guid = guid.sliced(3);
    }
    m_reactions.push_back({ reaction.message,
                            hashOf(guid.toUtf8()),
                            part,
                            reaction.type,
                            reaction.emoji,
                            reaction.who,
                            reaction.person });
}

void MessageRelations::addReply(Message &message, QByteArrayView target, const QString &part)
{
    m_replies.push_back({ &message, hashOf(target), part.section(u':', 0, 0).toInt() });
}

void MessageRelations::apply(ConversationContent &content)
{
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
        const QString line =
            MessageWords::reaction(reaction.who, reaction.type, reaction.emoji, *quoted++);
        QString &text = reaction.message->text;
        text = text.isEmpty() ? line : line + u' ' + text; // marks stay behind it
    }
    for (const Reply &reply : m_replies) {
        QString &text = reply.message->text;
        const QString line = MessageWords::replyTo(*quoted++);
        text = text.isEmpty() ? line : line + u'\n' + text;
    }
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
        if (!isLast || isRemoval(reaction.type))
            reaction.message->hidden = true;
    }
}

QString MessageRelations::quote(quint64 target, int part) const
{
    const Message *message = m_targets.value(target);
    if (!message)
        return {};
    if (message->extras && part >= 0 && part < message->extras->parts.size())
        return MessageWords::quote(message->extras->parts.at(part));
    // The only part is the whole message, without what marks it.
    const qsizetype parts = message->extras ? message->extras->parts.size() : 0;
    if (parts == 1 || (parts > 1 && message->text.isEmpty()))
        return MessageWords::quote(message->extras->parts.first());
    return MessageWords::quote(message->text);
}

} // namespace PhoneBackup
