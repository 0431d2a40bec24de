#include "PhoneItems/whatsapp/WhatsappData.h"

#include "PhoneBackup/whatsapp/WhatsappStore.h"
#include "PhoneItems/whatsapp/WhatsappContent.h"
#include "PhoneItems/whatsapp/WhatsappLines.h"

#include <algorithm>
#include <numeric>

namespace PhoneItems {

using namespace PhoneBackup;

namespace {

// So few rows may all be of a kind that is not shown; whether something is left is cheap to find.
constexpr std::size_t kFewMessages = 4;

} // namespace

WhatsappData::WhatsappData(Source &source)
    : ItemData(DataType::Whatsapp)
    , m_source(source)
    , m_stores(WhatsappStore::openAll(source))
    , m_content(std::make_unique<WhatsappContent>())
{
    for (const auto &store : m_stores) {
        std::vector<WhatsappChat> chats = store->takeChats();
        std::move(chats.begin(), chats.end(), std::back_inserter(m_chats));
    }
    m_chats.erase(std::remove_if(m_chats.begin(),
                                 m_chats.end(),
                                 [this](const WhatsappChat &chat) { return isEmpty(chat); }),
                  m_chats.end());
    m_content->clear();
    std::stable_sort(
        m_chats.begin(), m_chats.end(), [](const WhatsappChat &a, const WhatsappChat &b) {
            return a.lastDateMs > b.lastDateMs;
        });
    for (std::size_t i = 0; i < m_chats.size(); ++i)
        m_items.emplace_back(*this, int(i));
}

WhatsappData::~WhatsappData() = default;

bool WhatsappData::isEmpty(const WhatsappChat &chat)
{
    if (chat.messages.size() > kFewMessages)
        return false;
    m_content->clear();
    return WhatsappLines(m_source, chat, *m_content).read() && m_content->messages().isEmpty();
}

WhatsappContent *WhatsappData::content(int index) const
{
    if (m_current != index) {
        m_content->clear();
        const bool read = WhatsappLines(m_source, chat(index), *m_content).read();
        m_current = read ? index : -1;
    }
    return m_current == index ? m_content.get() : nullptr;
}

void readWhatsapp(Source &source, DataSets &sets)
{
    sets[DataType::Whatsapp] = std::make_unique<WhatsappData>(source);
}

qint64 WhatsappData::messageCount() const
{
    return std::accumulate(
        m_chats.begin(), m_chats.end(), qint64 { 0 }, [](qint64 sum, const WhatsappChat &chat) {
            return sum + qint64(chat.messages.size());
        });
}

} // namespace PhoneItems
