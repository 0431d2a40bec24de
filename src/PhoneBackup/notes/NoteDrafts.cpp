#include "PhoneBackup/notes/NoteDrafts.h"

namespace PhoneBackup {

qint32 NoteDrafts::place(const StoredAttachment &attachment, NoteDraft &draft) const
{
    const auto known = draft.attachments.constFind(attachment.record.id);
    if (known != draft.attachments.constEnd())
        return *known;
    const auto place = qint32(draft.note.attachments.size());
    draft.note.attachments.push_back(attachments.record(attachment));
    draft.attachments.insert(attachment.record.id, place);
    return place;
}

qint32 NoteDrafts::placeInText(const QString &identifier, const QString &type, NoteDraft &draft)
{
    attachments.place(identifier, draft.note.id);
    if (const StoredAttachment *stored = attachments.find(identifier))
        return place(*stored, draft);
    const QString key = identifier + u'\n' + type;
    const auto known = draft.unknownAttachments.constFind(key);
    if (known != draft.unknownAttachments.constEnd())
        return *known;
    const auto place = qint32(draft.note.attachments.size());
    NoteAttachment attachment;
    attachment.identifier = identifier;
    attachment.type = type;
    attachment.kind = NoteAttachments::kindOf(type);
    draft.note.attachments.push_back(attachment);
    draft.unknownAttachments.insert(key, place);
    return place;
}

std::vector<Note> NoteDrafts::take()
{
    std::vector<Note> notes;
    notes.reserve(std::size_t(order.size()));
    for (const qint64 key : std::as_const(order)) {
        NoteDraft &draft = drafts[key];
        Note &note = draft.note;
        const Account own = accounts.value(draft.account);
        const Account ofFolder = accounts.value(folders.account(draft.folder));
        note.account = own.name.isEmpty() ? ofFolder.name : own.name;
        if (note.isLocked() && note.hint.isEmpty())
            note.hint = own.hint.isEmpty() ? ofFolder.hint : own.hint;
        note.folder = folders.path(draft.folder);
        note.deleted = note.deleted || folders.isTrash(draft.folder);
        notes.push_back(std::move(note));
    }
    return notes;
}

} // namespace PhoneBackup
