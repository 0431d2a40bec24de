#ifndef DATAEXPORT_CONTACT_STANDARDCARD_P_H
#define DATAEXPORT_CONTACT_STANDARDCARD_P_H

#include <QString>

class BkContactItem;
class BkContactPrivate;

//! Cards that every reader of vCard 2.1 takes apart in the same way.
namespace StandardCard {

/*!
    The card of \a item, whose details are \a contact. N and ADR have all their parts in the
    standard's order. A value that is not plain ASCII, or holds a character that some reader gives a
    meaning, is quoted-printable: none can end its line.
*/
QString write(const BkContactItem &item, const BkContactPrivate &contact);

} // namespace StandardCard

#endif
