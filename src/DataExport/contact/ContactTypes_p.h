#ifndef DATAEXPORT_CONTACT_CONTACTTYPES_P_H
#define DATAEXPORT_CONTACT_CONTACTTYPES_P_H

#include "contact/BkContactPrivate.h"
#include "contact/BkContactProperty.h"

#include <array>

//! Codes of the property kinds, BkContactProperty::propType().
namespace ContactType {

constexpr int kPhone = 3;
constexpr int kEmail = 4;
constexpr int kAddress = 5;
constexpr int kDate = 12;
constexpr int kInstantMessage = 13;
constexpr int kSound = 16;
constexpr int kUrl = 22;
constexpr int kRelatedName = 23;
constexpr int kSocialProfile = 46;

//! The kinds that have a group on the page, in its order.
inline constexpr std::array kShown { kPhone, kEmail,       kUrl,           kAddress,
                                     kDate,  kRelatedName, kSocialProfile, kInstantMessage };

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
