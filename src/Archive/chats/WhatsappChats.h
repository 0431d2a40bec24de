#ifndef ARCHIVE_CHATS_WHATSAPPCHATS_H
#define ARCHIVE_CHATS_WHATSAPPCHATS_H

#include "Archive/chats/ChatPages.h"
#include "Archive/media/Persons.h"
#include "Archive/records/RecordTaker.h"

namespace PhoneBackup {
struct WhatsappDetails;
struct WhatsappPerson;
} // namespace PhoneBackup

namespace Archive {

//! Makes conversations of WhatsApp's chats.
class WhatsappChats final : public TakerOf<WhatsappChats>
{
public:
    //! All are borrowed.
    WhatsappChats(Site &site, ChatPages &pages, Persons &persons);

    void take(const ChatOf &chat);
    void take(const PhoneBackup::WhatsappMessage &message);

private:
    void addContent(Bubble &bubble, const PhoneBackup::WhatsappMessage &message) const;
    bool addFile(Bubble &bubble, const PhoneBackup::WhatsappMessage &message) const;
    void addCards(Bubble &bubble, const PhoneBackup::WhatsappDetails &details) const;
    void addOthers(Bubble &bubble, const PhoneBackup::WhatsappMessage &message) const;

    Site &m_site;
    ChatPages &m_pages;
    Persons &m_persons;
    QHash<QByteArray, qint64> m_numbers; // of the messages of the chat, by their identifiers
    qint64 m_next = 0;
};

} // namespace Archive

#endif
