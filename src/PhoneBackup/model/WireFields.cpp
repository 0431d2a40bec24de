#include "model/WireFields.h"

namespace PhoneBackup::WireFields {

namespace {

enum WireType : quint64 { Varint = 0, Fixed64 = 1, Bytes = 2, Fixed32 = 5 };

// Takes a number off the front. false: it is cut off, or longer than any.
bool takeVarint(QByteArrayView &rest, quint64 &value)
{
    constexpr int maxBytes = 10;
    constexpr int bitsPerByte = 7;
    value = 0;
    for (int i = 0; i < maxBytes && i < rest.size(); ++i) {
        const auto byte = static_cast<uchar>(rest[i]);
        value |= quint64(byte & 0x7fU) << (i * bitsPerByte);
        if ((byte & 0x80U) == 0) {
            rest = rest.sliced(i + 1);
            return true;
        }
    }
    return false;
}

struct Field
{
    quint64 number;
    QByteArrayView bytes; // null unless it holds bytes
};

// Takes a field off the front.
bool takeField(QByteArrayView &rest, Field &field)
{
    quint64 tag = 0;
    if (!takeVarint(rest, tag))
        return false;
    field = { tag >> 3U, {} };
    if (field.number == 0)
        return false;
    quint64 value = 0;
    const auto skip = [&rest](quint64 count) {
        if (count > quint64(rest.size()))
            return false;
        rest = rest.sliced(qsizetype(count));
        return true;
    };
    switch (tag & 7U) {
    case Varint:
        return takeVarint(rest, value);
    case Fixed64:
        return skip(8);
    case Fixed32:
        return skip(4);
    case Bytes: {
        if (!takeVarint(rest, value))
            return false;
        const QByteArrayView from = rest;
        if (!skip(value))
            return false;
        field.bytes = from.first(qsizetype(value));
        return true;
    }
    default:
        return false;
    }
}

} // namespace

bool areComplete(QByteArrayView record)
{
    if (record.isEmpty())
        return false;
    Field field {};
    while (!record.isEmpty()) {
        if (!takeField(record, field))
            return false;
    }
    return true;
}

QByteArrayView bytes(QByteArrayView record, quint64 number)
{
    Field field {};
    while (!record.isEmpty() && takeField(record, field)) {
        if (field.number == number && !field.bytes.isNull())
            return field.bytes;
    }
    return {};
}

} // namespace PhoneBackup::WireFields
