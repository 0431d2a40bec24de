#ifndef CLI_HEICCOPIES_H
#define CLI_HEICCOPIES_H

#include "export/CIExportReport.h"

namespace Cli {

/*!
    \brief Writes a JPEG beside each HEIC picture that an export copies, and passes the report on.

    Such a picture is known by its name or, where its name is that of another picture, by its first
    bytes: phones put HEIC under the name of the JPEG that was edited.

    The JPEG is of full size and upright, and keeps date, place and the other remarks of the camera.
    It is called like the picture, with ".jpg" behind: "IMG_0001.HEIC.jpg".
*/
class HeicCopies final : public CIExportReport
{
public:
    //! Whether files of this name are such pictures.
    static bool isHeic(const QString &path);

    //! About how much room the JPEG files of pictures that take \a heicBytes need.
    static qint64 roomFor(qint64 heicBytes);

    //! \a report must outlive this.
    explicit HeicCopies(CIExportReport &report)
        : m_report(report)
    {
    }

    void itemFailed(const QString &typeName, const QString &itemName, const Fault &fault) override;
    void itemExported(const QString &typeName, const QString &itemName) override;
    void
    fileWritten(const QString &typeName, const QString &itemName, const QString &path) override;

    void outputEnded(const QString &typeName, Output output, End end) override;

    //! How many were written.
    int count() const { return m_count; }

private:
    void writeJpeg(const QString &typeName, const QString &itemName, const QString &path);
    void fail(const QString &typeName, const QString &itemName, const Fault &fault);

    CIExportReport &m_report;
    bool m_failed = false; // the item that was copied last
    int m_count = 0;
};

} // namespace Cli

#endif
