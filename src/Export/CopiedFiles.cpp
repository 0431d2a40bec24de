#include "Export/CopiedFiles.h"

#include "Export/NewFile.h"
#include "Export/SavedBeside.h"
#include "Export/SoundToPlayable/SoundToPlayable.h"
#include "PhoneItems/shared/FileItem.h"

#include <QDir>

namespace Export {

using namespace Qt::StringLiterals;
using PhoneBackup::FileIndex;

CopiedFiles::CopiedFiles(const QString &output, int count, bool heic, bool sound)
    : m_output(output)
    , m_convertsHeic(heic)
    , m_convertsSound(sound)
    , m_files(count)
{
}

void CopiedFiles::itemStarts(const BkFileItem &item)
{
    const auto *file = dynamic_cast<const PhoneItems::FileItem *>(&item);
    m_row = file ? file->row() : FileIndex::kNone;
}

std::optional<CIExportReport::Fault> CopiedFiles::fileCopied(const QString &path)
{
    if (m_row != FileIndex::kNone)
        m_files.add(m_row, QDir(m_output).relativeFilePath(path));
    if (m_convertsSound && SoundToPlayable::isWanted(path))
        return convertSound(path);
    if (!m_convertsHeic)
        return std::nullopt;
    const int before = m_heicCopies.count();
    auto fault = m_heicCopies.fileCopied(path);
    if (m_row != FileIndex::kNone && m_heicCopies.count() > before)
        m_files.addVersion(m_row, QDir(m_output).relativeFilePath(m_heicCopies.lastPath()));
    return fault;
}

std::optional<CIExportReport::Fault> CopiedFiles::convertSound(const QString &path)
{
    using Fault = CIExportReport::Fault;
    const SoundToPlayable::Conversion made = SoundToPlayable::convert(path);
    if (made.sound.isEmpty()) {
        return Fault { CIExportReport::Cause::Content,
                       u"The file was copied, but its sound could not be converted: %1."_s.arg(
                           made.why) };
    }
    const SavedBeside saved = saveBeside(path, made.extension, made.sound);
    if (saved.error != 0) {
        return Fault { CIExportReport::Cause::Target,
                       u"Its converted copy could not be written to “%1”: %2."_s.arg(
                           saved.path, errorText(saved.error)),
                       saved.error };
    }
    ++m_soundCopies;
    if (m_row != FileIndex::kNone)
        m_files.addVersion(m_row, QDir(m_output).relativeFilePath(saved.path));
    return std::nullopt;
}

} // namespace Export
