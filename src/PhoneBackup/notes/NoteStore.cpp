#include "PhoneBackup/notes/NoteStore.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/notes/NoteBodies.h"
#include "PhoneBackup/notes/NoteDrafts.h"
#include "PhoneBackup/notes/NoteMedia.h"
#include "PhoneBackup/notes/NoteObjects.h"
#include "PhoneBackup/source/RowDatabase.h"
#include "PhoneBackup/source/Source.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

using Presence = NoteAttachment::Presence;

// The picture or PDF that the phone made of \a attachment; of both, the one that shows all of it.
std::optional<NoteFile> renderingOf(const StoredAttachment &attachment, NoteMedia &media)
{
    const QString &identifier = attachment.record.identifier;
    const FileIndex::Row picture =
        media.takeRendering(NoteMedia::Rendering::Picture, identifier, attachment.imageGeneration);
    const FileIndex::Row pdf =
        media.takeRendering(NoteMedia::Rendering::Pdf, identifier, attachment.pdfGeneration);
    const bool isDrawing = attachment.record.kind == NoteAttachment::Kind::Drawing;
    if (pdf != FileIndex::kNone && (!isDrawing || picture == FileIndex::kNone))
        return NoteFile { pdf, NoteFile::Shows::Pdf };
    if (picture != FileIndex::kNone)
        return NoteFile { picture, NoteFile::Shows::Picture };
    return std::nullopt;
}

// The files of \a attachment, all of which count as used.
std::vector<NoteFile>
filesOf(const StoredAttachment &attachment, const NoteAttachments::Medium &medium, NoteMedia &media)
{
    std::vector<NoteFile> files;
    if (!medium.identifier.isEmpty()) {
        const FileIndex::Row row = media.take(medium.identifier, medium.name);
        if (row != FileIndex::kNone)
            files.push_back({ row, NoteFile::Shows::Original });
    }
    // What was drawn over a file shows in its rendering alone.
    if (medium.identifier.isEmpty() || attachment.isKeptAsRendering()) {
        if (const std::optional<NoteFile> rendering = renderingOf(attachment, media))
            files.push_back(*rendering);
    }
    return files;
}

void addFiles(NoteDrafts &drafts, NoteMedia &media)
{
    for (const StoredAttachment &stored : drafts.attachments.all()) {
        const auto draft = drafts.drafts.find(drafts.attachments.noteOf(stored));
        if (draft == drafts.drafts.end())
            continue; // its file, if any, is one without a note
        NoteAttachment &attachment =
            draft->note.attachments[std::size_t(drafts.place(stored, *draft))];
        attachment.isOwn = true;
        const NoteAttachments::Medium medium = drafts.attachments.mediumOf(stored);
        const bool hasFile = !medium.identifier.isEmpty() || stored.isKeptAsRendering();
        if (draft->note.isLocked()) {
            media.leaveOut(medium.identifier);
            media.leaveOut(stored.record.identifier);
            attachment.presence = hasFile ? Presence::Locked : Presence::NoFile;
            continue;
        }
        attachment.files = filesOf(stored, medium, media);
        attachment.presence = !attachment.files.empty() ? Presence::Present
            : hasFile && !stored.record.deleted         ? Presence::NeverDownloaded
                                                        : Presence::NoFile;
    }
}

} // namespace

std::vector<Note> readNoteStore(Source &source, NoteMedia &media)
{
    std::optional<RowDatabase> store = RowDatabase::open(source,
                                                         DataType::Notes,
                                                         NoteMedia::kDomain,
                                                         u"NoteStore.sqlite"_s,
                                                         Notice("notes.mayBeMissing"));
    if (!store)
        return {};
    NoteDrafts drafts;
    const bool isWhole = NoteObjects(*store, drafts).read();
    NoteBodies(source, *store, drafts).read(!isWhole);
    addFiles(drafts, media);
    return drafts.take();
}

} // namespace PhoneBackup
