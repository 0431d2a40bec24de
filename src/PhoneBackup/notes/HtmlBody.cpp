#include "PhoneBackup/notes/HtmlBody.h"

#include "PhoneBackup/notes/Html.h"
#include "PhoneBackup/notes/NoteBodyWriter.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kMostLevels = 16;
constexpr QChar kCellEnd(0x1F); // no other is left in a row
constexpr QChar kAttachment = QChar::ObjectReplacementCharacter;

// What begins and ends a line.
const QSet<QString> &blockTags()
{
    static const QSet<QString> tags { u"div"_s,   u"p"_s,    u"ul"_s, u"ol"_s,         u"li"_s,
                                      u"tr"_s,    u"h1"_s,   u"h2"_s, u"h3"_s,         u"h4"_s,
                                      u"h5"_s,    u"h6"_s,   u"hr"_s, u"blockquote"_s, u"pre"_s,
                                      u"table"_s, u"body"_s, u"dl"_s, u"dt"_s,         u"dd"_s };
    return tags;
}

// The tags that are counted: what lies between them looks or is different.
enum Nest { Bold, Italic, Underlined, Struck, Raised, Lowered, Quote, Preformatted, TableRow };
constexpr std::size_t kNests = TableRow + 1;

std::optional<Nest> nestOf(const QString &tag)
{
    static const QHash<QString, Nest> nests {
        { u"b"_s, Bold },           { u"strong"_s, Bold },   { u"i"_s, Italic },
        { u"em"_s, Italic },        { u"u"_s, Underlined },  { u"ins"_s, Underlined },
        { u"s"_s, Struck },         { u"strike"_s, Struck }, { u"del"_s, Struck },
        { u"sup"_s, Raised },       { u"sub"_s, Lowered },   { u"blockquote"_s, Quote },
        { u"pre"_s, Preformatted }, { u"tr"_s, TableRow },
    };
    const auto known = nests.constFind(tag);
    return known == nests.constEnd() ? std::nullopt : std::optional(*known);
}

// "#f80" and "#ff8800".
std::optional<quint32> colourOf(const QString &text)
{
    QString digits = text.trimmed();
    if (!digits.startsWith(u'#'))
        return std::nullopt;
    digits.remove(0, 1);
    if (digits.size() == 3)
        digits = QString(2, digits[0]) + QString(2, digits[1]) + QString(2, digits[2]);
    bool ok = false;
    const uint colour = digits.toUInt(&ok, 16);
    return ok && digits.size() == 6 ? std::optional(0xFF000000U | colour) : std::nullopt;
}

class Reader
{
public:
    explicit Reader(std::vector<NoteAttachment> &attachments)
        : m_attachments(attachments)
    {
    }

    NoteBody read(QStringView html)
    {
        while (!html.isEmpty() && !m_out.isFull()) {
            qsizetype length = 1;
            if (html.startsWith(u'<') && html.size() > 1 && isTagStart(html[1]))
                length = takeTag(html);
            else if (html.startsWith(u'&'))
                length = takeEntity(html);
            else
                takeCharacter(html.front());
            html = html.sliced(length);
        }
        if (m_link >= 0)
            m_out.forgetLink(m_link); // its end is missing
        return m_out.take();
    }

    NoteBody readPlain(QStringView text)
    {
        for (const QStringView line : text.split(u'\n')) {
            m_out.begin({});
            m_out.put(line, {});
            m_out.end();
        }
        return m_out.take();
    }

private:
    struct List
    {
        bool isNumbered;
        int count = 0;
    };

    static bool isTagStart(QChar c) { return c.isLetter() || c == u'/' || c == u'!' || c == u'?'; }

    bool atLineStart()
    {
        return !m_out.isOpen()
            || (m_out.isBlockEmpty() && m_out.block().list == NoteBlock::List::None);
    }

    bool isIn(Nest nest) const { return m_nests[nest] > 0; }

    NoteLook look() const
    {
        NoteLook look;
        look.bold = isIn(Bold);
        look.italic = isIn(Italic);
        look.underlined = isIn(Underlined);
        look.struck = isIn(Struck);
        look.raised = qint8(int(isIn(Raised)) - int(isIn(Lowered)));
        look.colour = m_colours.empty() ? std::nullopt : m_colours.back();
        look.link = m_link;
        return look;
    }

    NoteBlock shape() const
    {
        NoteBlock block;
        block.kind = m_heading != NoteBlock::Kind::Paragraph ? m_heading
            : isIn(Preformatted)                             ? NoteBlock::Kind::Code
            : isIn(TableRow)                                 ? NoteBlock::Kind::Row
                                                             : NoteBlock::Kind::Paragraph;
        block.isQuote = isIn(Quote);
        return block;
    }

    // What is on the line so far stays alone on it.
    void breakLine()
    {
        m_hasBlank = false;
        m_needsBreak = m_needsBreak || !atLineStart();
    }

    // What white space amounts to: the end of the line, a blank or nothing.
    void putBlank()
    {
        if (m_needsBreak)
            m_out.end();
        else if (m_hasBlank && !atLineStart())
            m_out.put(u" ", look());
        m_needsBreak = false;
        m_hasBlank = false;
    }

    void put(QStringView text) { put(text, look()); }
    void put(QStringView text, const NoteLook &look)
    {
        putBlank();
        if (!m_out.isOpen())
            m_out.begin(shape());
        m_out.put(text, look);
    }

    void takeCharacter(QChar c)
    {
        if (!c.isSpace() || c == QChar::Nbsp)
            put(QStringView(&c, 1));
        else if (isIn(Preformatted) && c == u'\n')
            lineFeed();
        else if (isIn(Preformatted))
            put(u"\u00A0");
        else
            m_hasBlank = true;
    }

    void lineFeed()
    {
        m_hasBlank = false;
        endLine();
    }

    void endLine()
    {
        putBlank();
        if (!m_out.isOpen())
            m_out.begin(shape());
        m_out.end();
    }

    qsizetype takeEntity(QStringView html)
    {
        QString character;
        const qsizetype length = Html::decodeEntity(html, character);
        if (length == 0)
            takeCharacter(u'&');
        else if (character == u"\n")
            endLine();
        else if (character == kCellEnd && isIn(TableRow))
            put(u"\u00A0");
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
        const qsizetype end = m_isOpenEnded ? -1 : Html::tagEnd(html);
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
        const bool isEnd = name.startsWith(u'/');
        apply(isEnd ? name.sliced(1) : name, isEnd, tag);
        return end + 1;
    }

    void apply(const QString &name, bool isEnd, QStringView tag)
    {
        if (name == "br"_L1) {
            lineFeed();
            return;
        }
        if (blockTags().contains(name))
            breakLine();
        if (const std::optional<Nest> nest = nestOf(name)) {
            m_nests[*nest] = std::max(0, m_nests[*nest] + (isEnd ? -1 : 1));
        } else if (name == "ul"_L1 || name == "ol"_L1) {
            if (!isEnd && m_lists.size() < kMostLevels)
                m_lists.push_back({ name == "ol"_L1 });
            else if (isEnd && !m_lists.empty())
                m_lists.pop_back();
        } else if (name == "li"_L1 && !isEnd) {
            beginItem();
        } else if ((name == "td"_L1 || name == "th"_L1) && !isEnd && !atLineStart()
                   && !m_needsBreak) {
            m_out.block().kind = NoteBlock::Kind::Row;
            put(QStringView(&kCellEnd, 1));
        } else if (name.size() == 2 && name.front() == u'h' && name.back().isDigit()) {
            m_heading = isEnd     ? NoteBlock::Kind::Paragraph
                : name == "h1"_L1 ? NoteBlock::Kind::Title
                : name == "h2"_L1 ? NoteBlock::Kind::Heading
                                  : NoteBlock::Kind::Subheading;
        } else if (name == "font"_L1 && !isEnd && m_colours.size() < kMostLevels) {
            m_colours.push_back(colourOf(Html::attribute(tag, u"color")));
        } else if (name == "font"_L1 && isEnd && !m_colours.empty()) {
            m_colours.pop_back();
        } else if (name == "a"_L1) {
            m_link = isEnd ? -1 : m_out.addLink(Html::attribute(tag, u"href"));
        } else if (name == "img"_L1 && !isEnd) {
            putAttachment(NoteAttachment::Kind::EmbeddedPicture, Html::attribute(tag, u"alt"));
        } else if (name == "object"_L1 && !isEnd) {
            putAttachment(NoteAttachment::Kind::EmbeddedFile, {});
        }
    }

    void beginItem()
    {
        putBlank();
        NoteBlock block = shape();
        block.list = NoteBlock::List::Dotted;
        if (!m_lists.empty()) {
            List &list = m_lists.back();
            block.level = quint8(m_lists.size() - 1);
            if (list.isNumbered) {
                block.list = NoteBlock::List::Numbered;
                block.number = ++list.count;
            }
        }
        m_out.begin(block);
    }

    void putAttachment(NoteAttachment::Kind kind, const QString &title)
    {
        NoteAttachment attachment;
        attachment.kind = kind;
        attachment.title = title;
        NoteLook look = this->look();
        look.attachment = qint32(m_attachments.size());
        m_attachments.push_back(attachment);
        put(QStringView(&kAttachment, 1), look);
    }

    std::vector<NoteAttachment> &m_attachments;
    NoteBodyWriter m_out;
    std::vector<List> m_lists;
    std::array<int, kNests> m_nests {};
    std::vector<std::optional<quint32>> m_colours;
    NoteBlock::Kind m_heading = NoteBlock::Kind::Paragraph;
    qint32 m_link = -1;
    bool m_needsBreak = false;
    bool m_hasBlank = false;
    bool m_isOpenEnded = false;
};

} // namespace

NoteBody bodyOfHtml(const QString &html, std::vector<NoteAttachment> &attachments)
{
    Reader reader(attachments);
    return html.contains(u'<') ? reader.read(html)
                               : reader.readPlain(Html::decoded(html).trimmed());
}

} // namespace PhoneBackup
