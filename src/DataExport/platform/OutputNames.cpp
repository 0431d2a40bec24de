#include "platform/OutputNames.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaxExtensionBytes = 32;
constexpr QLatin1StringView kForbidden = "/\\:\"*?<>|"_L1;

qsizetype utf8Size(QStringView text)
{
    qsizetype size = 0;
    for (const QChar c : text) {
        // A pair of surrogates makes 4 bytes, each half its share.
        size += c.unicode() < 0x80 ? 1 : c.unicode() < 0x800 ? 2 : c.isSurrogate() ? 2 : 3;
    }
    return size;
}

// The longest beginning of \a text within \a bytes that does not end inside a character.
QStringView cut(QStringView text, qsizetype bytes)
{
    qsizetype size = 0;
    qsizetype end = 0;
    while (end < text.size()) {
        const qsizetype step = text[end].isHighSurrogate() && end + 1 < text.size() ? 2 : 1;
        size += utf8Size(text.sliced(end, step));
        if (size > bytes)
            break;
        end += step;
    }
    return text.first(end);
}

bool isControl(char32_t c)
{
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029;
}

// Marks that would show a name in another order than it has ("gpj.exe" as "exe.jpg"), and the
// byte-order mark.
bool isInvisible(char32_t c)
{
    return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF;
}

bool isDotOrSpace(QChar c)
{
    return c == u'.' || c.isSpace();
}

QStringView trimmedEnd(QStringView text)
{
    while (!text.isEmpty() && isDotOrSpace(text.back()))
        text.chop(1);
    return text;
}

QStringView trimmedStart(QStringView text)
{
    while (!text.isEmpty() && isDotOrSpace(text.front()))
        text = text.sliced(1);
    return text;
}

QString replaced(const QString &name)
{
    QString result;
    result.reserve(name.size());
    for (qsizetype i = 0; i < name.size(); ++i) {
        const QChar c = name[i];
        if (c.isHighSurrogate() && i + 1 < name.size() && name[i + 1].isLowSurrogate()) {
            result.append(c);
            result.append(name[++i]);
        } else if (c.isSurrogate() || isControl(c.unicode()) || kForbidden.contains(c)) {
            result.append(u'_');
        } else if (!isInvisible(c.unicode())) {
            result.append(c);
        }
    }
    return result;
}

bool isDeviceName(QStringView name)
{
    static constexpr std::array<QLatin1StringView, 6> kNames {
        "con"_L1, "prn"_L1, "aux"_L1, "nul"_L1, "conin$"_L1, "conout$"_L1
    };
    const auto isNamed = [name](QLatin1StringView device) {
        return name.compare(device, Qt::CaseInsensitive) == 0;
    };
    if (std::any_of(kNames.begin(), kNames.end(), isNamed))
        return true;
    if (name.size() != 4
        || (!name.startsWith("com"_L1, Qt::CaseInsensitive)
            && !name.startsWith("lpt"_L1, Qt::CaseInsensitive)))
        return false;
    // The three superscript digits count as digits there.
    return (name[3] >= u'1' && name[3] <= u'9') || name[3] == QChar(0xB9) || name[3] == QChar(0xB2)
        || name[3] == QChar(0xB3);
}

// Title and extension with its dot; a long or empty extension is part of the title.
std::pair<QStringView, QStringView> split(QStringView name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot < 0 || dot + 1 == name.size() || utf8Size(name.sliced(dot)) > kMaxExtensionBytes)
        return { name, {} };
    return { name.first(dot), name.sliced(dot) };
}

QString assemble(QStringView title, QStringView extension)
{
    title = trimmedStart(title);
    const QStringView whole = title;
    title = cut(title, OutputNames::kMaxBytes - utf8Size(extension) - 1);
    if (extension.isEmpty() || title.size() < whole.size())
        title = trimmedEnd(title);
    QString name = title.isEmpty() ? u"_"_s : title.toString();
    const qsizetype dot = name.indexOf(u'.');
    QStringView device = dot < 0 ? QStringView(name) : QStringView(name).first(dot);
    device = trimmedEnd(device);
    if (isDeviceName(device))
        name.insert(device.size(), u'_');
    return name + extension.toString();
}

quint64 hashOf(QByteArrayView bytes)
{
    quint64 hash = 0xCBF29CE484222325; // FNV-1a: the same in every run, unlike qHash()
    for (const char c : bytes)
        hash = (hash ^ static_cast<uchar>(c)) * 0x100000001B3;
    return hash;
}

quint64 hashOfFolded(const QString &name)
{
    const QString folded = name.normalized(QString::NormalizationForm_C)
                               .toCaseFolded()
                               .normalized(QString::NormalizationForm_C);
    return hashOf(folded.toUtf8());
}

} // namespace

QString OutputNames::clean(const QString &name)
{
    const QString text = replaced(name);
    const auto [title, extension] = split(trimmedEnd(text));
    return assemble(title, extension);
}

QString OutputNames::clean(const QString &title, const QString &extension)
{
    const QString suffix = replaced(extension);
    if (suffix.isEmpty() || utf8Size(suffix) >= kMaxExtensionBytes || trimmedEnd(suffix) != suffix
        || suffix.contains(u'.'))
        return clean(suffix.isEmpty() ? title : title + u'.' + extension);
    const QString text = replaced(title);
    QStringView trimmed = trimmedEnd(text);
    const QString dotted = u'.' + suffix;
    if (trimmed.endsWith(dotted, Qt::CaseInsensitive)) // some titles are the file's name
        trimmed.chop(dotted.size());
    return assemble(trimmedEnd(trimmed), dotted);
}

bool OutputNames::isClean(QByteArrayView name)
{
    if (name.isEmpty() || name.size() > kMaxBytes - 1 || name.front() == '.' || name.front() == ' '
        || name.back() == '.' || name.back() == ' ')
        return false;
    for (const char c : name) {
        if (c < 0x20 || c >= 0x7F || kForbidden.contains(QLatin1Char(c))) // negative: not ASCII
            return false;
    }
    const qsizetype dot = name.indexOf('.');
    const qsizetype title = dot < 0 ? name.size() : dot;
    constexpr qsizetype kLongestDevice = 7;
    return title > kLongestDevice
        || !isDeviceName(QString::fromLatin1(name.first(title)).trimmed());
}

QString OutputNames::take(const QString &name, Kind kind)
{
    const quint64 key = hashOfFolded(name);
    const auto known = m_used.constFind(key);
    if (known == m_used.constEnd()) {
        m_used.insert(key, 1);
        return name;
    }
    const auto [title, extension] =
        kind == Kind::File ? split(name) : std::pair(QStringView(name), QStringView());
    for (quint32 number = *known + 1;; ++number) {
        const QString suffix = u" (%1)"_s.arg(number) + extension.toString();
        QString candidate = cut(title, kMaxBytes - utf8Size(suffix)).toString() + suffix;
        const quint64 candidateKey = hashOfFolded(candidate);
        if (!m_used.contains(candidateKey)) {
            m_used.insert(candidateKey, 1);
            m_used.insert(key, number);
            return candidate;
        }
    }
}

bool OutputNames::takeClean(QByteArrayView name)
{
    if (!isClean(name))
        return false;
    const quint64 key = hashOf(name.toByteArray().toLower());
    if (m_used.contains(key))
        return false;
    m_used.insert(key, 1);
    return true;
}
