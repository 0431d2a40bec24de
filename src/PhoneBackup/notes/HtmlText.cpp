#include "PhoneBackup/notes/HtmlText.h"

#include "PhoneBackup/notes/NoteText.h"
#include "platform/Translation_p.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <optional>
#include <vector>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestEntity = 32;
constexpr int kBlanksALevel = 4;
constexpr std::size_t kMostLevels = 16;

const QSet<QString> &blockTags()
{
    static const QSet<QString> tags { u"div"_s,   u"p"_s,    u"ul"_s, u"ol"_s,         u"li"_s,
                                      u"tr"_s,    u"h1"_s,   u"h2"_s, u"h3"_s,         u"h4"_s,
                                      u"h5"_s,    u"h6"_s,   u"hr"_s, u"blockquote"_s, u"pre"_s,
                                      u"table"_s, u"body"_s, u"dl"_s, u"dt"_s,         u"dd"_s };
    return tags;
}

std::optional<char32_t> namedCharacter(QStringView name)
{
    static const QHash<QString, char32_t> names {
        { u"amp"_s, U'&' },     { u"lt"_s, U'<' },      { u"gt"_s, U'>' },
        { u"quot"_s, U'"' },    { u"apos"_s, U'\'' },   { u"nbsp"_s, 0xA0 },
        { u"copy"_s, 0xA9 },    { u"reg"_s, 0xAE },     { u"deg"_s, 0xB0 },
        { u"euro"_s, 0x20AC },  { u"pound"_s, 0xA3 },   { u"yen"_s, 0xA5 },
        { u"cent"_s, 0xA2 },    { u"sect"_s, 0xA7 },    { u"hellip"_s, 0x2026 },
        { u"ndash"_s, 0x2013 }, { u"mdash"_s, 0x2014 }, { u"bull"_s, 0x2022 },
        { u"lsquo"_s, 0x2018 }, { u"rsquo"_s, 0x2019 }, { u"ldquo"_s, 0x201C },
        { u"rdquo"_s, 0x201D }, { u"laquo"_s, 0xAB },   { u"raquo"_s, 0xBB },
        { u"auml"_s, 0xE4 },    { u"ouml"_s, 0xF6 },    { u"uuml"_s, 0xFC },
        { u"Auml"_s, 0xC4 },    { u"Ouml"_s, 0xD6 },    { u"Uuml"_s, 0xDC },
        { u"szlig"_s, 0xDF },   { u"eacute"_s, 0xE9 },  { u"egrave"_s, 0xE8 },
        { u"agrave"_s, 0xE0 },  { u"ccedil"_s, 0xE7 },  { u"ntilde"_s, 0xF1 },
        { u"times"_s, 0xD7 },   { u"trade"_s, 0x2122 }, { u"middot"_s, 0xB7 },
    };
    const auto known = names.constFind(name.toString());
    return known == names.constEnd() ? std::nullopt : std::optional(*known);
}

std::optional<char32_t> numberedCharacter(QStringView digits)
{
    const bool isHex = digits.startsWith(u'x', Qt::CaseInsensitive);
    bool ok = false;
    const uint code = isHex ? digits.sliced(1).toUInt(&ok, 16) : digits.toUInt(&ok);
    const bool isCharacter =
        ok && code > 0 && code <= QChar::LastValidCodePoint && !QChar::isSurrogate(code);
    return isCharacter ? std::optional(char32_t(code)) : std::nullopt;
}

// Decodes the entity at the front of \a text, an ampersand. \return how long it is, 0 for none.
qsizetype decodeEntity(QStringView text, QString &out)
{
    const qsizetype end = text.first(std::min(text.size(), kLongestEntity)).indexOf(u';');
    if (end < 2)
        return 0;
    const QStringView name = text.sliced(1, end - 1);
    const auto character =
        name.startsWith(u'#') ? numberedCharacter(name.sliced(1)) : namedCharacter(name);
    if (!character)
        return 0;
    out += QString::fromUcs4(&*character, 1);
    return end + 1;
}

QString decoded(QStringView text)
{
    QString out;
    out.reserve(text.size());
    while (!text.isEmpty()) {
        const qsizetype length = text.startsWith(u'&') ? decodeEntity(text, out) : 0;
        if (length == 0)
            out += text.front();
        text = text.sliced(std::max<qsizetype>(length, 1));
    }
    return out;
}

// Where the tag at the front of \a text ends: a ">" in quotes is none. -1 when it does not.
qsizetype tagEnd(QStringView text)
{
    QChar quote;
    for (qsizetype i = 1; i < text.size(); ++i) {
        const QChar c = text[i];
        if (!quote.isNull())
            quote = c == quote ? QChar() : quote;
        else if (c == u'>')
            return i;
        else if ((c == u'"' || c == u'\'') && text[i - 1] == u'=')
            quote = c;
    }
    return -1;
}

// The value of the attribute \a name in \a tag, which has no brackets.
QString attribute(QStringView tag, QStringView name)
{
    qsizetype at = 0;
    while ((at = tag.indexOf(name, at, Qt::CaseInsensitive)) >= 0) {
        const bool isWord = at > 0 && tag[at - 1].isSpace();
        at += name.size();
        if (!isWord || at >= tag.size() || tag[at] != u'=')
            continue;
        const QStringView value = tag.sliced(at + 1);
        if (value.startsWith(u'"') || value.startsWith(u'\'')) {
            const qsizetype end = value.indexOf(value.front(), 1);
            return end < 0 ? QString() : decoded(value.sliced(1, end - 1));
        }
        qsizetype end = 0;
        while (end < value.size() && !value[end].isSpace())
            ++end;
        return decoded(value.first(end));
    }
    return {};
}

class Reducer
{
public:
    QString reduce(QStringView html)
    {
        while (!html.isEmpty()) {
            qsizetype length = 1;
            if (html.startsWith(u'<') && html.size() > 1 && isTagStart(html[1]))
                length = takeTag(html);
            else if (html.startsWith(u'&'))
                length = takeEntity(html);
            else
                takeCharacter(html.front());
            html = html.sliced(length);
        }
        while (!m_text.isEmpty() && m_text.back().isSpace())
            m_text.chop(1);
        return m_text;
    }

private:
    struct List
    {
        bool isNumbered;
        int count = 0;
    };

    static bool isTagStart(QChar c) { return c.isLetter() || c == u'/' || c == u'!' || c == u'?'; }

    bool atLineStart() const { return m_text.isEmpty() || m_text.endsWith(u'\n'); }

    // What is on the line so far stays alone on it.
    void breakLine()
    {
        m_hasBlank = false;
        m_needsBreak = m_needsBreak || !atLineStart();
    }

    void put(QStringView text)
    {
        if (m_needsBreak)
            m_text += u'\n';
        else if (m_hasBlank && !atLineStart())
            m_text += u' ';
        m_needsBreak = false;
        m_hasBlank = false;
        m_text += text;
    }

    void takeCharacter(QChar c)
    {
        if (!c.isSpace() || c == QChar::Nbsp)
            put(QStringView(&c, 1));
        else if (m_preformatted > 0 && c == u'\n')
            lineFeed();
        else if (m_preformatted > 0)
            put(u"\u00A0");
        else
            m_hasBlank = true;
    }

    void lineFeed()
    {
        if (m_needsBreak)
            m_text += u'\n';
        m_needsBreak = false;
        m_hasBlank = false;
        m_text += u'\n';
    }

    qsizetype takeEntity(QStringView html)
    {
        QString character;
        const qsizetype length = decodeEntity(html, character);
        if (length == 0)
            takeCharacter(u'&');
        else
            put(character);
        return std::max<qsizetype>(length, 1);
    }

    qsizetype takeTag(QStringView html)
    {
        if (html.startsWith(u"<!--")) {
            const qsizetype end = html.indexOf(u"-->");
            return end < 0 ? html.size() : end + 3;
        }
        // Without an end, this and all that follows is no tag: asking once is enough.
        const qsizetype end = m_isOpenEnded ? -1 : tagEnd(html);
        if (end < 0) {
            m_isOpenEnded = true;
            takeCharacter(u'<');
            return 1;
        }
        const QStringView tag = html.sliced(1, end - 1);
        qsizetype nameEnd = 0;
        while (nameEnd < tag.size() && (tag[nameEnd].isLetterOrNumber() || tag[nameEnd] == u'/')
               && (nameEnd == 0 || tag[nameEnd] != u'/'))
            ++nameEnd;
        const QString name = tag.first(nameEnd).toString().toLower();
        if (name == "script"_L1 || name == "style"_L1 || name == "title"_L1) {
            const qsizetype close = html.indexOf(u"</"_s + name, end, Qt::CaseInsensitive);
            return close < 0 ? html.size() : close;
        }
        apply(name, tag);
        return end + 1;
    }

    void apply(const QString &name, QStringView tag)
    {
        const bool isEnd = name.startsWith(u'/');
        const QString plain = isEnd ? name.sliced(1) : name;
        if (plain == "br"_L1) {
            lineFeed();
            return;
        }
        if (blockTags().contains(plain))
            breakLine();
        if (plain == "ul"_L1 || plain == "ol"_L1) {
            if (!isEnd && m_lists.size() < kMostLevels)
                m_lists.push_back({ plain == "ol"_L1 });
            else if (isEnd && !m_lists.empty())
                m_lists.pop_back();
        } else if (plain == "li"_L1 && !isEnd) {
            put(itemMark());
        } else if ((plain == "td"_L1 || plain == "th"_L1) && !isEnd && !atLineStart()
                   && !m_needsBreak) {
            put(u" | ");
        } else if (plain == "pre"_L1) {
            m_preformatted = std::max(0, m_preformatted + (isEnd ? -1 : 1));
        } else if (plain == "a"_L1) {
            endLink();
            m_link = isEnd ? QString() : attribute(tag, u"href");
            m_linkStart = m_text.size();
        } else if (plain == "img"_L1 && !isEnd) {
            const QString text = attribute(tag, u"alt");
            put(text.isEmpty() ? tr("[Picture]") : u'[' + text + u']');
        } else if (plain == "object"_L1 && !isEnd) {
            put(tr("[Attachment]"));
        }
    }

    QString itemMark()
    {
        if (m_lists.empty())
            return u"• "_s;
        const QString indent(qsizetype(m_lists.size() - 1) * kBlanksALevel, QChar(QChar::Nbsp));
        List &list = m_lists.back();
        return indent + (list.isNumbered ? QString::number(++list.count) + u". "_s : u"• "_s);
    }

    void endLink()
    {
        if (m_link.isEmpty())
            return;
        const QString shown = m_text.sliced(std::min(m_linkStart, m_text.size()));
        const QString target = NoteText::linkTarget(shown, m_link);
        if (!target.isEmpty() && !shown.trimmed().isEmpty())
            m_text += u" ("_s + target + u')';
        m_link.clear();
    }

    QString m_text;
    std::vector<List> m_lists;
    QString m_link;
    qsizetype m_linkStart = 0;
    int m_preformatted = 0;
    bool m_needsBreak = false;
    bool m_hasBlank = false;
    bool m_isOpenEnded = false;
};

} // namespace

QString textOfHtml(const QString &html)
{
    return html.contains(u'<') ? Reducer().reduce(html) : decoded(html).trimmed();
}

} // namespace PhoneBackup
