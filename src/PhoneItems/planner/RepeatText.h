#ifndef PHONEITEMS_PLANNER_REPEATTEXT_H
#define PHONEITEMS_PLANNER_REPEATTEXT_H

#include "PhoneBackup/planner/RepeatRule.h"

namespace PhoneItems {

/*!
    \a rule as a sentence: "Repeats every 2 weeks on Monday and Friday, 10 times". When there is
    something in its specifier that is not understood, that stands behind the sentence as it is. Of
    an uncertain rule it says only that there is one.
*/
QString repeatText(const PhoneBackup::RepeatRule &rule);

} // namespace PhoneItems

#endif
