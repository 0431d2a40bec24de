#include "PhoneBackup/packed/FieldReader.h"

#include <bit>

namespace PhoneBackup {

namespace {

// What follows a field's key, in its lowest three bits.
enum class Wire : quint8 { Varint = 0, EightBytes = 1, Bytes = 2, FourBytes = 5 };

constexpr int kTypeBits = 3;
constexpr quint64 kTypeMask = 7;
constexpr quint64 kLargestKey = 0xFFFFFFFF; // numbers of fields have 29 bits

} // namespace

bool FieldReader::next()
{
    m_bytes = {};
    m_value = 0;
    m_isBytes = false;
    m_isReal = false;
    if (m_rest.isEmpty() || m_damaged)
        return false;
    quint64 key = 0;
    if (!readVarint(key) || key > kLargestKey || key >> kTypeBits == 0)
        return fail();
    m_number = quint32(key >> kTypeBits);
    switch (Wire(quint8(key & kTypeMask))) {
    case Wire::Varint:
        return readVarint(m_value) || fail();
    case Wire::EightBytes:
        return readFixed(8) || fail();
    case Wire::FourBytes:
        m_isReal = true;
        return readFixed(4) || fail();
    case Wire::Bytes:
        return readBytes() || fail();
    }
    return fail();
}

float FieldReader::real() const
{
    return m_isReal ? std::bit_cast<float>(quint32(m_value)) : 0;
}

bool FieldReader::readVarint(quint64 &value)
{
    constexpr int kMostBytes = 10;
    constexpr int kBitsAByte = 7;
    value = 0;
    for (int i = 0; i < kMostBytes && i < m_rest.size(); ++i) {
        const auto byte = uchar(m_rest[i]);
        value |= quint64(byte & 0x7FU) << (i * kBitsAByte); // what goes beyond 64 bits is dropped
        if ((byte & 0x80U) == 0) {
            m_rest = m_rest.sliced(i + 1);
            return true;
        }
    }
    return false;
}

bool FieldReader::readFixed(int size)
{
    if (m_rest.size() < size)
        return false;
    for (int i = 0; i < size; ++i)
        m_value |= quint64(uchar(m_rest[i])) << (i * 8);
    m_rest = m_rest.sliced(size);
    return true;
}

bool FieldReader::readBytes()
{
    quint64 size = 0;
    if (!readVarint(size) || size > quint64(m_rest.size()))
        return false;
    m_isBytes = true;
    m_bytes = m_rest.first(qsizetype(size));
    m_rest = m_rest.sliced(qsizetype(size));
    return true;
}

bool FieldReader::fail()
{
    m_damaged = true;
    m_bytes = {};
    m_value = 0;
    m_isBytes = false;
    m_isReal = false;
    return false;
}

bool FieldReader::isComplete(QByteArrayView message)
{
    FieldReader reader(message);
    while (reader.next()) { }
    return !message.isEmpty() && !reader.isDamaged();
}

QByteArrayView FieldReader::find(QByteArrayView message, std::initializer_list<quint32> path)
{
    for (const quint32 number : path) {
        FieldReader reader(message);
        bool found = false;
        while (!found && reader.next())
            found = reader.number() == number && reader.isBytes();
        if (!found)
            return {};
        message = reader.bytes();
    }
    return message;
}

quint64 FieldReader::value(QByteArrayView message, quint32 number, quint64 otherwise)
{
    FieldReader reader(message);
    while (reader.next()) {
        if (reader.number() == number && !reader.isBytes())
            return reader.value();
    }
    return otherwise;
}

} // namespace PhoneBackup
