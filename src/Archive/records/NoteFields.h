#ifndef ARCHIVE_RECORDS_NOTEFIELDS_H
#define ARCHIVE_RECORDS_NOTEFIELDS_H

#include "Archive/records/FieldWriter.h"
#include "PhoneBackup/notes/Note.h"

namespace Archive {

template <>
inline constexpr std::array kNames<PhoneBackup::NoteHighlight> { "",       "purple", "pink",
                                                                 "orange", "mint",   "blue" };
template <>
inline constexpr std::array kNames<PhoneBackup::NoteBlock::Kind> { "",           "title", "heading",
                                                                   "subheading", "code",  "row",
                                                                   "table" };
template <>
inline constexpr std::array kNames<PhoneBackup::NoteBlock::List> {
    "", "dotted", "dashed", "numbered", "checklist"
};
template <>
inline constexpr std::array kNames<PhoneBackup::NoteAttachment::Kind> {
    "hashtag", "mention", "noteLink",        "calculation", "word",
    "link",    "table",   "drawing",         "scan",        "pdf",
    "gallery", "file",    "embeddedPicture", "embeddedFile"
};
template <>
inline constexpr std::array kNames<PhoneBackup::NoteAttachment::Presence> {
    "", "present", "neverDownloaded", "locked"
};
template <>
inline constexpr std::array kNames<PhoneBackup::NoteFile::Shows> { "original", "picture", "pdf" };
template <>
inline constexpr std::array kNames<PhoneBackup::Note::BodyState> {
    "", "cut", "unreadable", "elsewhere", "locked"
};

//! A block, a run and a cell are understood only with the body that they belong to.
struct NoteBlockOf
{
    const PhoneBackup::NoteBody &body;
    const PhoneBackup::NoteBlock &block;
};
struct NoteRunOf
{
    const PhoneBackup::NoteBody &body;
    const PhoneBackup::NoteRun &run;
};

inline void fields(FieldWriter &field, const NoteRunOf &of)
{
    const PhoneBackup::NoteLook &look = of.run.look;
    field("bold", look.bold);
    field("italic", look.italic);
    field("underlined", look.underlined);
    field("struck", look.struck);
    field("raised", look.raised, 0);
    field("highlight", look.highlight);
    if (look.colour)
        field("colour", QString::number(*look.colour, 16));
    if (look.link >= 0)
        field("link", of.body.links[look.link]);
    field("attachment", look.attachment, -1);
    if (look.attachment < 0)
        field("text", of.body.textOf(of.run));
}

std::vector<NoteBlockOf> blocksOf(const PhoneBackup::NoteBody &body);

void fields(FieldWriter &field, const NoteBlockOf &of);

inline void fields(FieldWriter &field, const PhoneBackup::NoteFile &file)
{
    field("shows", file.shows);
    field("file", File { file.row });
}

inline void fields(FieldWriter &field, const PhoneBackup::NoteAttachment &attachment)
{
    field("id", attachment.identifier);
    field("row", attachment.id, 0);
    field("type", attachment.type);
    field("kind", attachment.kind);
    field("presence", attachment.presence);
    field("own", attachment.isOwn);
    field("deleted", attachment.deleted);
    field("title", attachment.title);
    field("fileName", attachment.fileName);
    field("text", attachment.text);
    field("target", attachment.target);
    field("url", attachment.url);
    field("summary", attachment.summary);
    field("words", attachment.words);
    field("parent", attachment.parent, 0);
    field("bytes", attachment.bytes, -1);
    field("size", attachment.size);
    field("seconds", attachment.seconds, 0);
    field("created", attachment.created);
    field("modified", attachment.modified);
    field("files", attachment.files);
}

inline void fields(FieldWriter &field, const PhoneBackup::Note &note)
{
    field("id", note.identifier);
    field("row", note.id, -1);
    field("old", note.store == PhoneBackup::Note::Store::Old);
    field("title", note.title);
    field("snippet", note.snippet);
    field("folder", note.folder);
    field("account", note.account);
    field("state", note.bodyState);
    field("pinned", note.pinned);
    field("shared", note.shared);
    field("deleted", note.deleted);
    field("hint", note.hint);
    field("created", note.created);
    field("modified", note.modified);
    field("opened", note.opened);
    field("body", blocksOf(note.body));
    field("attachments", note.attachments);
}

} // namespace Archive

#endif
