#ifndef PHONEITEMS_SHARED_FILEDATA_H
#define PHONEITEMS_SHARED_FILEDATA_H

#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneItems/shared/FileItem.h"
#include "PhoneItems/shared/GroupItem.h"
#include "PhoneItems/shared/ItemData.h"
#include "platform/OutputNames.h"

#include <QDateTime>
#include <QStringList>

#include <deque>
#include <limits>
#include <memory>
#include <vector>

namespace PhoneBackup {
class BackupFiles;
}

namespace PhoneItems {

//! One file of a data set, as the reader of its type found it.
struct FileEntry
{
    PhoneBackup::FileIndex::Row row = PhoneBackup::FileIndex::kNone;
    int group = -1; //!< Number that addGroup() gave, -1 for none.
    QString name; //!< What it is to be called; empty: its own name.
    QDateTime date; //!< What the set is ordered by; invalid: the file's own date.
    qint64 id = -1; //!< Number of its row in the phone's database; -1: its index.
    bool deleted = false;
};

/*!
    \brief A data set of files; all of them are selected.

    Names are made such as an output folder takes them, and different from each other within a
    group. An item whose content is missing from the backup is still an item.
    \par Memory
    About 60 bytes an item; a name is kept only where it is not the file's own.
    \par Owner
    The files of the backup are borrowed and must outlive the set.
*/
class FileData : public ItemData<FileItem>
{
public:
    FileData(int dataType, PhoneBackup::BackupFiles &files);
    ~FileData() override;

    //! The name of the file at \a path of the index when it is called \a title, or else as it is.
    static QString nameOf(const QString &title, QByteArrayView path);

    //! Makes room for \a count entries.
    void reserve(qsizetype count);

    //! Adds a group, which gets a name of its own. \return its number.
    int addGroup(const QString &name);

    //! Adds a file behind the others.
    void add(const FileEntry &entry);

    QList<BkAbstractItem *> recoverFileList() const override;

    // What the items ask; a set whose contents are made on demand answers otherwise.
    virtual QString filePath(int index) const;
    virtual bool isStreamed(int index) const;
    virtual qint64 sizeBytes(int index) const;
    virtual QDateTime fileDate(int index) const;

    //! The content of a file that is streamed, when it is small.
    QByteArray fileData(int index) const;
    std::unique_ptr<QIODevice> openStream(int index) const;

    QString name(int index) const;
    QString source(int index) const;
    QDateTime date(int index) const;
    qint64 id(int index) const;
    bool isDeleted(int index) const;
    BkAbstractItem *group(int index) const;
    PhoneBackup::FileIndex::Row row(int index) const { return record(index).row; }

protected:
    PhoneBackup::BackupFiles &files() const { return m_files; }

private:
    static constexpr qint64 kNoDate = std::numeric_limits<qint64>::min();

    struct Record
    {
        qint64 dateMs;
        qint64 id;
        PhoneBackup::FileIndex::Row row;
        int group;
        int name; // in m_names, -1 for the file's own
        bool deleted;
    };

    const Record &record(int index) const { return m_records[std::size_t(index)]; }

    PhoneBackup::BackupFiles &m_files;
    std::vector<Record> m_records;
    QStringList m_names;
    mutable std::deque<GroupItem> m_groups; // which items give away as changeable objects
    OutputNames m_groupNames;
    std::vector<OutputNames> m_namesInGroup; // the last is for files without a group
};

} // namespace PhoneItems

#endif
