#include "PhoneBackup/whatsapp/WhatsappStore.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"
#include "PhoneBackup/whatsapp/WhatsappChatList.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

QString databaseName()
{
    return u"ChatStorage.sqlite"_s;
}

} // namespace

WhatsappStore::WhatsappStore(Source &source,
                             const WhatsappHome &home,
                             std::unique_ptr<WhatsappDatabase> database)
    : m_source(source)
    , m_home(home)
    , m_database(std::move(database))
    , m_names(source, home, m_database.get(), DataType::Whatsapp)
    , m_media(source, home, *m_database)
    , m_reader(source, *m_database, m_names, m_media)
{
}

std::vector<std::unique_ptr<WhatsappStore>> WhatsappStore::openAll(Source &source)
{
    const WhatsappHome old { "AppDomain-net.whatsapp.WhatsApp", u"Documents/"_s };
    std::vector<std::unique_ptr<WhatsappStore>> stores;
    const auto open = [&](const WhatsappHome &home) {
        auto database = WhatsappDatabase::open(
            source, home, databaseName(), Notice("whatsapp.chatsMayBeMissing"));
        if (database)
            stores.push_back(std::make_unique<WhatsappStore>(source, home, std::move(database)));
        return !stores.empty();
    };
    if (!open(WhatsappHome::app()))
        open(old);
    open(WhatsappHome::business());
    return stores;
}

std::vector<WhatsappChat> WhatsappStore::takeChats()
{
    WhatsappChatList list(m_source, *m_database, m_names, m_media.rows());
    std::vector<WhatsappChat> chats = list.take();
    m_reader.setKeepsStatus(list.keepsStatus());
    for (WhatsappChat &chat : chats)
        chat.store = this;
    return chats;
}

std::vector<WhatsappMember> WhatsappStore::members(const WhatsappChat &group)
{
    const QString name = u"ZWAGROUPMEMBER"_s;
    if (!m_memberRows)
        m_memberRows.emplace(*m_database, name, u"ZCHATSESSION"_s);
    Table table(*m_database, name);
    const auto [jid, contactName, firstName, admin, active] = table.columns(
        u"ZMEMBERJID"_s, u"ZCONTACTNAME"_s, u"ZFIRSTNAME"_s, u"ZISADMIN"_s, u"ZISACTIVE"_s);
    Table::Lookup rows = table.lookup();
    std::vector<WhatsappMember> members;
    for (const qint64 number : m_memberRows->of(group.row)) {
        const Table::Row *row = rows.find(number);
        if (!row)
            continue;
        QString listed = WhatsappNames::cleaned(row->text(contactName));
        if (listed.isEmpty())
            listed = WhatsappNames::cleaned(row->text(firstName));
        members.push_back({ m_names.person(Jid(row->text(jid)), listed),
                            row->integer(admin) != 0,
                            !row->isNull(active) && row->integer(active) == 0 });
    }
    return members;
}

FileIndex::Row WhatsappStore::picture(const Jid &jid)
{
    if (!m_pictures)
        m_pictures.emplace(m_source, m_home, *m_database);
    return m_pictures->of(jid);
}

bool WhatsappStore::isBusiness() const
{
    return m_home.domain == WhatsappHome::business().domain;
}

QString WhatsappStore::name() const
{
    return PathParts::text(m_home.domain) + u'/' + m_home.folder + databaseName();
}

} // namespace PhoneBackup
