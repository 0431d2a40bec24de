#include "Archive/media/ExportedFiles.h"

namespace Archive {

using PhoneBackup::FileIndex;

ExportedFiles::ExportedFiles(int count)
    : m_places(std::size_t(count))
{
}

void ExportedFiles::add(FileIndex::Row row, const QString &path)
{
    Place &place = m_places[std::size_t(row)];
    if (place.name != 0)
        return;
    const qsizetype slash = path.lastIndexOf(u'/') + 1;
    const QString folder = path.first(slash);
    if (!m_folderNumbers.contains(folder)) {
        m_folderNumbers.insert(folder, quint32(m_folders.size()));
        m_folders.push_back(folder);
    }
    place.folder = m_folderNumbers.value(folder);
    place.name = quint32(m_names.size()) + 1;
    m_names += QStringView(path).sliced(slash).toUtf8();
    m_names += '\0';
}

void ExportedFiles::addVersion(FileIndex::Row row, const QString &path)
{
    m_versions.insert(row, path);
}

QString ExportedFiles::nameOf(FileIndex::Row row) const
{
    if (row < 0 || std::size_t(row) >= m_places.size() || m_places[std::size_t(row)].name == 0)
        return {};
    const Place &place = m_places[std::size_t(row)];
    return m_folders[place.folder] + QString::fromUtf8(m_names.constData() + place.name - 1);
}

QString ExportedFiles::shownOf(FileIndex::Row row) const
{
    const auto version = m_versions.constFind(row);
    return version != m_versions.cend() ? *version : nameOf(row);
}

} // namespace Archive
