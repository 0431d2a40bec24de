#ifndef PHONEBACKUP_NOTES_NOTEFOLDERS_H
#define PHONEBACKUP_NOTES_NOTEFOLDERS_H

#include <QHash>
#include <QString>

namespace PhoneBackup {

//! The folders of notes, by their keys. They may lie in each other in circles, or nowhere.
class NoteFolders
{
public:
    struct Folder
    {
        QString title;
        qint64 parent = 0;
        qint64 account = 0;
        bool isTrash = false;
    };

    void add(qint64 key, const Folder &folder) { m_folders.insert(key, folder); }

    //! The account that the folder \a key belongs to; 0 when that is not known.
    qint64 account(qint64 key) const { return m_folders.value(key).account; }

    //! The title of the folder \a key behind those that it lies in: "Boats/Repairs".
    QString path(qint64 key) const;

    //! Whether the folder \a key is the trash, or lies in it.
    bool isTrash(qint64 key) const;

private:
    QHash<qint64, Folder> m_folders;
};

} // namespace PhoneBackup

#endif
