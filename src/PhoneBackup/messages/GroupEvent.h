#ifndef PHONEBACKUP_MESSAGES_GROUPEVENT_H
#define PHONEBACKUP_MESSAGES_GROUPEVENT_H

#include <QString>

namespace PhoneBackup {

//! Something that happened to a conversation. Who did it and when are the row's own.
struct GroupEvent
{
    enum class Kind : quint8 {
        Added, //!< The other person.
        Removed, //!< The other person.
        ChangedNumber, //!< Its own.
        Named,
        NameRemoved,
        Left,
        PhotoChanged,
        PhotoRemoved,
        BackgroundChanged,
        BackgroundRemoved,
        Changed, //!< In some other way.
        LocationShared,
        LocationHidden,
        AudioKept,
        CallStarted,
        Unknown, //!< See type.
    };

    Kind kind = Kind::Unknown;
    qint64 type = 0; //!< The number by which the database tells events apart.
    QString title; //!< The new name of the conversation.
    const QString *other = nullptr; //!< Address; null when it is not known.

    //! The kind of an event with these columns; \a isOneself: who did it is the other.
    static Kind
    kindOf(qint64 itemType, qint64 groupAction, qint64 shareStatus, bool hasTitle, bool isOneself);
};

} // namespace PhoneBackup

#endif
