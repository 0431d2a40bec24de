#include "PhoneItems/messages/Message.h"

namespace PhoneBackup {

namespace {

const QString &noText()
{
    static const QString none;
    return none;
}

} // namespace

QDateTime Message::msgDate() const
{
    return PhoneTime::ofMs(dateMs);
}

const QString &Message::addr() const
{
    return address ? *address : noText();
}

const QString &Message::subject() const
{
    return extras ? extras->subject : noText();
}

const QList<BkSMSPiece *> &Message::pieces() const
{
    static const QList<BkSMSPiece *> none;
    return extras ? extras->pieces : none;
}

} // namespace PhoneBackup
