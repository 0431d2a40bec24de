#include "PhoneItems/whatsapp/WhatsappContent.h"

#include <queue>

#include <tuple>

namespace PhoneBackup {

namespace {

// A line that waits for its time.
struct Waiting
{
    qint64 dateMs;
    std::size_t number;

    bool operator>(const Waiting &other) const
    {
        return std::tie(dateMs, number) > std::tie(other.dateMs, other.number);
    }
};

} // namespace

void WhatsappContent::clear()
{
    m_list = {}; // not clear(), which keeps the room that a large chat took
    m_messages.clear();
    m_asides.clear();
}

WhatsappMessage &WhatsappContent::addMessage()
{
    WhatsappMessage &message = m_messages.emplace_back();
    m_list.append(&message);
    return message;
}

void WhatsappContent::removeFirst()
{
    m_list.removeFirst();
    m_messages.pop_front();
}

void WhatsappContent::removeLast()
{
    m_list.removeLast();
    m_messages.pop_back();
}

WhatsappMessage &WhatsappContent::addAside()
{
    return m_asides.emplace_back();
}

void WhatsappContent::weave(const std::vector<Line> &lines)
{
    if (lines.empty())
        return;
    std::priority_queue<Waiting, std::vector<Waiting>, std::greater<>> waiting;
    QList<BkWhatsappMsg *> woven;
    woven.reserve(qsizetype(m_messages.size() + lines.size()));
    const auto takeFirst = [&] {
        woven.append(lines[waiting.top().number].line);
        waiting.pop();
    };
    std::size_t next = 0;
    for (WhatsappMessage &message : m_messages) {
        while (!waiting.empty() && waiting.top().dateMs <= message.dateMs)
            takeFirst();
        woven.append(&message);
        for (; next < lines.size() && lines[next].message == &message; ++next) {
            const qint64 own = lines[next].line->dateMs;
            // Without a time it stands right behind its message.
            waiting.push({ own == PhoneTime::kNoMs ? message.dateMs : own, next });
        }
    }
    while (!waiting.empty())
        takeFirst();
    m_list = std::move(woven);
}

} // namespace PhoneBackup
