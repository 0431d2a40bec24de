#ifndef PHONEBACKUP_MESSAGES_CONVERSATION_H
#define PHONEBACKUP_MESSAGES_CONVERSATION_H

#include "PhoneBackup/source/PhoneTime.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace PhoneBackup {

//! One conversation as the phone shows it: all chats with the same person or group.
struct Conversation
{
    QString name;
    QStringList addresses; //!< Of everybody but the owner, as they are stored.
    QString service; //!< Of messages that name none.
    bool isGroup = false;
    bool isDeleted = false; //!< The phone keeps all of its messages as deleted.
    qint64 lastDateMs = PhoneTime::kNoMs; //!< Since 1970, UTC.
    std::vector<qint64> messages; //!< ROWIDs, ascending.
    std::vector<qint64> deleted; //!< Those of them that are kept as deleted, ascending.
};

} // namespace PhoneBackup

#endif
