#include "PhoneBackup/notes/NoteRunRecord.h"

#include "PhoneBackup/packed/FieldReader.h"

#include <algorithm>
#include <cmath>

namespace PhoneBackup {

namespace {

// The numbers below are those of the records that the phone's app for notes writes. No document of
// its maker lists them: they were found out by changing notes and looking at what became of them.
namespace Run {
constexpr quint32 kLength = 1;
constexpr quint32 kParagraph = 2;
constexpr quint32 kWeight = 5;
constexpr quint32 kUnderlined = 6;
constexpr quint32 kStruck = 7;
constexpr quint32 kRaised = 8;
constexpr quint32 kLink = 9;
constexpr quint32 kColour = 10;
constexpr quint32 kAttachment = 12;
constexpr quint32 kHighlight = 14; // since iOS 18
} // namespace Run

namespace Paragraph {
constexpr quint32 kStyle = 1;
constexpr quint32 kIndent = 4;
constexpr quint32 kCheck = 5;
constexpr quint32 kQuote = 8;
} // namespace Paragraph

namespace Attachment {
constexpr quint32 kIdentifier = 1;
constexpr quint32 kType = 2;
} // namespace Attachment

constexpr quint32 kDone = 2; // of a check

enum Style : quint64 {
    Title = 0,
    Heading = 1,
    Subheading = 2,
    Monospaced = 4,
    Dotted = 100,
    Dashed = 101,
    Numbered = 102,
    Checklist = 103
};

enum Weight : quint64 { Bold = 1, Italic = 2, BoldItalic = 3 };

void setStyle(NoteBlock &paragraph, quint64 style)
{
    using Kind = NoteBlock::Kind;
    using List = NoteBlock::List;
    paragraph.kind = style == Title ? Kind::Title
        : style == Heading          ? Kind::Heading
        : style == Subheading       ? Kind::Subheading
        : style == Monospaced       ? Kind::Code
                                    : Kind::Paragraph;
    paragraph.list = style == Dotted ? List::Dotted
        : style == Dashed            ? List::Dashed
        : style == Numbered          ? List::Numbered
        : style == Checklist         ? List::Checklist
                                     : List::None;
}

NoteBlock paragraphOf(QByteArrayView message)
{
    NoteBlock paragraph;
    FieldReader reader(message);
    while (reader.next()) {
        switch (reader.number()) {
        case Paragraph::kStyle:
            setStyle(paragraph, reader.value());
            break;
        case Paragraph::kIndent:
            paragraph.level = quint8(std::min(reader.value(), quint64(NoteRunRecord::kMostLevels)));
            break;
        case Paragraph::kCheck:
            paragraph.isChecked = FieldReader::value(reader.bytes(), kDone) != 0;
            break;
        case Paragraph::kQuote:
            paragraph.isQuote = reader.value() != 0;
            break;
        default:
            break;
        }
    }
    return paragraph;
}

// Red, green, blue and opacity, from 0 to 1 each.
std::optional<quint32> colourOf(QByteArrayView message)
{
    constexpr quint32 kRed = 1;
    constexpr quint32 kOpacity = 4;
    constexpr float kMost = 255;
    quint32 parts = 0;
    quint32 colour = 0xFF000000;
    FieldReader reader(message);
    while (reader.next()) {
        const quint32 part = reader.number();
        const float real = reader.real();
        if (part < kRed || part > kOpacity || !std::isfinite(real))
            continue;
        const auto byte = quint32(std::lround(std::clamp(real, 0.F, 1.F) * kMost));
        const quint32 shift = part == kOpacity ? 24 : 8 * (kOpacity - 1 - part);
        colour = (colour & ~(0xFFU << shift)) | byte << shift;
        ++parts;
    }
    return parts == 0 ? std::nullopt : std::optional(colour);
}

NoteHighlight highlightOf(quint64 number)
{
    return number <= quint64(NoteHighlight::Blue) ? NoteHighlight(number) : NoteHighlight::None;
}

} // namespace

NoteRunRecord NoteRunRecord::read(QByteArrayView message)
{
    NoteRunRecord run;
    FieldReader reader(message);
    while (reader.next()) {
        const quint64 value = reader.value();
        switch (reader.number()) {
        case Run::kLength:
            run.length = value;
            break;
        case Run::kParagraph:
            run.paragraph = paragraphOf(reader.bytes());
            break;
        case Run::kWeight:
            run.look.bold = value == Bold || value == BoldItalic;
            run.look.italic = value == Italic || value == BoldItalic;
            break;
        case Run::kUnderlined:
            run.look.underlined = value != 0;
            break;
        case Run::kStruck:
            run.look.struck = value != 0;
            break;
        case Run::kRaised:
            run.look.raised = qint8(std::clamp<qint64>(qint64(value), -1, 1));
            break;
        case Run::kLink:
            run.link = QString::fromUtf8(reader.bytes());
            break;
        case Run::kColour:
            run.look.colour = colourOf(reader.bytes());
            break;
        case Run::kAttachment:
            run.attachment = FieldReader::text(reader.bytes(), { Attachment::kIdentifier });
            run.attachmentType = FieldReader::text(reader.bytes(), { Attachment::kType });
            break;
        case Run::kHighlight:
            run.look.highlight = highlightOf(value);
            break;
        default:
            break;
        }
    }
    return run;
}

} // namespace PhoneBackup
