#ifndef PHONEBACKUP_SOURCE_CONTACTKIND_H
#define PHONEBACKUP_SOURCE_CONTACTKIND_H

#include <algorithm>
#include <array>

//! The kinds of values in the address book, by the numbers that the phone gives them.
namespace PhoneBackup::ContactKind {

constexpr int kPhone = 3;
constexpr int kEmail = 4;
constexpr int kAddress = 5;
constexpr int kDate = 12;
constexpr int kInstantMessage = 13;
constexpr int kSound = 16; //!< A ringtone or vibration of the contact's own.
constexpr int kUrl = 22;
constexpr int kRelatedName = 23;
constexpr int kSocialProfile = 46;

//! Whether people are shown values of this kind.
inline bool isShown(int kind)
{
    constexpr std::array kShown { kPhone,          kEmail, kAddress,     kDate,
                                  kInstantMessage, kUrl,   kRelatedName, kSocialProfile };
    return std::find(kShown.begin(), kShown.end(), kind) != kShown.end();
}

} // namespace PhoneBackup::ContactKind

#endif
