#include "PhoneItems/shared/FileData.h"

#include "PhoneBackup/folder/BackupFiles.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneItems/words/Words.h"

#include <QIODevice>

namespace PhoneItems {

using namespace PhoneBackup;

namespace {

// Stands for a content that cannot be had: the library asks a stream why.
class NoContent final : public QIODevice
{
public:
    explicit NoContent(const QString &why) { setErrorString(why); }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }
};

} // namespace

FileData::FileData(int dataType, BackupFiles &files)
    : ItemData(dataType)
    , m_files(files)
    , m_namesInGroup(1)
{
}

FileData::~FileData() = default;

QString FileData::nameOf(const QString &title, QByteArrayView path)
{
    return OutputNames::clean(title.isEmpty() ? PathParts::text(PathParts::stem(path)) : title,
                              PathParts::text(PathParts::extension(path)));
}

void FileData::reserve(qsizetype count)
{
    m_records.reserve(std::size_t(count));
}

int FileData::addGroup(const QString &name)
{
    const int number = int(m_groups.size());
    m_groups.emplace_back(m_groupNames.take(OutputNames::clean(name), OutputNames::Kind::Folder),
                          number);
    m_namesInGroup.insert(m_namesInGroup.end() - 1, OutputNames());
    return number;
}

void FileData::add(const FileEntry &entry)
{
    OutputNames &names =
        entry.group < 0 ? m_namesInGroup.back() : m_namesInGroup[std::size_t(entry.group)];
    const QByteArrayView ownName = PathParts::name(m_files.index().path(entry.row));
    int nameIndex = -1;
    if (!entry.name.isEmpty() || !names.takeClean(ownName)) {
        const QString wanted = entry.name.isEmpty() ? PathParts::text(ownName) : entry.name;
        nameIndex = int(m_names.size());
        m_names.append(names.take(OutputNames::clean(wanted)));
    }
    const int index = int(m_records.size());
    m_records.push_back({ entry.date.isValid() ? entry.date.toMSecsSinceEpoch() : kNoDate,
                          entry.id < 0 ? index : entry.id,
                          entry.row,
                          entry.group,
                          nameIndex,
                          entry.deleted });
    m_items.emplace_back(*this, index);
}

QList<BkAbstractItem *> FileData::recoverFileList() const
{
    QList<BkAbstractItem *> list;
    list.reserve(recoverCount());
    for (FileItem &item : m_items)
        list.append(&item);
    return list;
}

QString FileData::filePath(int index) const
{
    return m_files.plainPath(record(index).row);
}

QByteArray FileData::fileData(int index) const
{
    constexpr qint64 kFewBytes = 1 << 20;
    const FileIndex::Row row = record(index).row;
    return isStreamed(index) && m_files.contentSize(row) <= kFewBytes
        ? m_files.content(row, kFewBytes)
        : QByteArray();
}

bool FileData::isStreamed(int /*index*/) const
{
    return m_files.isEncrypted();
}

std::unique_ptr<QIODevice> FileData::openStream(int index) const
{
    Result<std::unique_ptr<QIODevice>> content = m_files.openContent(record(index).row);
    if (content)
        return content.take();
    return std::make_unique<NoContent>(words(content.error().what));
}

qint64 FileData::sizeBytes(int index) const
{
    return m_files.contentSize(record(index).row);
}

QDateTime FileData::fileDate(int index) const
{
    return m_files.record(record(index).row).modified;
}

QString FileData::name(int index) const
{
    const Record &file = record(index);
    return file.name < 0 ? PathParts::text(PathParts::name(m_files.index().path(file.row)))
                         : m_names.at(file.name);
}

QString FileData::source(int index) const
{
    return m_files.place(record(index).row);
}

QDateTime FileData::date(int index) const
{
    const Record &file = record(index);
    return file.dateMs == kNoDate ? fileDate(index)
                                  : QDateTime::fromMSecsSinceEpoch(file.dateMs, Qt::UTC);
}

qint64 FileData::id(int index) const
{
    return record(index).id;
}

bool FileData::isDeleted(int index) const
{
    return record(index).deleted;
}

BkAbstractItem *FileData::group(int index) const
{
    const int number = record(index).group;
    return number < 0 ? nullptr : &m_groups[std::size_t(number)];
}

} // namespace PhoneItems
