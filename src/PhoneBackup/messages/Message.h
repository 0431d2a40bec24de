#ifndef PHONEBACKUP_MESSAGES_MESSAGE_H
#define PHONEBACKUP_MESSAGES_MESSAGE_H

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/messages/MessageId.h"

#include <QString>

namespace PhoneBackup {

struct MessageExtras;

//! By what a message came or went.
enum class MessageService : quint8 {
    Unknown, //!< Nothing says it.
    IMessage,
    IMessageLite, //!< iMessage by satellite.
    Sms, //!< MMS, too.
    Rcs,
    SatelliteSms,
    Other, //!< See MessageExtras::serviceName.
};

//! How far a message got.
enum class Delivery : quint8 {
    Received, //!< By the phone's owner.
    Sent,
    Waiting, //!< Not sent yet.
    Failed,
};

//! The service of this \a name as the database has it, Unknown for an empty one.
MessageService messageService(QByteArrayView name);

/*!
    \brief One row of the message database: a message, a reaction, or an event of a group.

    Made by the million: what few have lies in an object of its own. Moments are milliseconds since
    1970, UTC, or PhoneTime::kNoMs.
*/
struct Message
{
    qint64 row = 0;
    MessageId id; //!< Its GUID, the same in every backup; see MessageExtras::guid, too.
    qint64 dateMs = PhoneTime::kNoMs; //!< When it was sent.
    qint64 deliveredMs = PhoneTime::kNoMs; //!< When it reached the other side's device.
    qint64 readMs = PhoneTime::kNoMs; //!< When the other side, or the owner, read it.
    const QString *sender = nullptr; //!< Address; null for the owner, and where it is not known.
    MessageExtras *extras = nullptr; //!< Null for most.
    QString text; //!< All that it says, where extras have no parts.
    MessageService service = MessageService::Unknown; //!< That of the conversation where not said.
    Delivery delivery = Delivery::Received;
    bool isFromMe = false;
    bool isDeleted = false; //!< The phone still keeps it for some days.
};

} // namespace PhoneBackup

#endif
