#ifndef ARCHIVE_MEDIA_EXPORTEDFILES_H
#define ARCHIVE_MEDIA_EXPORTEDFILES_H

#include "Archive/records/FileNames.h"

#include <QByteArray>
#include <QHash>

#include <vector>

namespace Archive {

/*!
    \brief Where the files of a backup were copied to.

    \par Memory
    8 bytes per file of the backup, and the name of each that was copied.
*/
class ExportedFiles final : public FileNames
{
public:
    //! For a backup whose index has \a count entries.
    explicit ExportedFiles(int count);

    //! Says that \a row was copied to \a path, relative to OUTPUT. The first place counts.
    void add(PhoneBackup::FileIndex::Row row, const QString &path);

    //! Says that the file at \a path shows or plays the same in a browser.
    void addVersion(PhoneBackup::FileIndex::Row row, const QString &path);

    QString nameOf(PhoneBackup::FileIndex::Row row) const override;

    //! The file for browsers: the other version of it, else the file itself.
    QString shownOf(PhoneBackup::FileIndex::Row row) const;

private:
    struct Place
    {
        quint32 name = 0; // where it begins in the names, and 1
        quint32 folder = 0;
    };

    std::vector<Place> m_places;
    QByteArray m_names; // UTF-8, each with its end
    QHash<QString, quint32> m_folderNumbers;
    std::vector<QString> m_folders;
    QHash<PhoneBackup::FileIndex::Row, QString> m_versions;
};

} // namespace Archive

#endif
