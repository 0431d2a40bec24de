#include "PhoneBackup/plist/TypedStream.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace PhoneBackup {

namespace {

constexpr uchar kShort = 0x81;
constexpr uchar kLong = 0x82;
constexpr uchar kReal = 0x83;
constexpr uchar kNew = 0x84;
constexpr uchar kNilMark = 0x85;
constexpr uchar kEnd = 0x86;
constexpr uchar kLongLong = 0x87;
constexpr uchar kFirstSmall = 0x92;
constexpr int kReferenceBase = 110;
constexpr int kMaxDepth = 64;
constexpr qsizetype kMaxTypes = 256; // in one group; they are looked at anew each time
constexpr qsizetype kMaxEntries = 1 << 16; // of the tables of objects and of strings
constexpr qint64 kSystemVersion = 1000;

qint64 littleEndian(QByteArrayView bytes)
{
    quint64 value = 0;
    for (qsizetype i = bytes.size() - 1; i >= 0; --i)
        value = (value << 8) | uchar(bytes[i]);
    return qint64(value);
}

TypedStream::Object::Kind kindOfClass(QByteArrayView name)
{
    using Kind = TypedStream::Object::Kind;
    if (name == "NSString" || name == "NSMutableString")
        return Kind::String;
    if (name == "NSDictionary" || name == "NSMutableDictionary")
        return Kind::Dictionary;
    if (name == "NSAttributedString" || name == "NSMutableAttributedString")
        return Kind::Attributed;
    if (name == "NSNumber")
        return Kind::Number;
    return name == "NSURL" ? Kind::Url : Kind::Unknown;
}

// The names that the phone's message app gives its attributes.
std::optional<TypedStream::Attribute::Key> attributeKey(QByteArrayView name)
{
    using Key = TypedStream::Attribute::Key;
    if (name == "__kIMFileTransferGUIDAttributeName")
        return Key::File;
    if (name == "IMAudioTranscription")
        return Key::Transcription;
    if (name == "__kIMLinkAttributeName")
        return Key::Link;
    if (name == "__kIMMentionConfirmedMention")
        return Key::Mention;
    if (name == "__kIMInlineMediaWidthAttributeName")
        return Key::Width;
    return name == "__kIMInlineMediaHeightAttributeName" ? std::optional(Key::Height)
                                                         : std::nullopt;
}

// The nearest whole number; 0 for one that fits nowhere.
qint64 rounded(double value)
{
    constexpr double kLimit = 1e15;
    return value > -kLimit && value < kLimit ? std::llround(value) : 0;
}

} // namespace

struct TypedStream::Assembly
{
    Index self;
    Object::Kind kind;
    int objectsTaken = 0;
    Index key = kNil; // of a dictionary: the key whose value comes next
    bool setExpected = false; // of an attributed string: a new set of attributes comes next
};

TypedStream::TypedStream(QByteArrayView data)
    : m_next(reinterpret_cast<const uchar *>(data.data()))
    , m_end(m_next + data.size())
    , m_valuesLeft(data.size())
{
}

bool TypedStream::readHeader()
{
    constexpr QByteArrayView kMagic("\x04\x0bstreamtyped");
    if (takeBytes(kMagic.size()) != kMagic || readInteger(true) != kSystemVersion)
        fail();
    return !m_bad;
}

TypedStream::Index TypedStream::readRoot()
{
    Index root = kNil;
    if (readString() == "@")
        root = readObject(0);
    else
        fail();
    return m_bad ? kNil : root;
}

const TypedStream::Object &TypedStream::object(Index index) const
{
    static const Object kNothing;
    return index >= 0 && index < m_objects.size() ? m_objects[index] : kNothing;
}

void TypedStream::fail()
{
    m_bad = true;
    m_next = m_end;
}

uchar TypedStream::take()
{
    if (m_next < m_end)
        return *m_next++;
    fail();
    return kEnd;
}

bool TypedStream::isAtMark(uchar mark) const
{
    return m_next < m_end && *m_next == mark;
}

QByteArrayView TypedStream::takeBytes(qint64 count)
{
    if (count < 0 || count > m_end - m_next) {
        fail();
        return {};
    }
    const QByteArrayView bytes(m_next, qsizetype(count));
    m_next += count;
    return bytes;
}

qint64 TypedStream::readInteger(bool isUnsigned)
{
    return integerAfter(take(), isUnsigned);
}

qint64 TypedStream::integerAfter(uchar first, bool isUnsigned)
{
    switch (first) {
    case kShort: {
        const qint64 value = littleEndian(takeBytes(2));
        return isUnsigned ? value : qint16(value);
    }
    case kLong: {
        const qint64 value = littleEndian(takeBytes(4));
        return isUnsigned ? value : qint32(value);
    }
    case kLongLong:
        return littleEndian(takeBytes(8));
    default:
        break;
    }
    if (first < kShort)
        return first == 0x80 ? (fail(), 0) : first;
    if (first < kFirstSmall) {
        fail();
        return 0;
    }
    return isUnsigned ? first : qint64(first) - 256;
}

int TypedStream::reference(uchar first, qsizetype tableSize)
{
    const qint64 index = integerAfter(first, false) + kReferenceBase;
    if (m_bad || index < 0 || index >= tableSize) {
        fail();
        return kNil;
    }
    return int(index);
}

QByteArrayView TypedStream::readString()
{
    const uchar first = take();
    if (first == kNilMark || m_bad)
        return {};
    if (first == kNew) {
        const QByteArrayView bytes = takeBytes(readInteger(true));
        if (m_strings.size() >= kMaxEntries)
            fail();
        if (!m_bad)
            m_strings.append(bytes);
        return bytes;
    }
    const int index = reference(first, m_strings.size());
    return index == kNil ? QByteArrayView() : m_strings[index];
}

TypedStream::Index TypedStream::addObject()
{
    if (m_objects.size() < kMaxEntries)
        m_objects.append(Object());
    else
        fail(); // what is then written over the last one is seen by nobody
    return Index(m_objects.size()) - 1;
}

TypedStream::Index TypedStream::readObject(int depth)
{
    const uchar first = take();
    if (first == kNilMark || m_bad)
        return kNil;
    if (first != kNew) {
        const Index index = reference(first, m_objects.size());
        if (index != kNil && m_objects[index].kind == Object::Kind::Class)
            fail();
        return m_bad ? kNil : index;
    }
    if (depth >= kMaxDepth) {
        fail();
        return kNil;
    }
    const Index self = addObject();
    const Index type = readClass(depth);
    Assembly assembly { self, kindOfClass(object(type).text) };
    m_objects[self].kind = assembly.kind;
    while (!m_bad && !isAtMark(kEnd))
        readGroup(depth + 1, assembly);
    take();
    return m_bad ? kNil : self;
}

TypedStream::Index TypedStream::readClass(int depth)
{
    const uchar first = take();
    if (first == kNilMark || m_bad)
        return kNil;
    if (first != kNew) {
        const Index index = reference(first, m_objects.size());
        if (index != kNil && m_objects[index].kind != Object::Kind::Class)
            fail();
        return m_bad ? kNil : index;
    }
    if (depth >= kMaxDepth) {
        fail();
        return kNil;
    }
    const Index self = addObject();
    m_objects[self].kind = Object::Kind::Class;
    m_objects[self].text = readString();
    readInteger(true); // its version
    readClass(depth + 1); // its superclass
    return m_bad ? kNil : self;
}

TypedStream::Index TypedStream::readCString()
{
    const uchar first = take();
    if (first == kNilMark || m_bad)
        return kNil;
    if (first != kNew)
        return reference(first, m_objects.size());
    const Index self = addObject();
    m_objects[self].text = readString();
    return m_bad ? kNil : self;
}

void TypedStream::readGroup(int depth, Assembly &assembly)
{
    const QByteArrayView types = readString();
    if (types.isEmpty() || types.size() > kMaxTypes)
        return fail();
    Value first;
    Value second;
    QByteArrayView left = readValue(types, depth, first);
    if (!left.isEmpty())
        left = readValue(left, depth, second);
    while (!left.isEmpty()) {
        Value ignored;
        left = readValue(left, depth, ignored);
    }
    if (!m_bad)
        take(assembly, types, first, second);
}

QByteArrayView TypedStream::readValue(QByteArrayView types, int depth, Value &value)
{
    if (m_bad || types.isEmpty() || depth > kMaxDepth || --m_valuesLeft < 0) {
        fail();
        return {};
    }
    switch (types.front()) {
    case '@':
        value.object = readObject(depth);
        break;
    case '+':
        value.bytes = takeBytes(readInteger(true));
        break;
    case '*':
        value.object = readCString();
        break;
    case 'c':
    case 'C':
    case 'B':
        value.integer = take();
        break;
    case 's':
    case 'i':
    case 'l':
    case 'q':
        value.integer = readInteger(false);
        break;
    case 'S':
    case 'I':
    case 'L':
    case 'Q':
        value.integer = readInteger(true);
        break;
    case 'f':
        value.integer = readReal(4);
        break;
    case 'd':
        value.integer = readReal(8);
        break;
    case '#':
        readClass(depth);
        break;
    case ':':
    case '%':
        readString();
        break;
    case '[':
        return readArray(types.sliced(1), depth + 1);
    case '{':
        return readStruct(types.sliced(1), depth + 1);
    default:
        fail();
        return {};
    }
    return types.sliced(1);
}

QByteArrayView TypedStream::readArray(QByteArrayView types, int depth)
{
    qint64 count = 0;
    while (!types.isEmpty() && types.front() >= '0' && types.front() <= '9') {
        count = std::min<qint64>(count * 10 + (types.front() - '0'), m_valuesLeft + 1);
        types = types.sliced(1);
    }
    if (types.size() >= 2 && (types[0] == 'c' || types[0] == 'C') && types[1] == ']') {
        takeBytes(count);
        return types.sliced(2);
    }
    QByteArrayView left;
    for (qint64 i = 0; i < count && !m_bad; ++i) {
        Value ignored;
        left = readValue(types, depth, ignored);
    }
    // An array of nothing would have to be parsed for its length; writers leave it out.
    if (m_bad || count == 0 || left.isEmpty() || left.front() != ']') {
        fail();
        return {};
    }
    return left.sliced(1);
}

QByteArrayView TypedStream::readStruct(QByteArrayView types, int depth)
{
    const qsizetype equals = types.indexOf('=');
    if (equals < 0) {
        fail();
        return {};
    }
    types = types.sliced(equals + 1);
    while (!m_bad && !types.isEmpty() && types.front() != '}') {
        Value ignored;
        types = readValue(types, depth, ignored);
    }
    if (m_bad || types.isEmpty()) {
        fail();
        return {};
    }
    return types.sliced(1);
}

qint64 TypedStream::readReal(qint64 size)
{
    if (!isAtMark(kReal))
        return readInteger(false);
    take();
    const QByteArrayView bytes = takeBytes(size);
    if (m_bad)
        return 0;
    const auto bits = quint64(littleEndian(bytes));
    if (size == 4) {
        const auto half = quint32(bits);
        float value = 0;
        std::memcpy(&value, &half, sizeof value);
        return rounded(double(value));
    }
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return rounded(value);
}

void TypedStream::take(Assembly &assembly,
                       QByteArrayView types,
                       const Value &value,
                       const Value &second)
{
    if (types == "@") {
        takeObject(assembly, value.object);
    } else if (types == "+" && assembly.kind == Object::Kind::String) {
        m_objects[assembly.self].text = value.bytes;
    } else if (assembly.kind == Object::Kind::Number && types.size() == 1) {
        m_objects[assembly.self].number = value.integer; // behind the letter of its type
    } else if (types == "iI" && assembly.kind == Object::Kind::Attributed && assembly.self == 0) {
        const qint64 number = value.integer;
        if (number < 1 || number > m_sets.size() + 1)
            return fail();
        if (number <= m_sets.size()) {
            m_runs.append({ second.integer, m_sets[qsizetype(number) - 1] });
        } else {
            m_runs.append({ second.integer, kNil });
            assembly.setExpected = true;
        }
    }
}

void TypedStream::takeObject(Assembly &assembly, Index index)
{
    const int position = assembly.objectsTaken++;
    if (assembly.kind == Object::Kind::Attributed && assembly.self == 0) {
        if (position == 0) {
            m_string = index;
        } else if (assembly.setExpected) {
            assembly.setExpected = false;
            m_sets.append(index);
            m_runs.back().attributes = index;
        }
    } else if (assembly.kind == Object::Kind::Dictionary) {
        if (position % 2 == 0) {
            assembly.key = index;
            return;
        }
        if (const auto key = attributeKey(object(assembly.key).text))
            m_attributes.append({ assembly.self, *key, index });
    } else if (assembly.kind == Object::Kind::Url) {
        m_objects[assembly.self].text = object(index).text; // the last: a base goes before it
    }
}

std::optional<QByteArrayView> TypedStream::lengthAndBytes(QByteArrayView data)
{
    TypedStream stream(data);
    const QByteArrayView bytes = stream.takeBytes(stream.readInteger(true));
    return stream.isBad() ? std::nullopt : std::optional(bytes);
}

} // namespace PhoneBackup
