#ifndef PHONEITEMS_SHARED_DURATIONTEXT_H
#define PHONEITEMS_SHARED_DURATIONTEXT_H

#include <QString>

namespace PhoneItems {

//! How long something lasts, as clocks show it: "0:12", and "1:02:03" from an hour on.
QString durationText(qint64 seconds);

} // namespace PhoneItems

#endif
