#include "export/JpegScans_p.h"

#include <QByteArray>
#include <QIODevice>

#include <algorithm>

namespace {

constexpr qint64 kChunkBytes = 16384;

enum Mark {
    Temporary = 0x01,
    FirstFrame = 0xC0,
    LastFrame = 0xCF,
    FirstRestart = 0xD0,
    LastRestart = 0xD7,
    ImageStart = 0xD8,
    ImageEnd = 0xD9,
    Scan = 0xDA,
};

class Reader
{
public:
    explicit Reader(QIODevice &source)
        : m_source(source)
    {
    }

    // -1 at the end.
    int next()
    {
        return m_at < m_chunk.size() || fill() ? static_cast<uchar>(m_chunk.at(m_at++)) : -1;
    }

    // The next mark, as a decoder looks for it: whatever else there is, it passes over.
    int nextMark()
    {
        int mark = 0;
        while (mark == 0 || mark == 0xFF || (mark >= FirstRestart && mark <= LastRestart)) {
            if (mark != 0xFF && !goBehind('\xFF'))
                return ImageEnd;
            mark = next();
        }
        return mark < 0 ? ImageEnd : mark;
    }

    // Of what follows; the file's number counts itself.
    qint64 length()
    {
        const int high = next();
        const int low = next();
        return low < 0 ? 0 : high * 0x100 + low - 2;
    }

    void skip(qint64 bytes)
    {
        while (bytes > 0 && (m_at < m_chunk.size() || fill())) {
            const qsizetype step = std::min<qsizetype>(bytes, m_chunk.size() - m_at);
            m_at += step;
            bytes -= step;
        }
    }

private:
    bool goBehind(char byte)
    {
        qsizetype found = -1;
        do {
            found = m_chunk.indexOf(byte, m_at);
        } while (found < 0 && fill());
        m_at = found + 1;
        return found >= 0;
    }
    bool fill()
    {
        m_chunk = m_source.read(kChunkBytes);
        m_at = 0;
        return !m_chunk.isEmpty();
    }

    QIODevice &m_source;
    QByteArray m_chunk;
    qsizetype m_at = 0;
};

bool isFrame(int mark)
{
    return mark == FirstFrame || (mark > FirstFrame && mark <= LastFrame && mark % 4 != 0);
}

bool isProgressive(int frame)
{
    return frame % 4 == 2;
}

bool hasContent(int mark)
{
    return mark != ImageStart && mark != Temporary;
}

} // namespace

bool JpegScans::areTooMany(qint64 pixels) const
{
    constexpr int kMaxScans = 200; // some ten are usual
    constexpr qint64 kMaxVisits = 1024LL * 1024 * 1024; // of pixels: some seconds
    return m_count > kMaxScans || pixels * m_count > kMaxVisits;
}

JpegScans JpegScans::read(QIODevice &source)
{
    const qint64 before = source.pos();
    JpegScans scans;
    Reader reader(source);
    const bool isJpeg = reader.next() == 0xFF && reader.next() == ImageStart;
    int frame = FirstFrame;
    int colours = 0;
    bool hasMore = isJpeg;
    while (hasMore) {
        const int mark = reader.nextMark();
        hasMore = mark != ImageEnd;
        if (!hasMore || !hasContent(mark))
            continue;
        qint64 left = reader.length();
        if (isFrame(mark)) {
            constexpr int kDepthAndSize = 5;
            reader.skip(kDepthAndSize);
            frame = mark;
            colours = reader.next();
            left -= kDepthAndSize + 1;
        } else if (mark == Scan) {
            const int coloursOfScan = reader.next();
            --left;
            scans.m_areHeldWhole =
                scans.m_areHeldWhole || isProgressive(frame) || coloursOfScan < colours;
            scans.m_count += scans.m_areHeldWhole ? 1 : 0;
            hasMore = scans.m_areHeldWhole;
        }
        reader.skip(left);
    }
    source.seek(before);
    return scans;
}
