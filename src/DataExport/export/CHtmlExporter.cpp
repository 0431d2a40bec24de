#include "export/CHtmlExporter.h"

#include "export/CUtils.h"
#include "export/FileName_p.h"
#include "export/PageImages_p.h"
#include "export/TextFile_p.h"
#include "platform/OutputNames.h"
#include "platform/Translation_p.h"
#include "platform/UxResourceMgr.h"

#include <QFileInfo>

DATAEXPORT_USE_TR(DataExport);

namespace {

constexpr char kBeginning[] = "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
                              "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\"><html>";
constexpr char kEncoding[] =
    "<head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\">";

// The images beside the page and its own style, nothing else. A page that is opened from disk has
// no origin of its own: there "file:" is what "'self'" is for one that a server hands out.
constexpr char kPolicy[] =
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
    "img-src 'self' file:; style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'\">";

// Pages are laid out for wide windows; this lets them fit the narrow ones of phones.
constexpr char kViewport[] = "<meta name=\"viewport\" content=\"width=device-width\">";
constexpr char kNarrowStyle[] =
    "<style>"
    "h1, h2, p, .main-title { overflow-wrap:anywhere; }"
    "div#wrap { max-width:calc(100% - 10px); }" // beside padding and border
    "@media (max-width:709px) { " // a contact's name beside its picture
    ".main-text { width:calc(100% - 170px); margin-left:8px; } "
    ".main-title { font-size:22px; } }"
    "@media (max-width:600px) { table#wrap { width:100%; } "
    "table#wrap .main table tr td { min-width:0; padding:4px 2px; font-size:12px; } }"
    "</style>";

} // namespace

const QString CHtmlExporter::HTML_IMG_FOLDER = QStringLiteral("image");
const QString CHtmlExporter::DELETE_FLAG_IMG = QStringLiteral("deleted.png");

CHtmlExporter::CHtmlExporter()
    : CIDataExporter(CIExportReport::Output::Page)
    , m_file(std::make_unique<TextFile>())
    , m_images(std::make_unique<PageImages>())
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
    return tellImage(name, m_images->copy(srcPath, name));
}

bool CHtmlExporter::exportDepends(const QByteArray &data, const QString &name)
{
    bool isOpened = false;
    tellImage(name, m_images->write(data, name, isOpened));
    return isOpened;
}

QString CHtmlExporter::dependsPath(const QString &name) const
{
    return m_images->pathOf(name);
}

bool CHtmlExporter::openExporter(const QDir &outDir)
{
    if (const auto fault = m_images->open(outDir.absolutePath(), isHardened())) {
        setOpenFault(*fault);
        return false;
    }
    const QString name = QStringLiteral("%1's %2").arg(m_name, m_folder);
    const QLatin1String suffix(".html");
    const QString file = isHardened()
        ? OutputNames::clean(name, QStringLiteral("html"))
        : FileName::visible(name, FileName::kMaxBytes - suffix.size()) + suffix;
    const auto way = isHardened() ? OutputFile::Way::Staged : OutputFile::Way::Direct;
    if (!m_file->open(outDir.absoluteFilePath(file), {}, way, OutputFile::Existing::Replace)) {
        setOpenFault(m_file->fault(
            tr("It could not be written to “%1”: %2.").arg(m_file->path(), m_file->errorString())));
        return false;
    }
    //: The code of the language of these words.
    const QString beginning = isHardened()
        ? QStringLiteral("<!DOCTYPE html><html lang=\"%1\">").arg(tr("en"))
        : QString(QLatin1String(kBeginning));
    m_file->write(beginning + QLatin1String(kEncoding)
                  + (isHardened() ? QLatin1String(kPolicy) + QLatin1String(kViewport) : QString())
                  + QLatin1String("<title>") + CUtils::safeFileName(name)
                  + QLatin1String("</title>") + m_style
                  + QLatin1String(isHardened() ? kNarrowStyle : "")
                  + QLatin1String("</head><body>"));
    return true;
}

bool CHtmlExporter::closeExporter(bool ok)
{
    using Closing = TextFile::Closing;
    const bool isWhole = ok && m_file->isOpen();
    const QString replaced =
        isWhole && isHardened() ? PageImages::markOf(m_file->path()) : QString();
    if (isWhole)
        m_file->write((isHardened() ? m_images->mark() : QString())
                      + QLatin1String("</body></html>"));
    if (isWhole)
        m_images->complete();
    const bool closed = m_file->close(!ok                ? Closing::Discard
                                          : isHardened() ? Closing::KeepOnDisk
                                                         : Closing::Keep);
    if (!closed) {
        reportFailure(
            QFileInfo(m_file->path()).fileName(),
            m_file->fault(
                tr("It could not be written completely: %1.").arg(m_file->errorString())));
        setFailed();
    }
    if (closed && isWhole)
        m_images->removeMarked(replaced);
    else if (isHardened())
        m_images->discard();
    return true;
}

void CHtmlExporter::exportDeleteFlagImage(CIDataExporter *exporter)
{
    exporter->exportDepends(
        QStringLiteral("%1/DataExport/%2")
            .arg(UxResourceMgr::instance()->productResourceRoot(), DELETE_FLAG_IMG),
        DELETE_FLAG_IMG);
}

bool CHtmlExporter::tellImage(const QString &name,
                              const std::optional<CIExportReport::Fault> &fault)
{
    if (fault)
        reportFailure(HTML_IMG_FOLDER + QLatin1Char('/') + name, *fault);
    return !fault;
}
