#ifndef EXPORT_HEICCOPIES_H
#define EXPORT_HEICCOPIES_H

#include "export/CICopyStep.h"

namespace Export {

/*!
    \brief Writes a JPEG beside each HEIC picture that an export copies.

    It is called like the picture, with ".jpg" behind: "IMG_0001.HEIC.jpg".
*/
class HeicCopies final : public CICopyStep
{
public:
    std::optional<CIExportReport::Fault> fileCopied(const QString &path) override;

    //! How many were written.
    int count() const { return m_count; }

private:
    int m_count = 0;
};

} // namespace Export

#endif
