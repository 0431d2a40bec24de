#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPREADER_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPREADER_H

#include "PhoneBackup/whatsapp/WhatsappChat.h"
#include "PhoneBackup/whatsapp/WhatsappMessage.h"

#include <functional>
#include <memory>

namespace PhoneBackup {

class Source;
class WhatsappDatabase;
class WhatsappMedia;
class WhatsappNames;

/*!
    \brief Reads the messages of chats.

    \par Cost
    One look-up per message by its number; others for those that have a file, an author that was not
    met before, reactions, or a type that is more than a text. A row on a damaged page costs itself
    alone.
*/
class WhatsappReader
{
public:
    using Sink = std::function<void(WhatsappMessage &&)>;

    WhatsappReader(Source &source,
                   WhatsappDatabase &database,
                   const WhatsappNames &names,
                   WhatsappMedia &media);
    ~WhatsappReader();

    //! Says whether the state of sent messages is kept up at all.
    void setKeepsStatus(bool keepsStatus) { m_keepsStatus = keepsStatus; }

    /*!
        Gives the messages of \a chat to \a sink in the order in which the phone shows them. Left
        out are albums, whose pictures are messages of their own, and the smaller one of a picture
        that was sent twice. \return false when there are messages and none could be read.
    */
    bool read(const WhatsappChat &chat, const Sink &sink);

    //! Who made the group; Nobody when neither a name nor a number is known.
    WhatsappPerson creator(const WhatsappChat &chat) const;

    //! Kind, date and file of the message \a row alone; nothing of a message that has none.
    WhatsappMessage file(qint64 row);

private:
    struct Tables;

    Tables &tables();
    bool readRow(const WhatsappChat &chat, WhatsappMessage &message);
    bool isPartOfAnother(const WhatsappChat &chat, WhatsappMessage &message, qint64 parent);
    void setState(WhatsappMessage &message) const;
    void setSender(const WhatsappChat &chat, WhatsappMessage &message);
    void setEvent(const WhatsappChat &chat, WhatsappMessage &message);
    void setLinks(WhatsappMessage &message);
    void setReactions(const WhatsappChat &chat, WhatsappMessage &message, QByteArrayView info);
    void nameEverybody(WhatsappDetails &details) const;
    void name(WhatsappPerson &person) const;
    WhatsappPerson author();
    const WhatsappPerson &member(qint64 row);

    Source &m_source;
    WhatsappDatabase &m_database;
    const WhatsappNames &m_names;
    WhatsappMedia &m_media;
    bool m_keepsStatus = false;
    std::unique_ptr<Tables> m_tables; // once messages are asked for
};

} // namespace PhoneBackup

#endif
