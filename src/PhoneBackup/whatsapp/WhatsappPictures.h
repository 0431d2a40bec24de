#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPPICTURES_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPPICTURES_H

#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneBackup/whatsapp/WhatsappDatabase.h"
#include "PhoneBackup/whatsapp/WhatsappPerson.h"

namespace PhoneBackup {

//! The pictures of people and groups that the app keeps.
class WhatsappPictures
{
public:
    WhatsappPictures(Source &source, const WhatsappHome &home, WhatsappDatabase &database);

    //! The newest picture of \a jid, FileIndex::kNone when the backup has none.
    FileIndex::Row of(const Jid &jid) const;

private:
    struct Picture
    {
        QString path; // without suffix
        double requested = 0;
    };

    FileIndex::Row newestFile(const Jid &jid) const;

    Source &m_source;
    const WhatsappHome m_home;
    QHash<QString, Picture> m_pictures; // by Jid::key()
};

} // namespace PhoneBackup

#endif
