#include "PhoneBackup/messages/MessageSource.h"

#include "PhoneBackup/messages/CurrentMessages.h"
#include "PhoneBackup/messages/OldMessages.h"
#include "PhoneBackup/messages/SmsDatabase.h"

namespace PhoneBackup {

MessageSource::~MessageSource() = default;

std::unique_ptr<MessageSource> MessageSource::open(Source &source)
{
    std::unique_ptr<SmsDatabase> database = SmsDatabase::open(source);
    if (!database)
        return nullptr;
    if (OldMessages::recognises(*database))
        return std::make_unique<OldMessages>(source, std::move(database));
    return std::make_unique<CurrentMessages>(source, std::move(database));
}

bool MessageSource::isExpired(qint64 /*row*/)
{
    return false;
}

QList<qint64> MessageSource::attachmentRows()
{
    return {};
}

MessageAttachment MessageSource::attachment(qint64 /*row*/)
{
    return {};
}

} // namespace PhoneBackup
