#ifndef DATAEXPORT_CONTACT_BKCONTACTKIND_H
#define DATAEXPORT_CONTACT_BKCONTACTKIND_H

//! What BkContactProperty::propType() tells: the kinds of a contact's values.
namespace BkContactKind {

//! The codes, which never change.
enum Code : int {
    Phone = 3,
    Email = 4,
    Address = 5, //!< Its parts are in BkContactProperty::propValueEntry().
    Date = 12,
    InstantMessage = 13, //!< An account, in parts.
    Sound = 16, //!< A ringtone or vibration of the contact's own; never shown.
    Url = 22,
    RelatedName = 23,
    SocialProfile = 46, //!< An account, in parts.
};

} // namespace BkContactKind

#endif
