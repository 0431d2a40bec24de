#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPCALLS_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPCALLS_H

#include "PhoneBackup/source/Call.h"

#include <vector>

namespace PhoneBackup {

class Source;

/*!
    The calls in the logs of WhatsApp and of its business edition, in no order, as
    readCalls() takes them; the phone's owner is not among the others. What cannot be read is a loss
   of \a dataType: \a source is told.
*/
std::vector<Call> readWhatsappCalls(Source &source, int dataType);

} // namespace PhoneBackup

#endif
