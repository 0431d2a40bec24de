#ifndef PLUGINS_HEIF_BOXREADER_H
#define PLUGINS_HEIF_BOXREADER_H

#include <QByteArrayView>

#include <optional>

//! The four letters that name a box as the number that stands in files.
constexpr quint32 fourcc(const char (&name)[5])
{
    quint32 code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<uchar>(name[i]);
    return code;
}

//! Takes bytes from the front; once there are too few, all is empty and zero.
class BoxReader
{
public:
    explicit BoxReader(QByteArrayView bytes)
        : m_bytes(bytes)
    {
    }
    bool isOk() const { return m_isOk; }
    bool hasMore() const { return m_isOk && !m_bytes.isEmpty(); }
    qsizetype left() const { return m_bytes.size(); }
    QByteArrayView take(quint64 size)
    {
        m_isOk = m_isOk && size <= static_cast<quint64>(m_bytes.size());
        const QByteArrayView taken =
            m_isOk ? m_bytes.first(static_cast<qsizetype>(size)) : QByteArrayView();
        m_bytes = m_isOk ? m_bytes.sliced(taken.size()) : QByteArrayView();
        return taken;
    }
    quint64 number(quint64 bytes)
    {
        quint64 value = 0;
        for (const char byte : take(bytes))
            value = value << 8 | static_cast<uchar>(byte);
        return value;
    }
    quint32 id(bool isLong) { return static_cast<quint32>(number(isLong ? 4 : 2)); }

private:
    QByteArrayView m_bytes;
    bool m_isOk = true;
};

//! A part of a file, which may hold others.
struct Box
{
    quint32 type;
    QByteArrayView content;
};

//! The box that \a reader stands at; none when it is broken.
inline std::optional<Box> nextBox(BoxReader &reader)
{
    quint64 size = reader.number(4);
    const auto type = static_cast<quint32>(reader.number(4));
    quint64 head = 8;
    if (size == 1) {
        size = reader.number(8);
        head = 16;
    }
    if (!reader.isOk() || size < head)
        return {};
    const Box box { type, reader.take(size - head) };
    return reader.isOk() ? std::optional(box) : std::nullopt;
}

//! What many boxes begin with.
struct BoxVersion
{
    explicit BoxVersion(BoxReader &reader)
        : number(static_cast<int>(reader.number(1)))
        , flags(static_cast<int>(reader.number(3)))
    {
    }
    int number;
    int flags;
};

//! A side as a file gives it: empty when it is beyond any picture.
inline int sideOf(quint64 length)
{
    return length <= 0xFFFF ? static_cast<int>(length) : 0;
}

#endif
