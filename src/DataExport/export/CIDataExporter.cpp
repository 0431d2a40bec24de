#include "export/CIDataExporter.h"

#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QFileInfo>

using DataExport::tr;

namespace {

// A folder path that would leave the target folder, or be the target folder itself.
bool leadsOutside(const QString &path)
{
    return path.isEmpty() || path == QLatin1String(".") || path.startsWith(QLatin1Char(':'))
        || path.contains(QLatin1String("..")) || QDir::isAbsolutePath(path);
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
    const QFileInfo target(dir.filePath(path));
    if (target.exists() && !target.isDir())
        return failToOpen(tr("A file stands where the folder “%1” is to be made.").arg(path));
    if (!dir.exists(path) && !dir.mkpath(path))
        return failToOpen(tr("The folder “%1” could not be made.").arg(path));
    QDir outDir(dir);
    outDir.cd(path);
    m_name = name;
    m_folder = folder;
    if (openExporter(outDir))
        return true;
    return failToOpen(tr("The output in “%1” could not be opened for writing.").arg(path));
}

bool CIDataExporter::exportData(const QString &text)
{
    return exportData(text, QString());
}

bool CIDataExporter::finish(bool ok)
{
    using End = CIExportReport::End;
    const bool closed = closeExporter(ok);
    if (!ok)
        CCommonUtils::rmDir(m_dir, m_folder, nullptr);
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

void CIDataExporter::reportFile(const QString &itemName, const QString &path)
{
    if (m_report)
        m_report->fileWritten(m_folder, itemName, path);
}

void CIDataExporter::reportExported(const QString &itemName)
{
    if (m_report)
        m_report->itemExported(m_folder, itemName);
}

bool CIDataExporter::failToOpen(const QString &reason)
{
    reportFailure(QString(), { CIExportReport::Cause::Target, reason });
    return false;
}

void CIDataExporter::reportEnd(CIExportReport::End end)
{
    if (m_report)
        m_report->outputEnded(m_typeName, m_output, end);
}
