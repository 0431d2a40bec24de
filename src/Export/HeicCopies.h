#ifndef EXPORT_HEICCOPIES_H
#define EXPORT_HEICCOPIES_H

#include "export/CICopyStep.h"

namespace Export {

/*!
    \brief Saves each HEIC picture that an export copies as a JPEG, too.

    The JPEG is named after the picture: "IMG_0001.HEIC.jpg".
*/
class HeicCopies final : public CICopyStep
{
public:
    std::optional<CIExportReport::Fault> fileCopied(const QString &path) override;

    //! How many were written.
    int count() const { return m_count; }

    //! The absolute path of the last one.
    const QString &lastPath() const { return m_lastPath; }

private:
    int m_count = 0;
    QString m_lastPath;
};

} // namespace Export

#endif
