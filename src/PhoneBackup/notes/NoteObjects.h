#ifndef PHONEBACKUP_NOTES_NOTEOBJECTS_H
#define PHONEBACKUP_NOTES_NOTEOBJECTS_H

#include "PhoneBackup/notes/NoteDrafts.h"
#include "PhoneBackup/source/Table.h"

#include <QSet>

namespace PhoneBackup {

/*!
    \brief Reads the wide table of the store of notes: notes, folders, accounts, attachments and
    media, told apart by their kind.
*/
class NoteObjects
{
public:
    //! The tables of objects and of texts.
    static const QString kObjects;
    static const QString kTexts;

    //! Both must outlive the reader.
    NoteObjects(RowDatabase &store, NoteDrafts &drafts);

    //! \return whether all rows could be read.
    bool read();

private:
    struct Columns;

    void readTextKeys();
    bool readTable();
    void readObject(const Table::Row &row, const Columns &columns);
    void readNote(const Table::Row &row, const Columns &columns);
    void readFolder(const Table::Row &row, const Columns &columns);
    void readAttachment(const Table::Row &row, const Columns &columns);
    void readFolderLinks();

    RowDatabase &m_store;
    NoteDrafts &m_drafts;
    QHash<qint64, QString> m_kinds;
    QSet<qint64> m_notesWithText;
};

} // namespace PhoneBackup

#endif
