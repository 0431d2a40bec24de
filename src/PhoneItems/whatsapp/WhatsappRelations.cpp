#include "PhoneItems/whatsapp/WhatsappRelations.h"

#include "PhoneItems/shared/QuoteWords.h"
#include "PhoneItems/whatsapp/WhatsappContent.h"
#include "PhoneItems/whatsapp/WhatsappWords.h"

#include <algorithm>

namespace PhoneItems {

namespace {

QString quoted(const WhatsappLine &message)
{
    return QuoteWords::quote(message.text.isEmpty() ? WhatsappWords::mediaKind(message.code)
                                                    : message.text);
}

} // namespace

quint64 WhatsappRelations::hashOf(QByteArrayView id)
{
    return quint64(qHash(id));
}

void WhatsappRelations::addAnswer(WhatsappLine &message,
                                  QByteArrayView id,
                                  const QString &quotedText)
{
    m_answers.push_back({ &message, hashOf(id), quotedText });
}

void WhatsappRelations::apply(WhatsappContent &content, bool nameSenders)
{
    if (m_reactions.empty() && m_answers.empty())
        return;
    findTargets(content);
    // All quotes are taken before any text changes: none holds another.
    std::vector<WhatsappContent::Aside> lines;
    lines.reserve(m_reactions.size());
    for (const Reaction &reaction : m_reactions) {
        const QString what = reaction.message->isDeleted() ? QString() : quoted(*reaction.message);
        WhatsappLine &line = content.addAside();
        line.text = QuoteWords::reaction(reaction.who, reaction.emoji, what);
        line.fromMe = reaction.byOwner;
        line.files = reaction.message->files;
        if (nameSenders && !reaction.byOwner)
            line.author = reaction.who;
        if (reaction.date.isValid())
            line.dateMs = reaction.date.toMSecsSinceEpoch();
        lines.push_back({ reaction.message, &line });
    }
    QStringList quotes;
    quotes.reserve(qsizetype(m_answers.size()));
    for (const Answer &answer : m_answers)
        quotes.append(quote(answer));

    auto quotedText = quotes.cbegin();
    for (const Answer &answer : m_answers) {
        QString &text = answer.message->text;
        const QString above = QuoteWords::replyTo(*quotedText++);
        text = text.isEmpty() ? above : above + u'\n' + text;
    }
    content.weave(lines);
}

void WhatsappRelations::findTargets(const WhatsappContent &content)
{
    if (m_answers.empty())
        return;
    for (const Answer &answer : m_answers)
        m_targets.insert(answer.target, nullptr);
    content.forEach([this](const WhatsappLine &message) {
        const auto found = m_targets.find(message.idHash);
        if (found != m_targets.end())
            *found = &message;
    });
}

// Of a message that is gone, what the answer holds of it.
QString WhatsappRelations::quote(const Answer &answer) const
{
    const WhatsappLine *target = m_targets.value(answer.target);
    return target && !target->isDeleted() ? quoted(*target) : QuoteWords::quote(answer.quotedText);
}

} // namespace PhoneItems
