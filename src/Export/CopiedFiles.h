#ifndef EXPORT_COPIEDFILES_H
#define EXPORT_COPIEDFILES_H

#include "Archive/media/ExportedFiles.h"
#include "Export/HeicCopies.h"

namespace Export {

/*!
    \brief Remembers where each file of the backup was copied to, and saves HEIC pictures as JPEG, too,
    if asked to.
*/
class CopiedFiles final : public CICopyStep
{
public:
    //! \a output is the absolute path of OUTPUT, \a count the number of files in the backup.
    CopiedFiles(const QString &output, int count, bool convertHeic);

    void itemStarts(const BkFileItem &item) override;
    std::optional<CIExportReport::Fault> fileCopied(const QString &path) override;

    const Archive::ExportedFiles &files() const { return m_files; }

    //! How many JPEG files were written.
    int jpegCopies() const { return m_heicCopies.count(); }

private:
    const QString m_output;
    const bool m_convertHeic;
    HeicCopies m_heicCopies;
    Archive::ExportedFiles m_files;
    PhoneBackup::FileIndex::Row m_row = PhoneBackup::FileIndex::kNone;
};

} // namespace Export

#endif
