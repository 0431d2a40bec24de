#include "PhoneBackup/notes/Notes.h"

#include "PhoneBackup/notes/NoteMedia.h"
#include "PhoneBackup/notes/NoteStore.h"
#include "PhoneBackup/notes/OldNotes.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/shared/FileData.h"
#include "PhoneItems/shared/TableData.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QSet>

#include <algorithm>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kNotes = 9;
constexpr int kNoteFiles = 18;

const QDateTime &orderDate(const Note &note)
{
    return note.modified.isValid() ? note.modified : note.created;
}

// The notes of both stores, the newest first. Upgrading may leave a copy in the old one.
QList<Note> allNotes(Source &source, NoteMedia &media)
{
    QList<Note> notes = readNoteStore(source, media);
    const auto identity = [](const Note &note) {
        return note.title + u'\n' + note.created.toString(Qt::ISODate);
    };
    QSet<QString> known;
    for (const Note &note : std::as_const(notes)) {
        if (note.created.isValid())
            known.insert(identity(note));
    }
    const QList<Note> oldNotes = readOldNotes(source);
    for (const Note &note : oldNotes) {
        if (!note.created.isValid() || !known.contains(identity(note)))
            notes.append(note);
    }
    std::stable_sort(notes.begin(), notes.end(), [](const Note &a, const Note &b) {
        return PhoneTime::isNewer(orderDate(a), orderDate(b));
    });
    return notes;
}

std::unique_ptr<TableData> tableOf(const QList<Note> &notes)
{
    auto table = std::make_unique<TableData>(
        kNotes,
        QStringList { tr("Title"), tr("Folder"), tr("Created"), tr("Modified"), tr("Text") });
    for (const Note &note : notes) {
        Row row;
        row.cells = { note.title,
                      note.folder,
                      CCommonUtils::datetimeToMinute(note.created, true),
                      CCommonUtils::datetimeToMinute(note.modified, true),
                      note.text };
        row.date = orderDate(note);
        row.id = note.id;
        row.deleted = note.deleted;
        table->add(row);
    }
    return table;
}

std::unique_ptr<FileData>
filesOf(const QList<Note> &notes, const NoteMedia &media, BackupFiles &files)
{
    auto data = std::make_unique<FileData>(kNoteFiles, files);
    for (const Note &note : notes) {
        if (note.files.isEmpty())
            continue;
        const int group = data->addGroup(note.title.isEmpty() ? tr("Note") : note.title);
        for (const NoteFile &file : note.files) {
            FileEntry entry;
            entry.row = file.file;
            entry.group = group;
            entry.name = file.name;
            entry.date = file.created;
            entry.id = file.id;
            entry.deleted = note.deleted;
            data->add(entry);
        }
    }
    const QList<FileIndex::Row> others = media.unused();
    const int group = others.isEmpty() ? -1 : data->addGroup(tr("Other"));
    for (const FileIndex::Row row : others) {
        FileEntry entry;
        entry.row = row;
        entry.group = group;
        data->add(entry);
    }
    return data;
}

} // namespace

void readNotes(Source &source, DataSets &sets)
{
    NoteMedia media(source.index());
    const QList<Note> notes = allNotes(source, media);
    sets[kNotes] = tableOf(notes);
    sets[kNoteFiles] = filesOf(notes, media, source.files());
}

} // namespace PhoneBackup
