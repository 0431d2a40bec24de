#ifndef PHONEITEMS_WHATSAPP_WHATSAPPCONTENT_H
#define PHONEITEMS_WHATSAPP_WHATSAPPCONTENT_H

#include "PhoneItems/whatsapp/WhatsappLine.h"
#include "message/BkWhatsappChat.h"

#include <deque>
#include <vector>

namespace PhoneItems {

//! The messages of the chat that is open.
class WhatsappContent final : public BkWhatsappChat
{
public:
    //! A line that stands behind a message, at its own time.
    struct Aside
    {
        const WhatsappLine *message;
        WhatsappLine *line;
    };

    const QList<BkWhatsappMsg *> &messages() const override { return m_list; }

    //! Releases everything.
    void clear();

    //! Adds a message behind the others; and takes back the one that was added first or last.
    WhatsappLine &addLine();
    void removeFirst();
    void removeLast();

    //! Adds a message that stands nowhere yet; weave() gives it its place.
    WhatsappLine &addAside();

    /*!
        Puts each of \a asides behind its message, before the first later message that is newer.
        \a asides are in the order of their messages.
    */
    void weave(const std::vector<Aside> &asides);

    //! Calls \a visit for each message that was added by addLine().
    template <typename Visit>
    void forEach(const Visit &visit) const
    {
        for (const WhatsappLine &message : m_lines)
            visit(message);
    }

private:
    std::deque<WhatsappLine> m_lines;
    std::deque<WhatsappLine> m_asides;
    QList<BkWhatsappMsg *> m_list;
};

} // namespace PhoneItems

#endif
