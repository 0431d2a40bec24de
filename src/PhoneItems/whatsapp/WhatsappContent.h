#ifndef PHONEITEMS_WHATSAPP_WHATSAPPCONTENT_H
#define PHONEITEMS_WHATSAPP_WHATSAPPCONTENT_H

#include "PhoneItems/whatsapp/WhatsappMessage.h"
#include "message/BkWhatsappChat.h"

#include <deque>
#include <vector>

namespace PhoneBackup {

//! The messages of the chat that is open.
class WhatsappContent final : public BkWhatsappChat
{
public:
    //! A line that stands behind a message, at its own time.
    struct Line
    {
        const WhatsappMessage *message;
        WhatsappMessage *line;
    };

    const QList<BkWhatsappMsg *> &messages() const override { return m_list; }

    //! Releases everything.
    void clear();

    //! Adds a message behind the others; and takes back the one that was added first or last.
    WhatsappMessage &addMessage();
    void removeFirst();
    void removeLast();

    //! Adds a message that stands nowhere yet; weave() gives it its place.
    WhatsappMessage &addAside();

    /*!
        Puts each of \a lines behind its message, before the first later message that is newer.
        \a lines are in the order of their messages.
    */
    void weave(const std::vector<Line> &lines);

    //! Calls \a visit for each message that was added by addMessage().
    template <typename Visit>
    void forEach(const Visit &visit) const
    {
        for (const WhatsappMessage &message : m_messages)
            visit(message);
    }

private:
    std::deque<WhatsappMessage> m_messages;
    std::deque<WhatsappMessage> m_asides;
    QList<BkWhatsappMsg *> m_list;
};

} // namespace PhoneBackup

#endif
