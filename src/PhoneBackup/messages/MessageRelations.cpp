#include "PhoneBackup/messages/MessageRelations.h"

#include "PhoneBackup/messages/Message.h"
#include "PhoneBackup/messages/MessageExtras.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace PhoneBackup {

namespace {

// Reactions of one group take each other's place.
enum class Group { Tapback, Sticker, Vote, PutSticker };

Group groupOf(Reaction::Kind kind)
{
    switch (kind) {
    case Reaction::Kind::PutSticker:
        return Group::PutSticker;
    case Reaction::Kind::Vote:
        return Group::Vote;
    case Reaction::Kind::Sticker:
        return Group::Sticker;
    default:
        return Group::Tapback;
    }
}

MessageId idOf(const QString &guid)
{
    return MessageId::of(guid.toUtf8());
}

} // namespace

MessageRelations::MessageRelations(std::deque<Message> &messages, std::deque<MessageExtras> &extras)
    : m_messages(messages)
    , m_extras(extras)
{
}

void MessageRelations::resolve()
{
    collect();
    joinPolls();
    if (m_reactions.empty() && m_answers.empty())
        return;
    findTargets();
    supersede();
}

void MessageRelations::collect()
{
    qsizetype place = 0;
    for (const Message &message : m_messages) {
        if (const MessageExtras *extras = message.extras) {
            if (extras->reaction)
                m_reactions.push_back(place);
            if (extras->answer)
                m_answers.push_back(place);
            if (extras->balloon && !extras->balloon->poll.options.isEmpty())
                m_polls.push_back(place);
        }
        ++place;
    }
}

// Who adds an option sends the poll again, with all of its options.
void MessageRelations::joinPolls()
{
    for (const qsizetype place : m_polls) {
        const Message &message = m_messages[std::size_t(place)];
        const Poll &again = message.extras->balloon->poll;
        const MessageId named = again.updatedGuid.isEmpty() ? message.id : idOf(again.updatedGuid);
        const qsizetype known = m_pollOf.value(named, place);
        m_pollOf.insert(message.id, known);
        if (known == place)
            continue;
        m_messages[std::size_t(known)].extras->balloon->poll.options = again.options;
        message.extras->isPollUpdate = true;
    }
}

void MessageRelations::findTargets()
{
    for (const qsizetype place : m_reactions)
        m_targets.insert(idOf(m_messages[std::size_t(place)].extras->reaction->targetGuid),
                         Reaction::kNone);
    for (const qsizetype place : m_answers)
        m_targets.insert(idOf(m_messages[std::size_t(place)].extras->answer->targetGuid),
                         Reaction::kNone);
    m_targets.remove(MessageId());
    qsizetype place = 0;
    for (const Message &message : m_messages) {
        const auto found = m_targets.find(message.id);
        if (found != m_targets.end())
            *found = place;
        ++place;
    }
    for (const qsizetype reaction : m_reactions) {
        Reaction &known = *m_messages[std::size_t(reaction)].extras->reaction;
        known.target = target(known.targetGuid);
        if (known.kind == Reaction::Kind::Vote)
            countVote(reaction);
    }
    for (const qsizetype reply : m_answers) {
        Answer &answer = *m_messages[std::size_t(reply)].extras->answer;
        answer.target = target(answer.targetGuid);
    }
}

qsizetype MessageRelations::target(const QString &guid) const
{
    return m_targets.value(idOf(guid), Reaction::kNone);
}

void MessageRelations::countVote(qsizetype place)
{
    Reaction &reaction = *m_messages[std::size_t(place)].extras->reaction;
    reaction.poll = m_pollOf.value(idOf(reaction.targetGuid), Reaction::kNone);
    if (reaction.poll == Reaction::kNone || !reaction.vote)
        return;
    auto options = m_options.find(reaction.poll); // there may be many, and many votes
    if (options == m_options.end()) {
        options = m_options.insert(
            reaction.poll, m_messages[std::size_t(reaction.poll)].extras->balloon->poll.places());
    }
    std::set<qsizetype> chosen; // in the order of the poll; what it does not have is dropped
    for (const QString &id : *reaction.vote) {
        const auto option = options->constFind(id);
        if (option != options->cend())
            chosen.insert(*option);
    }
    reaction.options.assign(chosen.begin(), chosen.end());
}

void MessageRelations::supersede()
{
    const auto subject = [this](qsizetype place) {
        const Message &message = m_messages[std::size_t(place)];
        const Reaction &reaction = *message.extras->reaction;
        const MessageId id = idOf(reaction.targetGuid);
        return std::tuple(id.high,
                          id.low,
                          reaction.part,
                          groupOf(reaction.kind),
                          message.isFromMe,
                          reaction.person);
    };
    using Subject = decltype(subject(0));
    std::vector<std::pair<Subject, qsizetype>> sorted;
    sorted.reserve(m_reactions.size());
    for (const qsizetype place : m_reactions)
        sorted.emplace_back(subject(place), place);
    std::sort(sorted.begin(), sorted.end()); // the places are in the order of time
    for (std::size_t i = 0; i + 1 < sorted.size(); ++i) {
        Reaction &reaction = *m_messages[std::size_t(sorted[i].second)].extras->reaction;
        if (reaction.kind != Reaction::Kind::PutSticker)
            reaction.isLast = sorted[i + 1].first != sorted[i].first;
    }
    for (const qsizetype place : m_reactions) {
        const Reaction &reaction = *m_messages[std::size_t(place)].extras->reaction;
        const qsizetype shownAt =
            reaction.poll == Reaction::kNone ? reaction.target : reaction.poll;
        if (shownAt == Reaction::kNone || !reaction.holds())
            continue;
        Message &message = m_messages[std::size_t(shownAt)];
        if (!message.extras)
            message.extras = &m_extras.emplace_back();
        message.extras->reactions.push_back(place);
    }
}

} // namespace PhoneBackup
