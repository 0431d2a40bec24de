#ifndef DATAEXPORT_EXPORT_CHTMLEXPORTER_H
#define DATAEXPORT_EXPORT_CHTMLEXPORTER_H

#include "export/CIDataExporter.h"

#include <memory>
#include <optional>

class PageImages;
class TextFile;

/*!
    \brief Sink: writes one HTML page per export, with an image folder beside it.

    \par Order
    setStyle() and setHardened(), initExporter(), any number of exportData() and exportDepends(),
    then finish() exactly once, also after a failed initExporter().
    \par Bytes
    UTF-8 without a byte-order mark, no line breaks of its own. Text is written as it is: the caller
    has encoded it with CUtils::htmlEncode().
    \par Files
    The page "<owner>'s <data type>.html" lies in the data type's folder and replaces one of that
    name; its images lie in HTML_IMG_FOLDER, made with the first image. Leading dots of the name,
    which would hide the page, and what exceeds 255 bytes are left out.
    \par Hardened
    A Content-Security-Policy in the head lets the page show the images beside it and its own style,
    and nothing else: no script runs and nothing is requested, also when it is opened from disk.
    The page replaces an earlier one when it is complete and the disk has it. Images that are handed
    over as bytes lie where no other page has any: in HTML_IMG_FOLDER if this page made that folder,
    otherwise in a numbered folder in it. Those of the page that is replaced are removed.
    \par Errors
    A page that a full disk cut short is removed; the report is told of it and of every image that
    could not be placed.
    \par Memory
    Constant, whatever the page's length.
*/
class DATAEXPORT_EXPORT CHtmlExporter : public CIDataExporter
{
public:
    static const QString HTML_IMG_FOLDER; //!< Image folder, relative to the page: "image".
    static const QString DELETE_FLAG_IMG; //!< Mark of deleted items: "deleted.png".

    CHtmlExporter();
    ~CHtmlExporter() override;

    //! Sets the whole style element of the head. Without effect once the page is open.
    void setStyle(const QString &style);

    //! Appends \a text to the body as it is; \a name is ignored. \return true.
    bool exportData(const QString &text, const QString &name) override;
    using CIDataExporter::exportData;

    //! Copies the image file \a srcPath into the image folder as \a name.
    bool exportDepends(const QString &srcPath, const QString &name) override;

    //! Writes the image's bytes into the folder of the page's images as \a name. \return whether
    //! the file opened.
    bool exportDepends(const QByteArray &data, const QString &name) override;

    //! Path of such an image, relative to the page.
    QString dependsPath(const QString &name) const override;

    //! Opens the page and writes its head.
    bool openExporter(const QDir &outDir) override;

    //! Completes the page, or removes it unless \a ok, hardened with its images. \return true.
    bool closeExporter(bool ok) override;

    //! Hands the mark of deleted items to \a exporter, as DELETE_FLAG_IMG.
    static void exportDeleteFlagImage(CIDataExporter *exporter);

private:
    bool tellImage(const QString &name, const std::optional<CIExportReport::Fault> &fault);

    QString m_style;
    std::unique_ptr<TextFile> m_file;
    std::unique_ptr<PageImages> m_images;
};

#endif
