#ifndef PHONEBACKUP_PACKED_FIELDREADER_H
#define PHONEBACKUP_PACKED_FIELDREADER_H

#include <QByteArrayView>
#include <QString>

#include <initializer_list>

namespace PhoneBackup {

/*!
    \brief Walks the fields of one protobuf message from front to back.

    Fields that a caller does not know are passed over by their wire type. The first byte that
    belongs to no field ends the walk for good: what was read before it counts.
    \par Bytes
    Untrusted: nothing is read beyond them, and nothing is kept. The data must outlive the reader
    and the views that it gives. Time is linear.
*/
class FieldReader
{
public:
    explicit FieldReader(QByteArrayView message)
        : m_rest(message)
    {
    }

    //! Goes to the next field. \return false at the end, and where the message is damaged.
    bool next();

    //! Whether next() stopped before the end of the message.
    bool isDamaged() const { return m_damaged; }

    //! Number of the field, at least 1.
    quint32 number() const { return m_number; }

    //! Whether the field holds bytes: a text or a message.
    bool isBytes() const { return m_isBytes; }

    //! The bytes of the field, empty for a number.
    QByteArrayView bytes() const { return m_bytes; }

    //! The value of the field, 0 when it holds bytes.
    quint64 value() const { return m_value; }

    //! The value of a field of four bytes, such as a part of a colour; 0 for any other.
    float real() const;

    //! Whether \a message, which is not empty, consists of whole fields from beginning to end.
    static bool isComplete(QByteArrayView message);

    //! The message or text at the end of \a path, a field number a level; null when there is none.
    static QByteArrayView find(QByteArrayView message, std::initializer_list<quint32> path);

    //! The text at the end of \a path; empty when there is none.
    static QString text(QByteArrayView message, std::initializer_list<quint32> path)
    {
        return QString::fromUtf8(find(message, path));
    }

    //! Calls \a take with the bytes of each field \a number of \a message, in their order.
    template <typename Take>
    static void forEach(QByteArrayView message, quint32 number, const Take &take)
    {
        FieldReader reader(message);
        while (reader.next()) {
            if (reader.number() == number && reader.isBytes())
                take(reader.bytes());
        }
    }

    //! The first number in field \a number of \a message, \a otherwise when there is none.
    static quint64 value(QByteArrayView message, quint32 number, quint64 otherwise = 0);

private:
    bool readVarint(quint64 &value);
    bool readFixed(int size);
    bool readBytes();
    bool fail();

    QByteArrayView m_rest;
    QByteArrayView m_bytes;
    quint64 m_value = 0;
    quint32 m_number = 0;
    bool m_isBytes = false;
    bool m_isReal = false; // four bytes
    bool m_damaged = false;
};

} // namespace PhoneBackup

#endif
