#include "PhoneItems/notes/NoteBodyText.h"

#include "PhoneBackup/source/StoredText.h"
#include "PhoneItems/notes/AttachmentWords.h"

#include <algorithm>

namespace PhoneItems {

using namespace Qt::StringLiterals;
using PhoneBackup::Note;
using PhoneBackup::NoteBlock;
using PhoneBackup::NoteBody;
using PhoneBackup::NoteRun;
using PhoneBackup::NoteTable;

namespace {

constexpr QChar kFirstStrongIsolate(0x2068);
constexpr QChar kRightToLeftIsolate(0x2067);
constexpr QChar kEndOfIsolate(0x2069);
constexpr QChar kFixedBlank(QChar::Nbsp); // pages draw blanks at the start of a line together
constexpr QChar kCellEnd(0x1F); // in a row of mere text
constexpr int kBlanksALevel = 4;
constexpr int kBlanksATab = 4;

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

// Whether a link that is shown as \a shown tells its target.
bool tells(QStringView shown, QStringView target)
{
    return withoutDecoration(shown.trimmed())
               .compare(withoutDecoration(target), Qt::CaseInsensitive)
        == 0;
}

QString mark(const NoteBlock &block)
{
    switch (block.list) {
    case NoteBlock::List::None:
        break;
    case NoteBlock::List::Dotted:
        return u"• "_s;
    case NoteBlock::List::Dashed:
        return u"– "_s;
    case NoteBlock::List::Numbered:
        return QString::number(block.number) + u". "_s;
    case NoteBlock::List::Checklist:
        return block.isChecked ? u"☑ "_s : u"☐ "_s;
    }
    return {};
}

// Puts the text of a body together, block by block.
class Writer
{
public:
    Writer(const NoteBody &body, const Note &note)
        : m_body(body)
        , m_note(note)
        , m_isOld(note.store == Note::Store::Old)
        , m_isTold(std::size_t(body.links.size()), false)
    {
    }

    NoteBodyText write()
    {
        for (const NoteBlock &block : m_body.blocks) {
            if (isFull())
                break;
            if (block.table >= 0)
                writeTable(block);
            else
                writeLine(block);
            m_text += u'\n';
        }
        while (!m_text.isEmpty()
               && (m_text.back() == u'\n' || (m_isOld && m_text.back().isSpace())))
            m_text.chop(1);
        NoteBodyText result { std::move(m_text), m_isComplete };
        if (result.text.size() > NoteBodyText::kMaxCharacters) {
            result.text =
                PhoneBackup::StoredText::beginning(result.text, NoteBodyText::kMaxCharacters);
            result.isComplete = false;
        }
        return result;
    }

private:
    bool isFull() const { return m_text.size() > NoteBodyText::kMaxCharacters; }

    void writeTable(const NoteBlock &block)
    {
        if (block.isInParagraph && m_text.endsWith("\n\n"_L1)) // a new line in it ends here, too
            m_text.chop(1);
        const NoteBodyText text =
            NoteBodyText::of(*m_body.tables[std::size_t(block.table)], m_note);
        m_text += text.text;
        m_isComplete = m_isComplete && text.isComplete;
    }

    void writeLine(const NoteBlock &block)
    {
        const qsizetype start = m_text.size();
        m_isIndent = !m_isOld;
        indent(block);
        if (block.isQuote && !m_isOld)
            m_text += u"┃ "_s;
        m_text += mark(block);
        const auto runs = m_body.runsOf(block);
        for (std::size_t i = 0; i < runs.size() && !isFull(); ++i) {
            const NoteRun &run = runs[i];
            if (run.look.link != m_link) {
                m_link = run.look.link;
                m_linkStart = i == 0 && !m_isOld ? start : m_text.size();
            }
            writeRun(block, run);
            const bool isLineEnd = i + 1 == runs.size();
            if (m_link >= 0 && ((isLineEnd && !m_isOld) || isLinkEnd(run)))
                tellTarget();
        }
    }

    void indent(const NoteBlock &block)
    {
        m_text += QString(qsizetype(block.level) * kBlanksALevel, kFixedBlank);
    }

    void writeRun(const NoteBlock &block, const NoteRun &run)
    {
        if (run.look.attachment >= 0) {
            m_text += label(m_note.attachments[std::size_t(run.look.attachment)]);
            m_isIndent = false;
            return;
        }
        for (const QChar c : m_body.textOf(run)) {
            if (c == u'\n' && !m_isOld) { // a new line in the same paragraph
                m_text += u'\n';
                indent(block);
            } else if (m_isIndent && (c == u' ' || c == u'\t')) {
                m_text += QString(c == u'\t' ? kBlanksATab : 1, kFixedBlank);
            } else if (c == kCellEnd && block.kind == NoteBlock::Kind::Row) {
                m_text += u" | "_s;
            } else {
                m_isIndent = false;
                m_text += c;
            }
        }
    }

    bool isLinkEnd(const NoteRun &run) const
    {
        const NoteRun *next = &run + 1;
        return next == m_body.runs.data() + m_body.runs.size() || next->look.link != run.look.link;
    }

    // Behind a link, once; the HTML of old notes says where it ends.
    void tellTarget()
    {
        auto isTold = m_isTold.begin() + m_link;
        const QString &target = m_body.links[m_link];
        const QStringView shown = QStringView(m_text).sliced(m_linkStart);
        const bool isShown = !(m_isOld ? shown.trimmed() : shown).isEmpty();
        if (!*isTold && isShown && !tells(shown, target))
            m_text += u" ("_s + target + u')';
        *isTold = true;
    }

    const NoteBody &m_body;
    const Note &m_note;
    bool m_isOld;
    std::vector<bool> m_isTold; // the target of a link
    QString m_text;
    qint32 m_link = -1;
    qsizetype m_linkStart = 0;
    bool m_isIndent = true; // only blanks so far
    bool m_isComplete = true;
};

bool hasRightToLeft(const QString &text)
{
    const QList<uint> characters = text.toUcs4();
    return std::any_of(characters.cbegin(), characters.cend(), [](uint character) {
        const QChar::Direction direction = QChar::direction(character);
        return direction == QChar::DirR || direction == QChar::DirAL;
    });
}

} // namespace

NoteBodyText NoteBodyText::of(const Note &note)
{
    return Writer(note.body, note).write();
}

NoteBodyText NoteBodyText::of(const NoteTable &table, const Note &note)
{
    NoteBodyText result;
    for (qsizetype i = 0; i < table.rows() * table.columns; ++i) {
        const NoteBodyText cell = Writer(table.cells[std::size_t(i)], note).write();
        const bool isRowStart = i % table.columns == 0;
        const bool isRowEnd = (i + 1) % table.columns == 0;
        if (isRowStart && i > 0)
            result.text += u'\n';
        if (isRowStart && table.isRightToLeft)
            result.text += kRightToLeftIsolate;
        QString text = cell.text;
        // Else the words of two cells, and the bar between them, run in one direction.
        const bool isIsolated = table.isRightToLeft ? !text.isEmpty() : hasRightToLeft(text);
        text.replace(u'\n', u' ');
        result.text += isIsolated ? kFirstStrongIsolate + text + kEndOfIsolate : text;
        if (!isRowEnd)
            result.text += u" | "_s;
        else if (table.isRightToLeft)
            result.text += kEndOfIsolate;
        if (!cell.isComplete || result.text.size() > kMaxCharacters) {
            result.isComplete = false;
            break;
        }
    }
    return result;
}

} // namespace PhoneItems
