#include "PhoneBackup/notes/Notes.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/notes/NoteMedia.h"
#include "PhoneBackup/notes/NoteStore.h"
#include "PhoneBackup/notes/OldNotes.h"
#include "PhoneBackup/source/Source.h"

#include <QSet>

#include <algorithm>

namespace PhoneBackup {

namespace {

// What a note and its copy in the old store have in common.
QString identityOf(const Note &note)
{
    const QString title = note.title.isEmpty() && note.store == Note::Store::Current
        ? note.body.firstLine()
        : note.title;
    return title + u'\n' + note.created.toString(Qt::ISODate);
}

} // namespace

QList<FileIndex::Row> readNotes(Source &source, const std::function<void(const Note &)> &sink)
{
    NoteMedia media(source.index());
    std::vector<Note> notes = readNoteStore(source, media);
    QSet<QString> known;
    for (const Note &note : notes) {
        if (note.created.isValid())
            known.insert(identityOf(note));
    }
    for (Note &note : readOldNotes(source)) {
        if (!note.created.isValid() || !known.contains(identityOf(note)))
            notes.push_back(std::move(note));
    }
    std::stable_sort(notes.begin(), notes.end(), [](const Note &a, const Note &b) {
        return PhoneTime::isNewer(a.orderDate(), b.orderDate());
    });
    for (Note &note : notes) {
        sink(note);
        note = {}; // whoever wants it has it
    }
    return media.unused();
}

} // namespace PhoneBackup
