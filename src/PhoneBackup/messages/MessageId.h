#ifndef PHONEBACKUP_MESSAGES_MESSAGEID_H
#define PHONEBACKUP_MESSAGES_MESSAGEID_H

#include <QByteArrayView>
#include <QHashFunctions>
#include <QString>

namespace PhoneBackup {

/*!
    \brief The GUID by which a phone names a message, in 16 bytes.

    Nearly all are UUIDs in capital letters, which text() gives back. Of others this is a digest,
    which tells them apart but does not give them back.
*/
struct MessageId
{
    quint64 high = 0;
    quint64 low = 0;

    //! That of \a guid, \a isUuid telling whether text() is equal to it. Null for an empty one.
    static MessageId of(QByteArrayView guid, bool *isUuid = nullptr);

    bool isNull() const { return high == 0 && low == 0; }

    //! The UUID.
    QString text() const;

    friend bool operator==(MessageId a, MessageId b) { return a.high == b.high && a.low == b.low; }
    friend size_t qHash(MessageId id, size_t seed = 0) { return ::qHash(id.high ^ id.low, seed); }
};

} // namespace PhoneBackup

#endif
