#ifndef PHONEBACKUP_SOURCE_PHONETIME_H
#define PHONEBACKUP_SOURCE_PHONETIME_H

#include "PhoneBackup/base/PhoneTime.h"

#endif
