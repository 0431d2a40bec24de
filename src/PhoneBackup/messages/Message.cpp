#include "PhoneBackup/messages/Message.h"

#include <array>
#include <utility>

namespace PhoneBackup {

MessageService messageService(QByteArrayView name)
{
    // Values of message.service; those of most messages come first.
    static constexpr std::array<std::pair<QByteArrayView, MessageService>, 5> kServices { {
        { "iMessage", MessageService::IMessage },
        { "SMS", MessageService::Sms },
        { "RCS", MessageService::Rcs },
        { "iMessageLite", MessageService::IMessageLite },
        { "SatelliteSMS", MessageService::SatelliteSms },
    } };
    if (name.isEmpty())
        return MessageService::Unknown;
    for (const auto &[known, service] : kServices) {
        if (name.size() == known.size() && name.compare(known, Qt::CaseInsensitive) == 0)
            return service;
    }
    return MessageService::Other;
}

} // namespace PhoneBackup
