#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPSTORE_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPSTORE_H

#include "PhoneBackup/whatsapp/WhatsappChatList.h"
#include "PhoneBackup/whatsapp/WhatsappMedia.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"
#include "PhoneBackup/whatsapp/WhatsappReader.h"

namespace PhoneBackup {

//! What one edition of WhatsApp left in the backup.
class WhatsappStore
{
public:
    WhatsappStore(Source &source,
                  const WhatsappPlace &place,
                  std::unique_ptr<WhatsappDatabase> database);

    /*!
        All that \a source has: of the app and of its business edition; what very old versions left
        counts only in the place of the former.
    */
    static std::vector<std::unique_ptr<WhatsappStore>> openAll(Source &source);

    //! The chats with messages that the filter accepts, in no order. Asked once.
    std::vector<WhatsappChat> takeChats();

    WhatsappReader &reader() { return m_reader; }
    const WhatsappMedia &media() const { return m_media; }

    //! Domain and path of its database, for a person.
    QString name() const;

private:
    Source &m_source;
    const WhatsappPlace m_place;
    std::unique_ptr<WhatsappDatabase> m_database;
    WhatsappNames m_names;
    WhatsappMedia m_media;
    WhatsappChatList::Facts m_facts;
    WhatsappReader m_reader;
};

} // namespace PhoneBackup

#endif
