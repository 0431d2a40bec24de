#ifndef PHONEBACKUP_SOURCE_MESSAGEFILTER_H
#define PHONEBACKUP_SOURCE_MESSAGEFILTER_H

#include <QDateTime>
#include <QString>
#include <QStringList>

namespace PhoneBackup {

//! Which messages are wanted, of every kind of conversation. As it is made, all of them are.
struct MessageFilter
{
    QDateTime since; //!< The first moment that counts; invalid: from the beginning.
    QDateTime until; //!< The first moment that no longer counts; invalid: to the end.

    //! Part of the name of a conversation or of somebody in it (case does not matter), or a number
    //! or address of somebody in it, numbers compared as the address book does. A conversation that
    //! fits one of them is wanted; empty: all are.
    QStringList chats;

    bool isEmpty() const { return !since.isValid() && !until.isValid() && chats.isEmpty(); }

    //! Whether a message of this moment is wanted. What has no date is, unless a date is asked for.
    bool accepts(const QDateTime &date) const
    {
        if (!since.isValid() && !until.isValid())
            return true;
        return date.isValid() && (!since.isValid() || date >= since)
            && (!until.isValid() || date < until);
    }

    //! Whether a conversation that goes by \a names, or whose people do, is wanted; \a addresses
    //! are those of its people.
    bool accepts(const QStringList &names, const QStringList &addresses) const;
};

} // namespace PhoneBackup

#endif
