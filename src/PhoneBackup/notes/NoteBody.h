#ifndef PHONEBACKUP_NOTES_NOTEBODY_H
#define PHONEBACKUP_NOTES_NOTEBODY_H

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace PhoneBackup {

struct NoteTable;

//! The colour behind a stretch of text.
enum class NoteHighlight : quint8 { None, Purple, Pink, Orange, Mint, Blue };

//! What characters of a note look like, and what they stand for.
struct NoteLook
{
    bool bold = false;
    bool italic = false;
    bool underlined = false;
    bool struck = false;
    qint8 raised = 0; //!< 1: above the line, -1: below it.
    NoteHighlight highlight = NoteHighlight::None;
    std::optional<quint32> colour; //!< 0xAARRGGBB; none: that of the text around it.
    qint32 link = -1; //!< In NoteBody::links; one number for the whole length of a link.
    qint32 attachment = -1; //!< In Note::attachments: what stands here in place of a character.

    friend bool operator==(const NoteLook &, const NoteLook &) = default;
};

//! A stretch of a block with one look. Empty where a link begins at the end of a block.
struct NoteRun
{
    qint32 begin = 0; //!< In NoteBody::text, in UTF-16 units.
    qint32 length = 0; //!< Likewise.
    NoteLook look;
};

//! A paragraph, an item of a list or a table.
struct NoteBlock
{
    enum class Kind : quint8 {
        Paragraph,
        Title,
        Heading,
        Subheading,
        Code, //!< One line of it, its blanks as they are.
        Row, //!< Of a table that is mere text; U+001F parts its cells.
        Table, //!< All of it is in NoteBody::tables.
    };
    enum class List : quint8 { None, Dotted, Dashed, Numbered, Checklist };

    Kind kind = Kind::Paragraph;
    List list = List::None;
    quint8 level = 0; //!< How far it is indented.
    bool isChecked = false;
    bool isQuote = false;
    bool isInParagraph = false; //!< A table in the paragraph that the block before it begins.
    qint32 number = 0; //!< Of an item of a numbered list.
    qint32 table = -1; //!< In NoteBody::tables.
    qint32 firstRun = 0; //!< In NoteBody::runs.
    qint32 runCount = 0;
};

/*!
    \brief The text of a note or of a cell: blocks of runs.

    Characters are as the note has them; a line feed is a line break within a paragraph, and U+FFFC
    stands for an attachment. Blocks and runs are in the order of reading.
*/
struct NoteBody
{
    QString text; //!< Of all runs, without anything between them.
    std::vector<NoteBlock> blocks;
    std::vector<NoteRun> runs;
    QStringList links; //!< Their targets.
    std::vector<std::shared_ptr<const NoteTable>> tables;

    std::span<const NoteRun> runsOf(const NoteBlock &block) const
    {
        return std::span(runs).subspan(std::size_t(block.firstRun), std::size_t(block.runCount));
    }
    QStringView textOf(const NoteRun &run) const
    {
        return QStringView(text).sliced(run.begin, run.length);
    }

    //! The characters of the first block that has any.
    QString firstLine() const;
};

//! A table in a note.
struct NoteTable
{
    qsizetype columns = 0;
    bool isRightToLeft = false; //!< The first column is the right-most.
    std::vector<NoteBody> cells; //!< Row by row, in the order of reading.

    qsizetype rows() const { return columns == 0 ? 0 : qsizetype(cells.size()) / columns; }
};

} // namespace PhoneBackup

#endif
