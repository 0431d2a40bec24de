#ifndef PHONEBACKUP_NOTES_NOTEOBJECTS_H
#define PHONEBACKUP_NOTES_NOTEOBJECTS_H

#include "PhoneBackup/notes/NoteDrafts.h"

#include <QSet>

namespace PhoneBackup {

class RowDatabase;
class Statement;

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
    QString column(const QString &name) const;
    QString attribute(const QString &name) const;
    void readTextKeys();
    bool readTable();
    void readObject(const Statement &row);
    void readNote(const Statement &row);
    void readFolder(const Statement &row);
    void readAttachment(const Statement &row);
    void readFolderLinks();

    RowDatabase &m_store;
    NoteDrafts &m_drafts;
    QHash<qint64, QString> m_kinds;
    QSet<qint64> m_notesWithText;
};

} // namespace PhoneBackup

#endif
