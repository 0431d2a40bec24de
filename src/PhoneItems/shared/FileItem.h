#ifndef PHONEITEMS_SHARED_FILEITEM_H
#define PHONEITEMS_SHARED_FILEITEM_H

#include "PhoneBackup/folder/FileIndex.h"
#include "backup/BkFileItem.h"

namespace PhoneItems {

class FileData;

//! A file of a data set; it knows its number only and asks the set for the rest.
class FileItem : public BkFileItem
{
public:
    FileItem(const FileData &data, int index);
    ~FileItem() override;

    const FileData &data() const { return m_data; }

    //! The file in the index of the backup; of a folder, the row that stands for it.
    PhoneBackup::FileIndex::Row row() const;

    QString value(int index) const override;
    bool flag(int index) const override;
    qint64 id() const override;
    QDateTime date() const override;
    qint64 sizeBytes() const override;
    QString source() const override;
    BkAbstractItem *groupItem() const override;
    QByteArray fileData() const override;
    QString filePath() const override;
    bool isStreamed() const override;
    std::unique_ptr<QIODevice> openStream() const override;
    QDateTime fileDate() const override;

private:
    const FileData &m_data;
    int m_index;
};

} // namespace PhoneItems

#endif
