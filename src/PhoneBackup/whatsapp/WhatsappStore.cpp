#include "PhoneBackup/whatsapp/WhatsappStore.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

QString databaseName()
{
    return u"ChatStorage.sqlite"_s;
}

} // namespace

WhatsappStore::WhatsappStore(Source &source,
                             const WhatsappPlace &place,
                             std::unique_ptr<WhatsappDatabase> database)
    : m_source(source)
    , m_place(place)
    , m_database(std::move(database))
    , m_names(source, place, m_database.get(), WhatsappDatabase::kChats)
    , m_media(source, place, *m_database)
    , m_reader(source, *m_database, m_names, m_media, m_facts)
{
}

std::vector<std::unique_ptr<WhatsappStore>> WhatsappStore::openAll(Source &source)
{
    const WhatsappPlace old { "AppDomain-net.whatsapp.WhatsApp", u"Documents/"_s };
    std::vector<std::unique_ptr<WhatsappStore>> stores;
    const auto open = [&](const WhatsappPlace &place) {
        auto database = WhatsappDatabase::open(
            source, place, databaseName(), tr("Chats and messages may be missing."));
        if (database)
            stores.push_back(std::make_unique<WhatsappStore>(source, place, std::move(database)));
        return !stores.empty();
    };
    if (!open(WhatsappPlace::app()))
        open(old);
    open(WhatsappPlace::business());
    return stores;
}

std::vector<WhatsappChat> WhatsappStore::takeChats()
{
    WhatsappChatList list(m_source, *m_database, m_names, m_media.rows());
    std::vector<WhatsappChat> chats = list.take();
    m_facts = list.facts();
    for (WhatsappChat &chat : chats)
        chat.store = this;
    return chats;
}

QString WhatsappStore::name() const
{
    return PathParts::text(m_place.domain) + u'/' + m_place.folder + databaseName();
}

} // namespace PhoneBackup
