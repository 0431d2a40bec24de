#ifndef DATAEXPORT_MESSAGE_BKWHATSAPPTYPE_H
#define DATAEXPORT_MESSAGE_BKWHATSAPPTYPE_H

//! What BkWhatsappMsg::type() tells: what a message is.
namespace BkWhatsappType {

//! The codes, which never change.
enum Code : int {
    Text = 0, //!< Any number that is not in this list is treated like it.
    Picture = 1,
    Video = 2,
    Audio = 3,
    ContactCard = 4,
    Location = 5,
    GroupEvent = 6, //!< What happened to the group; a line of its own.
};

} // namespace BkWhatsappType

#endif
