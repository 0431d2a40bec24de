#include "model/Messages.h"

#include "model/MessageData.h"
#include "model/SmsDatabase.h"

namespace PhoneBackup {

void readMessages(Source &source, DataSets &sets)
{
    sets[SmsDatabase::kMessages] = std::make_unique<MessageData>(source);
}

} // namespace PhoneBackup
