#ifndef PHONEBACKUP_MESSAGES_CONVERSATION_H
#define PHONEBACKUP_MESSAGES_CONVERSATION_H

#include "PhoneBackup/base/PhoneTime.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <vector>

namespace PhoneBackup {

//! One conversation as the phone shows it: all chats with the same person or group.
struct Conversation
{
    //! A message that the phone keeps as deleted.
    struct Deleted
    {
        qint64 row;
        qint64 dateMs = PhoneTime::kNoMs; //!< When it was deleted, where that is known.

        friend bool operator<(const Deleted &a, const Deleted &b) { return a.row < b.row; }
        friend bool operator==(const Deleted &a, const Deleted &b) { return a.row == b.row; }
    };

    QString title; //!< What a group was called; empty for most.
    QStringList names; //!< Of the people in it, by the address book, else their addresses.
    QString identifier; //!< What the phone's database calls it: an address, or a word for a group.
    QStringList addresses; //!< Of everybody but the owner, as they are stored.
    QStringList ownAddresses; //!< Those by which the owner takes part.
    QString service; //!< Of messages that name none.
    QString pictureGuid; //!< Of the attachment that is the picture of a group.
    bool isGroup = false;
    bool isDeleted = false; //!< The phone keeps all of its messages as deleted.
    bool isNowhere = false; //!< Its messages belong to no conversation that the phone knows.
    qint64 lastDateMs = PhoneTime::kNoMs; //!< Since 1970, UTC.
    std::vector<qint64> messages; //!< ROWIDs, ascending.
    std::vector<Deleted> deleted; //!< Those of them that are kept as deleted, ascending.

    //! What the phone knows of the deletion of the message \a row; null for one that is there.
    const Deleted *deletion(qint64 row) const
    {
        const auto found = std::lower_bound(deleted.cbegin(), deleted.cend(), Deleted { row });
        return found != deleted.cend() && found->row == row ? &*found : nullptr;
    }
};

} // namespace PhoneBackup

#endif
