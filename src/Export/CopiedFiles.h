#ifndef EXPORT_COPIEDFILES_H
#define EXPORT_COPIEDFILES_H

#include "Archive/media/ExportedFiles.h"
#include "Export/HeicCopies.h"

namespace Export {

/*!
    \brief Remembers where each file of the backup was copied to, and saves what other computers and
    browsers do not show or play in another format, too, if asked to.
*/
class CopiedFiles final : public CICopyStep
{
public:
    //! \a output is the absolute path of OUTPUT, \a count the number of files in the backup.
    //! \a heic, \a sound: whether these are converted.
    CopiedFiles(const QString &output, int count, bool heic, bool sound);

    void itemStarts(const BkFileItem &item) override;
    std::optional<CIExportReport::Fault> fileCopied(const QString &path) override;

    const Archive::ExportedFiles &files() const { return m_files; }

    //! How many JPEG files were written, and how many files of sound.
    int jpegCopies() const { return m_heicCopies.count(); }
    int soundCopies() const { return m_soundCopies; }

private:
    std::optional<CIExportReport::Fault> convertSound(const QString &path);

    const QString m_output;
    const bool m_convertsHeic;
    const bool m_convertsSound;
    int m_soundCopies = 0;
    HeicCopies m_heicCopies;
    Archive::ExportedFiles m_files;
    PhoneBackup::FileIndex::Row m_row = PhoneBackup::FileIndex::kNone;
};

} // namespace Export

#endif
