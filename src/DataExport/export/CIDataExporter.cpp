#include "export/CIDataExporter.h"

#include "platform/CCommonUtils.h"
#include "platform/OutputFile_p.h"
#include "platform/OutputFolder_p.h"
#include "platform/Translation_p.h"

#include <ranges>
#include <utility>

DATAEXPORT_USE_TR(DataExport);

namespace {

// A folder path that would leave the target folder, or be the target folder itself.
bool leadsOutside(const QString &path)
{
    return path.isEmpty() || QDir::cleanPath(path) == QLatin1String(".")
        || path.startsWith(QLatin1Char(':')) || path.contains(QLatin1String(".."))
        || QDir::isAbsolutePath(path);
}

} // namespace

CIDataExporter::CIDataExporter(CIExportReport::Output output)
    : m_dir(QString())
    , m_output(output)
{
}

CIDataExporter::~CIDataExporter() = default;

bool CIDataExporter::itemExportBegin(const QString & /*itemName*/)
{
    return true;
}

bool CIDataExporter::itemExportEnd()
{
    return true;
}

bool CIDataExporter::initExporter(const QDir &dir, const QString &name, const QString &folder)
{
    return initExporterWithSubDir(dir, name, folder, QString());
}

bool CIDataExporter::initExporterWithSubDir(const QDir &dir,
                                            const QString &name,
                                            const QString &folder,
                                            const QString &subDir)
{
    const QString path = subDir.isEmpty() ? folder : folder + QLatin1Char('/') + subDir;
    m_dir = dir;
    m_typeName = folder;
    if (leadsOutside(folder) || leadsOutside(path))
        return failToOpen(tr("The folder name cannot be used."));
    if (!makeFolders(path))
        return false;
    QDir outDir(dir);
    outDir.cd(path);
    m_name = name;
    m_folder = folder;
    if (openExporter(outDir))
        return true;
    return m_openFault.reason.isEmpty()
        ? failToOpen(tr("The output in “%1” could not be opened for writing.").arg(path))
        : failToOpen(m_openFault);
}

bool CIDataExporter::makeFolders(const QString &path)
{
    using namespace OutputFolder;
    QString current = m_dir.absolutePath();
    if (!m_dir.exists())
        m_dir.mkpath(QStringLiteral("."));
    for (const QString &part : path.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        current += QLatin1Char('/') + part;
        const Made made = make(current, m_hardened ? Links::Refused : Links::Followed);
        if (made.error != 0)
            return failToOpen({ CIExportReport::Cause::Target, made.reason(current), made.error });
        if (made.isNew)
            m_madeFolders += current;
    }
    if (m_hardened && !m_madeFolders.contains(current))
        OutputFile::removeLeftovers(QDir(current));
    return true;
}

bool CIDataExporter::exportData(const QString &text)
{
    return exportData(text, QString());
}

bool CIDataExporter::finish(bool ok)
{
    using End = CIExportReport::End;
    using Output = CIExportReport::Output;
    // A page or a table that looks finished but is not would be taken for the whole.
    const bool isOneFile = m_output == Output::Page || m_output == Output::Table;
    const bool keep = ok && !(m_hardened && m_stopped && isOneFile);
    const bool closed = closeExporter(keep);
    if (!m_hardened && !ok)
        CCommonUtils::rmDir(m_dir, m_folder, nullptr);
    if (m_hardened && (!keep || m_failed)) {
        for (const auto &made : std::views::reverse(std::as_const(m_madeFolders)))
            OutputFolder::removeEmpty(made);
    }
    reportEnd(!ok || !closed || m_failed ? End::Failed : m_stopped ? End::Stopped : End::Complete);
    return closed;
}

void CIDataExporter::skip(const QString &folder)
{
    m_typeName = folder;
    reportEnd(CIExportReport::End::NotStarted);
}

void CIDataExporter::setStopped()
{
    m_stopped = true;
}

void CIDataExporter::setFailed()
{
    m_failed = true;
}

void CIDataExporter::syncAll(const QString &folder)
{
    const int error = OutputFile::syncFileSystem(folder);
    if (error == 0)
        return;
    reportFailure(QString(),
                  { CIExportReport::Cause::Target,
                    tr("Not everything was written to the disk: %1.").arg(qt_error_string(error)),
                    error });
    setFailed();
}

void CIDataExporter::setOpenFault(const CIExportReport::Fault &fault)
{
    m_openFault = fault;
}

QString CIDataExporter::dependsPath(const QString &name) const
{
    return QStringLiteral("image/") + name;
}

void CIDataExporter::setReport(CIExportReport *report)
{
    m_report = report;
}

void CIDataExporter::setHardened(bool hardened)
{
    m_hardened = hardened;
}

bool CIDataExporter::isHardened() const
{
    return m_hardened;
}

void CIDataExporter::reportFailure(const QString &itemName, const CIExportReport::Fault &fault)
{
    if (m_report)
        m_report->itemFailed(m_typeName, itemName, fault);
}

void CIDataExporter::reportExported(const QString &itemName)
{
    if (m_report)
        m_report->itemExported(m_folder, itemName);
}

bool CIDataExporter::failToOpen(const CIExportReport::Fault &fault)
{
    reportFailure(QString(), fault);
    return false;
}

bool CIDataExporter::failToOpen(const QString &reason)
{
    return failToOpen({ CIExportReport::Cause::Target, reason });
}

void CIDataExporter::reportEnd(CIExportReport::End end)
{
    if (m_report)
        m_report->outputEnded(m_typeName, m_output, end);
}
