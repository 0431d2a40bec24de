#include "PhoneBackup/plist/XmlPropertyList.h"

#include "PhoneBackup/plist/PropertyList.h"

#include <QBuffer>
#include <QDateTime>
#include <QXmlStreamReader>

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// The stream reader compares each attribute of a tag with all others, and so the time that a tag
// takes grows with the square of its length. Those of property lists have at most one attribute.
constexpr qsizetype kLongestTag = 4096;

// Behind the ">" that ends the tag at the beginning of \a text, or before the next "<", which
// cannot stand inside of one.
qsizetype tagLength(QByteArrayView text)
{
    char quote = 0;
    qsizetype length = 1;
    while (length < text.size() && length <= kLongestTag && text[length] != '<') {
        const char c = text[length++];
        if (quote)
            quote = c == quote ? '\0' : quote;
        else if (c == '"' || c == '\'')
            quote = c;
        else if (c == '>')
            break;
    }
    return length;
}

bool hasPlainTags(QByteArrayView data)
{
    for (qsizetype at = data.indexOf('<'); at >= 0; at = data.indexOf('<', at + 1)) {
        const QByteArrayView rest = data.sliced(at);
        if (rest.startsWith("<!ENTITY") || rest.startsWith("<!ATTLIST")
            || rest.startsWith("<!ELEMENT") || rest.startsWith("<!NOTATION"))
            return false;
        // Comments and the like have no attributes.
        if (!rest.startsWith("<!") && !rest.startsWith("<?") && tagLength(rest) > kLongestTag)
            return false;
    }
    return true;
}

// Programs write texts as they are, with control characters and broken letters, which XML forbids.
QByteArray wellFormed(const QByteArray &data)
{
    const auto isForbidden = [](char c) {
        return quint8(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
    };
    QByteArray text = data.isValidUtf8() ? data : QString::fromUtf8(data).toUtf8();
    if (std::any_of(text.cbegin(), text.cend(), isForbidden))
        std::replace_if(text.begin(), text.end(), isForbidden, ' ');
    return text;
}

class Reader
{
public:
    explicit Reader(const QByteArray &data)
    {
        m_buffer.setData(data);
        // A device is decoded in pieces; an array is once more held as a whole.
        m_buffer.open(QIODevice::ReadOnly);
        m_xml.setDevice(&m_buffer);
        m_xml.setNamespaceProcessing(false);
    }

    QVariant read()
    {
        if (!m_xml.readNextStartElement() || m_xml.name() != "plist"_L1
            || !m_xml.readNextStartElement())
            return {};
        const QVariant root = value(1);
        const bool hasAnother = m_xml.readNextStartElement();
        return hasAnother || m_xml.hasError() ? QVariant() : root;
    }

private:
    // The value whose start was read last.
    QVariant value(int level)
    {
        if (level > PropertyList::kMaxDepth || ++m_nodes > PropertyList::kMaxNodes)
            return refuse();
        const QString name = m_xml.name().toString();
        if (name == "dict"_L1)
            return dict(level);
        if (name == "array"_L1)
            return array(level);
        const QString text = m_xml.readElementText();
        if (name == "string"_L1)
            return text;
        if (name == "integer"_L1)
            return integer(text.trimmed());
        if (name == "data"_L1)
            return QByteArray::fromBase64(text.toLatin1());
        if (name == "date"_L1)
            return date(text.trimmed());
        if (name == "real"_L1)
            return real(text.trimmed());
        if (name == "true"_L1 || name == "false"_L1)
            return name == "true"_L1;
        return refuse();
    }

    QVariant dict(int level)
    {
        QVariantMap map;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() != "key"_L1)
                return refuse();
            const QString key = m_xml.readElementText();
            if (!m_xml.readNextStartElement())
                return refuse();
            map.insert(key, value(level + 1));
        }
        return map;
    }

    QVariant array(int level)
    {
        QVariantList list;
        while (m_xml.readNextStartElement())
            list.append(value(level + 1));
        return list;
    }

    // Decimal, or hexadecimal with 0x before it.
    static QVariant integer(const QString &text)
    {
        constexpr int kDetectBase = 0;
        const int base = text.contains(u'x', Qt::CaseInsensitive) ? kDetectBase : 10;
        bool ok = false;
        const qint64 number = text.toLongLong(&ok, base);
        if (ok)
            return number;
        const quint64 large = text.toULongLong(&ok, base);
        return ok ? QVariant(large) : QVariant();
    }

    static QVariant date(const QString &text)
    {
        QDateTime date = QDateTime::fromString(text, Qt::ISODate);
        date.setTimeSpec(Qt::UTC);
        return date;
    }

    static QVariant real(const QString &text)
    {
        bool ok = false;
        const double number = text.toDouble(&ok);
        return ok ? QVariant(number) : QVariant();
    }

    QVariant refuse()
    {
        m_xml.raiseError();
        return {};
    }

    QBuffer m_buffer;
    QXmlStreamReader m_xml;
    int m_nodes = 0;
};

} // namespace

QVariant readXmlPropertyList(const QByteArray &data)
{
    // Without a NUL it is in no encoding in which tags look otherwise.
    if (data.contains('\0') || !hasPlainTags(data))
        return {};
    return Reader(wellFormed(data)).read();
}

} // namespace PhoneBackup
