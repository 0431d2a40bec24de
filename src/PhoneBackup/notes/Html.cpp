#include "PhoneBackup/notes/Html.h"

#include <QHash>

#include <algorithm>
#include <optional>

namespace PhoneBackup::Html {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestEntity = 32;

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

} // namespace

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

} // namespace PhoneBackup::Html
