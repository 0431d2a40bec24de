#ifndef PHONEBACKUP_NOTES_NOTEBODIES_H
#define PHONEBACKUP_NOTES_NOTEBODIES_H

#include "PhoneBackup/notes/NoteDrafts.h"
#include "PhoneBackup/notes/NoteText.h"
#include "PhoneBackup/packed/Gzip.h"
#include "PhoneBackup/source/Table.h"

namespace PhoneBackup {

/*!
    \brief Reads the packed records of the store of notes: texts, and the tables in them.

    What it cannot read is a loss of the store where it is a table; a text says so itself.
    \par Memory
    All bodies together hold at most kMaxCharacters, and blocks and runs as NoteBodies.cpp says.
*/
class NoteBodies
{
public:
    static constexpr qsizetype kMaxCharacters = qsizetype(32) << 20;

    //! All must outlive the reader.
    NoteBodies(Source &source, RowDatabase &store, NoteDrafts &drafts);

    //! Reads the texts; one that belongs to no note becomes a note when \a withoutNote.
    void read(bool withoutNote);

private:
    Unzipped unpacked(QByteArrayView record);
    void setBody(NoteDraft &draft, QByteArrayView record, bool isEnciphered);
    std::shared_ptr<const NoteTable> table(qint64 attachment, NoteDraft &draft);
    QByteArray tableRecord(qint64 key);
    bool takeRoom(const NoteBody &body);

    Source &m_source;
    RowDatabase &m_store;
    NoteDrafts &m_drafts;
    Table m_tables; // those that stand in notes
    Table::Column m_tableRecord;
    std::optional<Table::Lookup> m_tableRecords;
    qsizetype m_charactersLeft = kMaxCharacters;
    qsizetype m_partsLeft;
    qsizetype m_bytesLeft;
};

} // namespace PhoneBackup

#endif
