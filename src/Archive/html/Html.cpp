#include "Archive/html/Html.h"

#include "Archive/records/JsonText.h"
#include "PhoneBackup/messages/MessagePart.h"

#include <QUrl>

#include <algorithm>
#include <array>

namespace Archive {

using namespace Qt::StringLiterals;
using PhoneBackup::TextSpan;

namespace {

bool isControl(char16_t unit)
{
    return (unit < u' ' && unit != u'\n' && unit != u'\t') || (unit >= 0x7F && unit < 0xA0)
        || unit == 0xFFFE || unit == 0xFFFF;
}

// Overrides of the direction of writing reach beyond their text.
bool isOverride(char16_t unit)
{
    return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

// What stands for an ASCII character in a page; null for itself.
constexpr const char *encoded(char16_t unit)
{
    switch (unit) {
    case u'&':
        return "&amp;";
    case u'<':
        return "&lt;";
    case u'>':
        return "&gt;";
    case u'"':
        return "&quot;";
    case u'\'':
        return "&#39;";
    default:
        return isControl(unit) ? "" : nullptr; // left out
    }
}

// What may stand in a page of characters beyond ASCII.
QString shown(QStringView text)
{
    QString kept;
    kept.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (isControl(unit) || isOverride(unit))
            continue;
        if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            const char32_t point = QChar::surrogateToUcs4(unit, text[i + 1].unicode());
            if ((point & 0xFFFE) != 0xFFFE)
                kept += text.sliced(i, 2);
            ++i;
        } else {
            kept += QChar::isSurrogate(unit) ? QChar(QChar::ReplacementCharacter) : text[i];
        }
    }
    return kept;
}

// Where the web address that begins at \a from ends, without what closes the sentence around it.
qsizetype addressEnd(QStringView text, qsizetype from)
{
    qsizetype end = from;
    while (end < text.size() && !text[end].isSpace() && text[end] != u'<' && text[end] != u'>'
           && text[end] != u'"')
        ++end;
    while (end > from && QStringView(u".,;:!?)]}'”’»…").contains(text[end - 1]))
        --end;
    return end;
}

} // namespace

Html &Html::text(QStringView text)
{
    for (qsizetype at = 0; at < text.size();) {
        // Most of it is ASCII that stands for itself.
        qsizetype end = at;
        while (end < text.size() && text[end].unicode() < 0x80 && !encoded(text[end].unicode()))
            ++end;
        const qsizetype before = m_out.size();
        m_out.resize(before + end - at);
        std::transform(text.begin() + at, text.begin() + end, m_out.data() + before, [](QChar c) {
            return char(c.unicode());
        });
        at = end;
        while (end < text.size() && text[end].unicode() >= 0x80)
            ++end;
        if (end > at)
            m_out += shown(text.sliced(at, end - at)).toUtf8();
        if (end < text.size() && end == at)
            m_out += encoded(text[end++].unicode());
        at = end;
    }
    return *this;
}

Html &Html::number(qint64 number)
{
    QByteArray digits = QByteArray::number(number);
    for (qsizetype at = digits.size() - 3; at > (number < 0 ? 1 : 0); at -= 3)
        digits.insert(at, ',');
    m_out += digits;
    return *this;
}

Html &Html::attribute(const char *name, QStringView value)
{
    m_out += ' ';
    m_out += name;
    m_out += "=\"";
    text(value);
    m_out += '"';
    return *this;
}

Html &Html::link(const char *name, const QByteArray &before, QStringView path)
{
    m_out += ' ';
    m_out += name;
    m_out += "=\"";
    m_out += before;
    // "&" and "'" would stand for something in an attribute.
    m_out += QUrl::toPercentEncoding(path.toString(), "/#", "'&");
    m_out += '"';
    return *this;
}

bool Html::isSafe(const QString &address)
{
    static constexpr std::array kSchemes { "http:"_L1, "https:"_L1, "mailto:"_L1, "tel:"_L1 };
    return std::any_of(kSchemes.begin(), kSchemes.end(), [&](QLatin1StringView scheme) {
        return address.startsWith(scheme, Qt::CaseInsensitive);
    });
}

Html &Html::external(const QString &address, QStringView label)
{
    if (!isSafe(address))
        return text(label);
    m_out += "<a rel=\"noreferrer\" href=\"";
    const QUrl url(address, QUrl::TolerantMode);
    text(url.isValid()
             ? QString::fromLatin1(url.toEncoded())
             : QString::fromLatin1(QUrl::toPercentEncoding(address, ":/?#[]@!$&'()*+,;=%")));
    m_out += "\">";
    text(label);
    m_out += "</a>";
    return *this;
}

Html &Html::linkedText(const QString &text)
{
    return linkedText(text, {});
}

Html &Html::linkedText(const QString &whole, const QList<TextSpan> &links)
{
    const QStringView all(whole);
    qsizetype done = 0;
    const auto plain = [&](qsizetype end) {
        while (done < end) {
            qsizetype at = all.indexOf("http"_L1, done, Qt::CaseInsensitive);
            while (at >= 0 && at < end
                   && !isSafe(whole.sliced(at, std::min<qsizetype>(8, all.size() - at))))
                at = all.indexOf("http"_L1, at + 4, Qt::CaseInsensitive);
            if (at < 0 || at >= end)
                break;
            const qsizetype stop = std::min(end, addressEnd(all, at));
            text(all.sliced(done, at - done));
            external(whole.sliced(at, stop - at), all.sliced(at, stop - at));
            done = std::max(stop, at + 1);
        }
        if (done < end)
            text(all.sliced(done, end - done));
        done = std::max(done, end);
    };
    for (const TextSpan &span : links) {
        if (span.position < done || span.length <= 0 || span.position + span.length > all.size())
            continue;
        plain(span.position);
        external(span.address, all.sliced(span.position, span.length));
        done = span.position + span.length;
    }
    plain(all.size());
    return *this;
}

QByteArray scriptText(QStringView text)
{
    QByteArray json;
    JsonText::append(json, text);
    return json.replace("\u2028", "\\u2028").replace("\u2029", "\\u2029").replace("</", "<\\/");
}

} // namespace Archive
