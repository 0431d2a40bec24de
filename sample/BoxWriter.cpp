#include "sample/BoxWriter.h"

#include <QtEndian>

namespace Sample {

void BoxWriter::begin(const char *type)
{
    m_starts.append(m_bytes.size());
    put32(0);
    m_bytes.append(type, 4);
}

void BoxWriter::beginFull(const char *type, quint8 version, quint32 flags)
{
    begin(type);
    put32(static_cast<quint32>(version) << 24 | flags);
}

void BoxWriter::end()
{
    const qsizetype start = m_starts.takeLast();
    qToBigEndian(static_cast<quint32>(m_bytes.size() - start), m_bytes.data() + start);
}

void BoxWriter::put16(quint16 value)
{
    const qsizetype at = m_bytes.size();
    m_bytes.resize(at + 2);
    qToBigEndian(value, m_bytes.data() + at);
}

void BoxWriter::put32(quint32 value)
{
    const qsizetype at = m_bytes.size();
    m_bytes.resize(at + 4);
    qToBigEndian(value, m_bytes.data() + at);
}

void BoxWriter::putIdentityMatrix()
{
    for (const quint32 value : { 0x10000U, 0U, 0U, 0U, 0x10000U, 0U, 0U, 0U, 0x40000000U })
        put32(value);
}

} // namespace Sample
