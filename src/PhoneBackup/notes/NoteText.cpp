#include "PhoneBackup/notes/NoteText.h"

#include "PhoneBackup/notes/NoteBodyWriter.h"
#include "PhoneBackup/notes/NoteRunRecord.h"
#include "PhoneBackup/packed/FieldReader.h"

#include <algorithm>
#include <array>

namespace PhoneBackup {

namespace {

constexpr QChar kLineSeparator(0x2028);
constexpr QChar kParagraphSeparator(0x2029);

// The fields that lead to a note's text and runs.
namespace Field {
constexpr quint32 kDocument = 2;
constexpr quint32 kNote = 3;
constexpr quint32 kText = 2;
constexpr quint32 kRun = 5;
} // namespace Field

bool endsParagraph(QChar c)
{
    return c == u'\n' || c == u'\r' || c == kParagraphSeparator;
}

bool isOrdinary(QChar c)
{
    return !endsParagraph(c) && c != QChar::ObjectReplacementCharacter && c != kLineSeparator;
}

// Puts the body together, run by run.
class Reader
{
public:
    explicit Reader(const NoteText::Insets &insets)
        : m_insets(insets)
    {
    }

    void read(QStringView text, const NoteRunRecord &run)
    {
        NoteLook look = run.look;
        if (run.link != m_link) {
            m_link = run.link;
            m_linkNumber = m_out.addLink(m_link);
            m_isLinkNew = true;
        }
        look.link = m_linkNumber;
        while (!text.isEmpty() && !m_out.isFull()) {
            const auto *end = std::find_if_not(text.begin(), text.end(), isOrdinary);
            if (const qsizetype length = end - text.begin(); length > 0) {
                put(text.first(length), run.paragraph, look);
                text = text.sliced(length);
                continue;
            }
            if (endsParagraph(text.front()))
                endParagraph(run.paragraph, look);
            else if (text.front() == kLineSeparator)
                put(u"\n", run.paragraph, look);
            else
                putAttachment(run, look);
            text = text.sliced(1);
        }
    }

    bool isFull() const { return m_out.isFull(); }
    NoteBody take() { return m_out.take(); }

private:
    void put(QStringView text, const NoteBlock &paragraph, const NoteLook &look)
    {
        begin(paragraph);
        m_out.put(text, look);
        m_isLinkNew = false;
    }

    void begin(const NoteBlock &paragraph)
    {
        if (m_out.isOpen())
            return;
        m_isBehindTable = false;
        NoteBlock block = paragraph;
        block.number = number(paragraph);
        m_out.begin(block);
    }

    // A list that is interrupted, or comes back from a deeper level, begins anew below it.
    int number(const NoteBlock &paragraph)
    {
        const bool isNumbered = paragraph.list == NoteBlock::List::Numbered;
        const auto kept = m_counts.begin() + paragraph.level + (isNumbered ? 1 : 0);
        std::fill(kept, m_counts.end(), 0);
        return isNumbered ? ++m_counts[paragraph.level] : 0;
    }

    void endParagraph(const NoteBlock &paragraph, const NoteLook &look)
    {
        if (!m_isBehindTable) { // else it ends the line on which the table stands
            begin(paragraph); // an item of a list may be empty
            if (look.link >= 0 && m_isLinkNew)
                m_out.put({}, look);
        }
        m_isBehindTable = false;
        m_isLinkNew = false;
        m_out.end();
        m_link.clear();
        m_linkNumber = -1;
    }

    void putAttachment(const NoteRunRecord &run, NoteLook look)
    {
        const NoteText::Inset inset =
            m_insets ? m_insets(run.attachment, run.attachmentType) : NoteText::Inset();
        look.attachment = inset.attachment;
        if (!inset.table) {
            put(QStringView(&kAttachment, 1), run.paragraph, look);
            return;
        }
        begin(run.paragraph);
        if (!m_out.isOpen())
            return;
        NoteBlock block = m_out.block();
        const bool isShown =
            block.level > 0 || block.isQuote || block.list != NoteBlock::List::None;
        block.isInParagraph = !m_out.isBlockEmpty() || isShown;
        if (!block.isInParagraph)
            m_out.drop();
        m_out.addTable(inset.table, block);
        m_isBehindTable = true;
    }

    static constexpr QChar kAttachment = QChar::ObjectReplacementCharacter;

    const NoteText::Insets &m_insets;
    NoteBodyWriter m_out;
    QString m_link;
    qint32 m_linkNumber = -1;
    bool m_isLinkNew = false; // nothing has been put yet that belongs to it
    bool m_isBehindTable = false;
    std::array<int, NoteRunRecord::kMostLevels + 2> m_counts {}; // of numbered items, by level
};

} // namespace

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
    const QString text = FieldReader::text(body, { Field::kText });
    Reader out(insets);
    qsizetype position = 0;
    FieldReader reader(body);
    while (reader.next() && !out.isFull()) {
        if (reader.number() != Field::kRun || !reader.isBytes())
            continue;
        const NoteRunRecord run = NoteRunRecord::read(reader.bytes());
        const auto length = qsizetype(std::min(run.length, quint64(text.size() - position)));
        out.read(QStringView(text).sliced(position, length), run);
        position += length;
    }
    out.read(QStringView(text).sliced(position), {}); // what no run covers
    NoteText result;
    result.isComplete = !reader.isDamaged() && !out.isFull();
    result.body = out.take();
    return result;
}

} // namespace PhoneBackup
