#include "sample/TypedStream.h"

#include <QHash>

namespace Sample {

namespace {

constexpr char kNew = '\x84';
constexpr char kNil = '\x85';
constexpr char kEnd = '\x86';
constexpr char kSixteenBits = '\x81';
constexpr char kThirtyTwoBits = '\x82';
constexpr qint64 kSystemVersion = 1000;
constexpr int kFirstReference = -110;

struct ClassName
{
    const char *name;
    int version;
};

// Each class with those above it.
constexpr ClassName kAttributedString[] = { { "NSAttributedString", 0 }, { "NSObject", 0 } };
constexpr ClassName kMutableAttributedString[] = { { "NSMutableAttributedString", 0 },
                                                   { "NSAttributedString", 0 },
                                                   { "NSObject", 0 } };
constexpr ClassName kString[] = { { "NSString", 1 }, { "NSObject", 0 } };
constexpr ClassName kMutableString[] = { { "NSMutableString", 1 },
                                         { "NSString", 1 },
                                         { "NSObject", 0 } };
constexpr ClassName kDictionary[] = { { "NSDictionary", 0 }, { "NSObject", 0 } };
constexpr ClassName kNumber[] = { { "NSNumber", 0 }, { "NSValue", 0 }, { "NSObject", 0 } };
constexpr ClassName kUrl[] = { { "NSURL", 0 }, { "NSObject", 0 } };

//! Writes values in groups, each text and each object only the first time, a reference later.
class StreamWriter
{
public:
    StreamWriter()
    {
        m_bytes.reserve(320);
        m_bytes.append("\x04\x0bstreamtyped", 13);
        integer(kSystemVersion);
    }

    QByteArray take() { return std::move(m_bytes); }

    void integer(qint64 value)
    {
        if (value >= kFirstReference && value <= 127) {
            m_bytes.append(static_cast<char>(value));
        } else if (value >= -0x8000 && value <= 0x7fff) {
            m_bytes.append(kSixteenBits);
            littleEndian(value, 2);
        } else {
            m_bytes.append(kThirtyTwoBits);
            littleEndian(value, 4);
        }
    }

    void rawByte(char byte) { m_bytes.append(byte); }

    void lengthAndBytes(const QByteArray &bytes)
    {
        integer(bytes.size());
        m_bytes.append(bytes);
    }

    //! Begins a group of values of \a types.
    void group(const char *types)
    {
        sharedString(QByteArray::fromRawData(types, qsizetype(qstrlen(types))));
    }

    void cString(const char *text)
    {
        const QByteArray key = QByteArrayLiteral("*") + text;
        if (refer(m_objects, key))
            return;
        m_bytes.append(kNew);
        remember(m_objects, key, m_objectCount);
        group(text);
    }

    template <std::size_t n>
    void open(const ClassName (&chain)[n])
    {
        m_bytes.append(kNew);
        ++m_objectCount;
        for (const ClassName &link : chain) {
            const QByteArray key = QByteArrayLiteral("#") + link.name;
            if (refer(m_objects, key))
                return;
            m_bytes.append(kNew);
            group(link.name);
            integer(link.version);
            remember(m_objects, key, m_objectCount);
        }
        m_bytes.append(kNil);
    }

    void close() { m_bytes.append(kEnd); }

    //! The names of attributes are written once and referred to later.
    void attributeName(const char *name)
    {
        group("@");
        const QByteArray key = QByteArrayLiteral("@") + name;
        if (refer(m_objects, key))
            return;
        remember(m_objects, key, m_objectCount);
        --m_objectCount; // open() counts the same object
        open(kString);
        group("+");
        lengthAndBytes(name);
        close();
    }

    void string(const QString &text)
    {
        open(kString);
        group("+");
        lengthAndBytes(text.toUtf8());
        close();
    }

private:
    using Table = QHash<QByteArray, int>;

    bool refer(const Table &table, const QByteArray &key)
    {
        const auto found = table.constFind(key);
        if (found == table.cend())
            return false;
        integer(kFirstReference + *found);
        return true;
    }

    static void remember(Table &table, const QByteArray &key, int &count)
    {
        table.insert(key, count++);
    }

    void sharedString(const QByteArray &text)
    {
        if (refer(m_strings, text))
            return;
        m_bytes.append(kNew);
        lengthAndBytes(text);
        remember(m_strings, text, m_stringCount);
    }

    void littleEndian(qint64 value, int count)
    {
        for (int i = 0; i < count; ++i)
            m_bytes.append(static_cast<char>(value >> (8 * i)));
    }

    QByteArray m_bytes;
    Table m_strings;
    Table m_objects;
    int m_stringCount = 0;
    int m_objectCount = 0;
};

void writeNumber(StreamWriter &out, int value)
{
    out.group("@");
    out.open(kNumber);
    out.group("*");
    out.cString("i");
    out.group("i");
    out.integer(value);
    out.close();
}

void writeText(StreamWriter &out, const QString &text)
{
    out.group("@");
    out.string(text);
}

void writeAttributes(StreamWriter &out, const TextRun &run)
{
    out.group("@");
    out.open(kDictionary);
    out.group("i");
    const int optional = int(!run.attachmentGuid.isEmpty()) + int(!run.link.isEmpty())
        + int(!run.mention.isEmpty()) + int(!run.transcription.isEmpty());
    out.integer(1 + optional);
    if (!run.attachmentGuid.isEmpty()) {
        out.attributeName("__kIMFileTransferGUIDAttributeName");
        writeText(out, run.attachmentGuid);
    }
    if (!run.link.isEmpty()) {
        out.attributeName("__kIMLinkAttributeName");
        out.group("@");
        out.open(kUrl);
        out.group("c");
        out.rawByte('\0');
        writeText(out, run.link);
        out.close();
    }
    if (!run.mention.isEmpty()) {
        out.attributeName("__kIMMentionConfirmedMention");
        writeText(out, run.mention);
    }
    if (!run.transcription.isEmpty()) {
        out.attributeName("IMAudioTranscription");
        writeText(out, run.transcription);
    }
    out.attributeName("__kIMMessagePartAttributeName");
    writeNumber(out, run.part);
    out.close();
}

bool sameAttributes(const TextRun &left, const TextRun &right)
{
    return left.part == right.part && left.attachmentGuid == right.attachmentGuid
        && left.link == right.link && left.mention == right.mention
        && left.transcription == right.transcription;
}

} // namespace

QByteArray attributedBody(const QString &text, const QList<TextRun> &runs)
{
    const QList<TextRun> all =
        runs.isEmpty() ? QList<TextRun> { { text.size(), 0, {}, {}, {} } } : runs;
    StreamWriter out;
    out.group("@");
    // The phone builds what has files in it step by step, in the classes that can be changed.
    const bool isBuilt = all.size() > 1;
    if (isBuilt)
        out.open(kMutableAttributedString);
    else
        out.open(kAttributedString);
    out.group("@");
    if (isBuilt)
        out.open(kMutableString);
    else
        out.open(kString);
    out.group("+");
    out.lengthAndBytes(text.toUtf8());
    out.close();

    QList<TextRun> sets;
    for (const TextRun &run : all) {
        qsizetype number = 0;
        while (number < sets.size() && !sameAttributes(sets[number], run))
            ++number;
        out.group("iI");
        out.integer(number + 1);
        out.integer(run.lengthUtf16);
        if (number == sets.size()) {
            sets.append(run);
            writeAttributes(out, run);
        }
    }
    out.close();
    return out.take();
}

} // namespace Sample
