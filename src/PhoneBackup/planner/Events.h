#ifndef PHONEBACKUP_PLANNER_EVENTS_H
#define PHONEBACKUP_PLANNER_EVENTS_H

#include "PhoneBackup/planner/Event.h"

#include <vector>

namespace PhoneBackup {

class Source;

//! The events of the calendar by their start, those that repeat once and with their rule.
std::vector<Event> readEvents(Source &source);

} // namespace PhoneBackup

#endif
