#include "PhoneItems/messages/MessageChat.h"

namespace PhoneItems {

using PhoneBackup::Delivery;

namespace {

const QString &noText()
{
    static const QString none;
    return none;
}

} // namespace

bool MessageChat::isSentDone() const
{
    return record->delivery == Delivery::Received || record->delivery == Delivery::Sent
        || (extras && extras->isEvent);
}

const QString &MessageChat::addr() const
{
    return record->sender ? *record->sender : noText();
}

const QString &MessageChat::subject() const
{
    return extras ? extras->subject : noText();
}

const QList<BkSMSPiece *> &MessageChat::pieces() const
{
    static const QList<BkSMSPiece *> none;
    return extras ? extras->pieces : none;
}

} // namespace PhoneItems
