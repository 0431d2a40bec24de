#ifndef SAMPLE_BOXWRITER_H
#define SAMPLE_BOXWRITER_H

#include <QByteArray>
#include <QList>

namespace Sample {

//! The bytes of a QuickTime or MP4 file: big-endian fields in nested boxes.
class BoxWriter
{
public:
    void begin(const char *type);
    //! As begin(), with the version and flags that many boxes start with.
    void beginFull(const char *type, quint8 version = 0, quint32 flags = 0);
    //! Closes the box begun last and notes its size.
    void end();

    void put8(quint8 value) { m_bytes.append(static_cast<char>(value)); }
    void put16(quint16 value);
    void put32(quint32 value);
    void put(const QByteArray &bytes) { m_bytes.append(bytes); }
    void zeros(qsizetype count) { m_bytes.append(count, '\0'); }
    //! The nine numbers that leave a picture as it is.
    void putIdentityMatrix();

    qsizetype size() const { return m_bytes.size(); }
    const QByteArray &bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
    QList<qsizetype> m_starts;
};

} // namespace Sample

#endif
