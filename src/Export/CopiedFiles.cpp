#include "Export/CopiedFiles.h"

#include "PhoneItems/shared/FileItem.h"

#include <QDir>

namespace Export {

CopiedFiles::CopiedFiles(const QString &output, int count, bool convertHeic)
    : m_output(output)
    , m_convertHeic(convertHeic)
    , m_files(count)
{
}

void CopiedFiles::itemStarts(const BkFileItem &item)
{
    const auto *file = dynamic_cast<const PhoneItems::FileItem *>(&item);
    m_row = file ? file->row() : PhoneBackup::FileIndex::kNone;
}

std::optional<CIExportReport::Fault> CopiedFiles::fileCopied(const QString &path)
{
    if (m_row != PhoneBackup::FileIndex::kNone)
        m_files.add(m_row, QDir(m_output).relativeFilePath(path));
    if (!m_convertHeic)
        return std::nullopt;
    const int before = m_heicCopies.count();
    auto fault = m_heicCopies.fileCopied(path);
    if (m_row != PhoneBackup::FileIndex::kNone && m_heicCopies.count() > before)
        m_files.addJpeg(m_row, QDir(m_output).relativeFilePath(m_heicCopies.lastPath()));
    return fault;
}

} // namespace Export
