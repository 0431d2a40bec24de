#ifndef PHONEBACKUP_NOTES_NOTE_H
#define PHONEBACKUP_NOTES_NOTE_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QDateTime>
#include <QList>
#include <QString>

namespace PhoneBackup {

//! A file that is kept in a note.
struct NoteFile
{
    FileIndex::Row file = FileIndex::kNone; //!< kNone: the backup does not have it.
    QString name; //!< What it is to be called; empty: its own name.
    qint64 id = -1; //!< Number of its attachment.
    QDateTime created;
};

//! A note, whatever store it comes from.
struct Note
{
    qint64 id = -1;
    QString title;
    QString folder; //!< With those that it lies in: "Boats/Repairs".
    QString text;
    QDateTime created;
    QDateTime modified;
    bool deleted = false;
    QList<NoteFile> files;
};

} // namespace PhoneBackup

#endif
