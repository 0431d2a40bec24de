#ifndef DATAEXPORT_CONTACT_CONTACTTYPES_P_H
#define DATAEXPORT_CONTACT_CONTACTTYPES_P_H

#include "contact/BkContactKind.h"
#include "contact/BkContactPrivate.h"
#include "contact/BkContactProperty.h"

#include <array>

namespace ContactType {

//! The kinds that have a group on the page, in its order.
inline constexpr std::array kShown { BkContactKind::Phone,         BkContactKind::Email,
                                     BkContactKind::Url,           BkContactKind::Address,
                                     BkContactKind::Date,          BkContactKind::RelatedName,
                                     BkContactKind::SocialProfile, BkContactKind::InstantMessage };

} // namespace ContactType

//! Calls \a use with each property of \a contact that is of the kind \a type, in their order.
template <class Use>
void forEachProperty(const BkContactPrivate &contact, int type, Use use)
{
    const QList<BkContactProperty *> properties = contact.properties();
    for (const BkContactProperty *property : properties) {
        if (property && property->propType() == type)
            use(*property);
    }
}

#endif
