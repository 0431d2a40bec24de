#ifndef DATAEXPORT_MESSAGE_WHATSAPPTYPE_P_H
#define DATAEXPORT_MESSAGE_WHATSAPPTYPE_P_H

//! What BkWhatsappMsg::type() tells.
namespace WhatsappType {

enum : int {
    Text = 0,
    Picture = 1,
    Video = 2,
    Audio = 3,
    ContactCard = 4,
    Location = 5,
    GroupEvent = 6,
};

} // namespace WhatsappType

#endif
