#include "PhoneItems/whatsapp/WhatsappContent.h"

#include <queue>

#include <tuple>

namespace PhoneItems {

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
    m_lines.clear();
    m_asides.clear();
}

WhatsappLine &WhatsappContent::addLine()
{
    WhatsappLine &line = m_lines.emplace_back();
    m_list.append(&line);
    return line;
}

void WhatsappContent::removeFirst()
{
    m_list.removeFirst();
    m_lines.pop_front();
}

void WhatsappContent::removeLast()
{
    m_list.removeLast();
    m_lines.pop_back();
}

WhatsappLine &WhatsappContent::addAside()
{
    return m_asides.emplace_back();
}

void WhatsappContent::weave(const std::vector<Aside> &asides)
{
    if (asides.empty())
        return;
    std::priority_queue<Waiting, std::vector<Waiting>, std::greater<>> waiting;
    QList<BkWhatsappMsg *> woven;
    woven.reserve(qsizetype(m_lines.size()) + qsizetype(asides.size()));
    const auto takeFirst = [&] {
        woven.append(asides[waiting.top().number].line);
        waiting.pop();
    };
    std::size_t next = 0;
    for (WhatsappLine &message : m_lines) {
        while (!waiting.empty() && waiting.top().dateMs <= message.dateMs)
            takeFirst();
        woven.append(&message);
        for (; next < asides.size() && asides[next].message == &message; ++next) {
            const qint64 own = asides[next].line->dateMs;
            // Without a time it stands right behind its message.
            waiting.push({ own == PhoneBackup::PhoneTime::kNoMs ? message.dateMs : own, next });
        }
    }
    while (!waiting.empty())
        takeFirst();
    m_list = std::move(woven);
}

} // namespace PhoneItems
