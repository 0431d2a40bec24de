#include "PhoneBackup/messages/Messages.h"

#include "PhoneBackup/messages/SmsDatabase.h"
#include "PhoneItems/messages/MessageData.h"

namespace PhoneBackup {

void readMessages(Source &source, DataSets &sets)
{
    sets[SmsDatabase::kMessages] = std::make_unique<MessageData>(source);
}

} // namespace PhoneBackup
