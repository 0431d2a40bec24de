#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPSTORE_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPSTORE_H

#include "PhoneBackup/whatsapp/WhatsappChat.h"
#include "PhoneBackup/whatsapp/WhatsappMedia.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"
#include "PhoneBackup/whatsapp/WhatsappPictures.h"
#include "PhoneBackup/whatsapp/WhatsappReader.h"

#include <optional>

namespace PhoneBackup {

//! What one edition of WhatsApp left in the backup.
class WhatsappStore
{
public:
    WhatsappStore(Source &source,
                  const WhatsappHome &home,
                  std::unique_ptr<WhatsappDatabase> database);

    /*!
        All that \a source has: of the app and of its business edition; what very old versions left
        counts only in the place of the former.
    */
    static std::vector<std::unique_ptr<WhatsappStore>> openAll(Source &source);

    //! The chats with messages that the filter accepts, in no order. Asked once.
    std::vector<WhatsappChat> takeChats();

    //! Gives the messages of one of its chats.
    WhatsappReader &reader() { return m_reader; }

    //! Who is and was in \a group, in the order of the database.
    std::vector<WhatsappMember> members(const WhatsappChat &group);

    //! The picture of a person or group, FileIndex::kNone when the backup has none.
    FileIndex::Row picture(const Jid &jid);

    //! Whether it is that of the business edition.
    bool isBusiness() const;

    //! Domain and path of its database, for a person.
    QString name() const;

private:
    Source &m_source;
    const WhatsappHome m_home;
    std::unique_ptr<WhatsappDatabase> m_database;
    WhatsappNames m_names;
    WhatsappMedia m_media;
    WhatsappReader m_reader;
    // Once they are asked for.
    std::optional<RowsOfMessages> m_memberRows;
    std::optional<WhatsappPictures> m_pictures;
};

} // namespace PhoneBackup

#endif
