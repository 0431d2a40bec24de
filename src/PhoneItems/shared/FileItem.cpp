#include "PhoneItems/shared/FileItem.h"

#include "PhoneItems/shared/FileData.h"

#include <QIODevice>

namespace PhoneItems {

using PhoneBackup::FileIndex;

FileItem::FileItem(const FileData &data, int index)
    : m_data(data)
    , m_index(index)
{
}

FileItem::~FileItem() = default;

FileIndex::Row FileItem::row() const
{
    return m_data.row(m_index);
}

QString FileItem::value(int index) const
{
    return index == 0 ? m_data.name(m_index) : QString();
}

bool FileItem::flag(int index) const
{
    return index == 0 && m_data.isDeleted(m_index);
}

qint64 FileItem::id() const
{
    return m_data.id(m_index);
}

QDateTime FileItem::date() const
{
    return m_data.date(m_index);
}

qint64 FileItem::sizeBytes() const
{
    return m_data.sizeBytes(m_index);
}

QString FileItem::source() const
{
    return m_data.source(m_index);
}

BkAbstractItem *FileItem::groupItem() const
{
    return m_data.group(m_index);
}

QByteArray FileItem::fileData() const
{
    return m_data.fileData(m_index);
}

QString FileItem::filePath() const
{
    return m_data.filePath(m_index);
}

bool FileItem::isStreamed() const
{
    return m_data.isStreamed(m_index);
}

std::unique_ptr<QIODevice> FileItem::openStream() const
{
    return m_data.openStream(m_index);
}

QDateTime FileItem::fileDate() const
{
    return m_data.fileDate(m_index);
}

} // namespace PhoneItems
