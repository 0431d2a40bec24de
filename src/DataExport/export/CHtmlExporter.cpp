#include "export/CHtmlExporter.h"

#include "export/CUtils.h"
#include "export/FileName_p.h"
#include "export/TextFile_p.h"
#include "platform/CCommonUtils.h"
#include "platform/OutputNames.h"
#include "platform/Translation_p.h"
#include "platform/UxResourceMgr.h"

#include <QFile>
#include <QFileInfo>

using DataExport::tr;

namespace {

constexpr char kHeadToPolicy[] =
    "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
    "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\">"
    "<html><head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\">";

// The images beside the page and its own style, nothing else. A page that is opened from disk has
// no origin of its own: there "file:" is what "'self'" is for one that a server hands out.
constexpr char kPolicy[] =
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
    "img-src 'self' file:; style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'\">";

} // namespace

const QString CHtmlExporter::HTML_IMG_FOLDER = QStringLiteral("image");
const QString CHtmlExporter::DELETE_FLAG_IMG = QStringLiteral("deleted.png");

CHtmlExporter::CHtmlExporter()
    : CIDataExporter(CIExportReport::Output::Page)
    , m_file(std::make_unique<TextFile>())
{
}

CHtmlExporter::~CHtmlExporter() = default;

void CHtmlExporter::setStyle(const QString &style)
{
    m_style = style;
}

bool CHtmlExporter::exportData(const QString &text, const QString & /*name*/)
{
    m_file->write(text);
    return true;
}

bool CHtmlExporter::exportDepends(const QString &srcPath, const QString &name)
{
    makeImageFolder();
    if (CCommonUtils::copyFile(srcPath, m_imgDir, name))
        return true;
    return failImage(name, tr("The image “%1” could not be copied.").arg(srcPath));
}

bool CHtmlExporter::exportDepends(const QByteArray &data, const QString &name)
{
    makeImageFolder();
    QFile image(m_imgDir.absoluteFilePath(name));
    if (!image.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return failImage(name, tr("It could not be written: %1.").arg(image.errorString()));
    if (image.write(data) != data.size()) {
        failImage(name, tr("It could not be written: %1.").arg(image.errorString()));
        image.remove();
    }
    return true;
}

bool CHtmlExporter::openExporter(const QDir &outDir)
{
    m_imgDir = QDir(outDir.absoluteFilePath(HTML_IMG_FOLDER));
    const QString name = QStringLiteral("%1's %2").arg(m_name, m_folder);
    const QLatin1String suffix(".html");
    const QString file = isHardened()
        ? OutputNames::clean(name, QStringLiteral("html"))
        : FileName::visible(name, FileName::kMaxBytes - suffix.size()) + suffix;
    if (!m_file->open(outDir.absoluteFilePath(file), QStringConverter::Utf8, false))
        return false;
    m_file->write(QLatin1String(kHeadToPolicy) + QLatin1String(isHardened() ? kPolicy : "")
                  + QLatin1String("<title>") + CUtils::safeFileName(name)
                  + QLatin1String("</title>") + m_style + QLatin1String("</head><body>"));
    return true;
}

bool CHtmlExporter::closeExporter(bool ok)
{
    if (ok && m_file->isOpen())
        m_file->write(QStringLiteral("</body></html>"));
    if (!m_file->close(ok)) {
        reportFailure(QFileInfo(m_file->path()).fileName(),
                      { CIExportReport::Cause::Target,
                        tr("It could not be written completely: %1.").arg(m_file->error()) });
        setFailed();
    }
    return true;
}

void CHtmlExporter::exportDeleteFlagImage(CIDataExporter *exporter)
{
    exporter->exportDepends(
        QStringLiteral("%1/DataExport/%2")
            .arg(UxResourceMgr::instance()->productResourceRoot(), DELETE_FLAG_IMG),
        DELETE_FLAG_IMG);
}

void CHtmlExporter::makeImageFolder() const
{
    if (m_imgDir.exists())
        return;
    QDir page(m_imgDir);
    page.cdUp();
    page.mkpath(HTML_IMG_FOLDER);
}

bool CHtmlExporter::failImage(const QString &name, const QString &reason)
{
    reportFailure(HTML_IMG_FOLDER + QLatin1Char('/') + name,
                  { CIExportReport::Cause::Target, reason });
    return false;
}
