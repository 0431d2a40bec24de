#include "PhoneBackup/notes/NoteText.h"

#include "PhoneBackup/packed/FieldReader.h"

#include <algorithm>
#include <vector>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QChar kAttachment(0xFFFC);
constexpr QChar kLineSeparator(0x2028);
constexpr QChar kParagraphSeparator(0x2029);
constexpr QChar kFixedBlank(QChar::Nbsp); // pages draw blanks at the start of a line together
constexpr int kBlanksALevel = 4;
constexpr int kBlanksATab = 4;
constexpr quint64 kMostLevels = 16;

// The fields of a note's record, and of the runs in it.
namespace Field {
constexpr quint32 kDocument = 2;
constexpr quint32 kNote = 3;
constexpr quint32 kText = 2;
constexpr quint32 kRun = 5;
namespace Run {
constexpr quint32 kLength = 1;
constexpr quint32 kParagraph = 2;
constexpr quint32 kLink = 9;
constexpr quint32 kAttachment = 12;
} // namespace Run
namespace Paragraph {
constexpr quint32 kStyle = 1;
constexpr quint32 kIndent = 4;
constexpr quint32 kCheck = 5;
constexpr quint32 kQuote = 8;
} // namespace Paragraph
constexpr quint32 kIdentifier = 1; // of an attachment
constexpr quint32 kType = 2;
constexpr quint32 kDone = 2; // of a check
} // namespace Field

enum Style : quint64 { Dotted = 100, Dashed = 101, Numbered = 102, Checklist = 103 };

struct Paragraph
{
    quint64 style = ~quint64(0);
    int level = 0;
    bool isDone = false;
    bool isQuote = false;
};

struct Run
{
    quint64 length = 0; // in UTF-16 units
    Paragraph paragraph;
    QString link;
    QString attachment;
    QString attachmentType;
};

Paragraph paragraphOf(QByteArrayView message)
{
    Paragraph paragraph;
    FieldReader reader(message);
    while (reader.next()) {
        switch (reader.number()) {
        case Field::Paragraph::kStyle:
            paragraph.style = reader.value();
            break;
        case Field::Paragraph::kIndent:
            paragraph.level = int(std::min(reader.value(), kMostLevels));
            break;
        case Field::Paragraph::kCheck:
            paragraph.isDone = FieldReader::value(reader.bytes(), Field::kDone) != 0;
            break;
        case Field::Paragraph::kQuote:
            paragraph.isQuote = reader.value() != 0;
            break;
        default:
            break;
        }
    }
    return paragraph;
}

Run runOf(QByteArrayView message)
{
    Run run;
    FieldReader reader(message);
    while (reader.next()) {
        switch (reader.number()) {
        case Field::Run::kLength:
            run.length = reader.value();
            break;
        case Field::Run::kParagraph:
            run.paragraph = paragraphOf(reader.bytes());
            break;
        case Field::Run::kLink:
            run.link = QString::fromUtf8(reader.bytes());
            break;
        case Field::Run::kAttachment:
            run.attachment =
                QString::fromUtf8(FieldReader::find(reader.bytes(), { Field::kIdentifier }));
            run.attachmentType =
                QString::fromUtf8(FieldReader::find(reader.bytes(), { Field::kType }));
            break;
        default:
            break;
        }
    }
    return run;
}

// Puts the text together, run by run.
class Writer
{
public:
    explicit Writer(const NoteText::Insets &insets)
        : m_insets(insets)
        , m_counts(kMostLevels + 1, 0)
    {
    }

    void write(QStringView text, const Run &run)
    {
        if (run.link != m_link) {
            endLink();
            m_link = run.link;
            m_linkStart = m_text.size();
        }
        for (const QChar c : text) {
            if (isFull())
                return;
            if (c == u'\n' || c == u'\r' || c == kParagraphSeparator) {
                if (!m_needsBreak) // else it ends the line of what stands alone
                    beginLine(run.paragraph); // an empty item of a list has a mark, too
                m_needsBreak = false;
                endLine();
            } else {
                beginLine(run.paragraph);
                writeInLine(c, run);
            }
        }
    }

    QString take()
    {
        endLink();
        while (m_text.endsWith(u'\n'))
            m_text.chop(1);
        if (isFull()) {
            const bool insidePair = m_text[NoteText::kMaxCharacters - 1].isHighSurrogate();
            m_text.truncate(NoteText::kMaxCharacters - (insidePair ? 1 : 0));
        }
        return std::move(m_text);
    }

    bool isFull() const { return m_text.size() > NoteText::kMaxCharacters; }

private:
    void beginLine(const Paragraph &paragraph)
    {
        if (!m_atStart)
            return;
        m_atStart = false;
        m_isIndent = true;
        if (m_needsBreak && !m_text.isEmpty() && !m_text.endsWith(u'\n'))
            m_text += u'\n';
        m_needsBreak = false;
        m_text += QString(qsizetype(paragraph.level) * kBlanksALevel, kFixedBlank);
        if (paragraph.isQuote)
            m_text += u"┃ "_s;
        m_text += mark(paragraph);
    }

    QString mark(const Paragraph &paragraph)
    {
        // A list that is interrupted, or comes back from a deeper level, begins anew below it.
        const auto level = std::size_t(paragraph.level);
        const bool isNumbered = paragraph.style == Numbered;
        const auto kept = m_counts.begin() + std::ptrdiff_t(level) + (isNumbered ? 1 : 0);
        std::fill(kept, m_counts.end(), 0);
        switch (paragraph.style) {
        case Dotted:
            return u"• "_s;
        case Dashed:
            return u"– "_s;
        case Numbered:
            return QString::number(++m_counts[level]) + u". "_s;
        case Checklist:
            return paragraph.isDone ? u"☑ "_s : u"☐ "_s;
        default:
            return {};
        }
    }

    void endLine()
    {
        endLink();
        m_text += u'\n';
        m_atStart = true;
    }

    void writeInLine(QChar c, const Run &run)
    {
        if (c == kAttachment) {
            writeInset(run);
        } else if (c == kLineSeparator) { // a new line in the same paragraph
            m_text += u'\n';
            m_text += QString(qsizetype(run.paragraph.level) * kBlanksALevel, kFixedBlank);
        } else if (m_isIndent && (c == u' ' || c == u'\t')) {
            m_text += QString(c == u'\t' ? kBlanksATab : 1, kFixedBlank);
        } else {
            m_isIndent = false;
            m_text += c;
        }
    }

    void writeInset(const Run &run)
    {
        const NoteText::Inset inset =
            m_insets ? m_insets(run.attachment, run.attachmentType) : NoteText::Inset();
        if (inset.isBlock && !m_text.isEmpty() && !m_text.endsWith(u'\n'))
            m_text += u'\n';
        m_text += inset.text;
        if (inset.isBlock) {
            m_atStart = true;
            m_needsBreak = true;
        }
        m_isIndent = false;
    }

    void endLink()
    {
        if (m_link.isEmpty())
            return;
        const QString shown = m_text.sliced(std::min(m_linkStart, m_text.size()));
        const QString target = NoteText::linkTarget(shown, m_link);
        if (!target.isEmpty() && !shown.isEmpty())
            m_text += u" ("_s + target + u')';
        m_link.clear();
    }

    const NoteText::Insets &m_insets;
    QString m_text;
    QString m_link;
    qsizetype m_linkStart = 0;
    std::vector<int> m_counts; // of the numbered items so far, by level
    bool m_atStart = true;
    bool m_isIndent = true; // only blanks so far
    bool m_needsBreak = false; // behind a table
};

QStringView withoutDecoration(QStringView target)
{
    const qsizetype scheme = target.indexOf(u"://");
    if (scheme >= 0)
        target = target.sliced(scheme + 3);
    for (const QLatin1StringView prefix : { "mailto:"_L1, "tel:"_L1 }) {
        if (target.startsWith(prefix, Qt::CaseInsensitive))
            target = target.sliced(prefix.size());
    }
    return target.endsWith(u'/') ? target.chopped(1) : target;
}

} // namespace

QString NoteText::linkTarget(const QString &shown, const QString &target)
{
    const bool isSame = withoutDecoration(QStringView(shown).trimmed())
                            .compare(withoutDecoration(target), Qt::CaseInsensitive)
        == 0;
    return isSame ? QString() : target;
}

NoteText NoteText::read(QByteArrayView document, const Insets &insets)
{
    const QByteArrayView body = FieldReader::find(document, { Field::kDocument, Field::kNote });
    NoteText result = readBody(body, insets);
    if (body.isNull())
        result.isComplete = false;
    return result;
}

NoteText NoteText::readBody(QByteArrayView body, const Insets &insets)
{
    const QString text = QString::fromUtf8(FieldReader::find(body, { Field::kText }));
    Writer writer(insets);
    qsizetype position = 0;
    FieldReader reader(body);
    while (reader.next() && !writer.isFull()) {
        if (reader.number() != Field::kRun || !reader.isBytes())
            continue;
        const Run run = runOf(reader.bytes());
        const auto length = qsizetype(std::min(run.length, quint64(text.size() - position)));
        writer.write(QStringView(text).sliced(position, length), run);
        position += length;
    }
    writer.write(QStringView(text).sliced(position), {}); // what no run covers
    NoteText result;
    result.isComplete = !reader.isDamaged() && !writer.isFull();
    result.text = writer.take();
    return result;
}

} // namespace PhoneBackup
