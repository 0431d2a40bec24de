#include "export/CFileExporter.h"

#include "export/CUtils.h"
#include "platform/CCommonUtils.h"
#include "platform/CIProgressCallback.h"
#include "platform/Translation_p.h"

#include <QFile>

using DataExport::tr;

namespace {

constexpr qint64 kChunk = 16384;

// Unbuffered, so that a full disk shows at the write that meets it; new, so that nothing is
// replaced.
constexpr QIODevice::OpenMode kTargetMode =
    QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered;

QString notWritten(const QFile &target)
{
    return tr("It could not be written to “%1”: %2.").arg(target.fileName(), target.errorString());
}

// Dates and closes what was written; the last errors of a network disk come when a file is closed.
bool complete(QFile &target, const QDateTime &date)
{
    if (date.isValid())
        target.setFileTime(date, QFileDevice::FileModificationTime);
    target.unsetError(); // a file system without such dates is no reason to lose the file
    target.close();
    return target.error() == QFileDevice::NoError;
}

void discard(QFile &target)
{
    target.close();
    target.remove();
}

} // namespace

CFileExporter::CFileExporter() = default;

CFileExporter::~CFileExporter() = default;

bool CFileExporter::exportData(const QString &srcPath, const QString &name)
{
    QFile target(makeOutputFileName(name));
    QFile source(srcPath);
    QString why;
    if (!CCommonUtils::openForReading(source, &why)) {
        return fail(name,
                    CIExportReport::Cause::Source,
                    source.exists() ? tr("Its file could not be read: %1.").arg(why)
                                    : tr("Its file is missing."));
    }
    if (!target.open(kTargetMode))
        return fail(name, CIExportReport::Cause::Target, notWritten(target));

    char chunk[kChunk];
    for (;;) {
        const qint64 count = source.read(chunk, kChunk);
        if (count < 0) {
            discard(target);
            return fail(name,
                        CIExportReport::Cause::Source,
                        tr("Its file could not be read: %1.").arg(source.errorString()));
        }
        if (count == 0)
            break;
        if (target.write(chunk, count) != count) {
            const QString reason = notWritten(target);
            discard(target);
            return fail(name, CIExportReport::Cause::Target, reason);
        }
        if (!progressFileCopy(static_cast<int>(count))) {
            discard(target);
            return true;
        }
    }
    if (!complete(target, m_fileDate)) {
        const QString reason = notWritten(target);
        target.remove();
        return fail(name, CIExportReport::Cause::Target, reason);
    }
    reportExported(reportName(name));
    return true;
}

bool CFileExporter::exportDepends(const QString & /*srcPath*/, const QString & /*name*/)
{
    return true;
}

bool CFileExporter::exportDepends(const QByteArray &data, const QString &name)
{
    QFile target(makeOutputFileName(name));
    bool written = false;
    QString reason;
    if (target.open(kTargetMode)) {
        written = target.write(data) == data.size() && complete(target, m_fileDate);
        if (!written) {
            reason = notWritten(target);
            discard(target);
        }
    } else {
        reason = notWritten(target);
    }
    progressFileCopy(static_cast<int>(data.size()));
    if (!written)
        return fail(name, CIExportReport::Cause::Target, reason);
    reportExported(reportName(name));
    return true;
}

bool CFileExporter::openExporter(const QDir &outDir)
{
    m_curDir = outDir;
    return true;
}

bool CFileExporter::closeExporter(bool /*ok*/)
{
    return true;
}

void CFileExporter::setExportProgress(CIProgressCallback *progress)
{
    m_progress = progress;
}

void CFileExporter::setFileDate(const QDateTime &date)
{
    m_fileDate = date;
}

bool CFileExporter::intoSubDir(const QString &group)
{
    auto known = m_subDirs.constFind(group);
    if (known == m_subDirs.constEnd()) {
        const QString folder = CUtils::safeFileName(group);
        if (folder.isEmpty() || folder == QLatin1String(".") || folder == QLatin1String(".."))
            return false;
        if (!m_curDir.exists(folder) && !m_curDir.mkdir(folder))
            return false;
        known = m_subDirs.insert(group, folder);
    }
    if (!m_curDir.cd(*known))
        return false;
    m_group = group;
    return true;
}

bool CFileExporter::backFromSubDir()
{
    m_group.clear();
    return m_curDir.cdUp();
}

QString CFileExporter::makeOutputFileName(const QString &name) const
{
    const QString safe = CUtils::safeFileName(name);
    const auto dot = safe.lastIndexOf(QLatin1Char('.'));
    QString base = dot < 0 ? safe : safe.left(dot);
    QString extension = dot < 0 ? QString() : safe.mid(dot);
    if (extension.size() == 1)
        extension.clear();
    while (base.startsWith(QLatin1Char('.')))
        base.remove(0, 1);
    if (base.isEmpty() && extension.isEmpty())
        base = QStringLiteral("_");
    return CCommonUtils::uniqFileName(m_curDir, base, extension);
}

bool CFileExporter::progressFileCopy(int bytes)
{
    return !m_progress || m_progress->progress(bytes);
}

bool CFileExporter::fail(const QString &name, CIExportReport::Cause cause, const QString &reason)
{
    reportFailure(reportName(name), cause, reason);
    return false;
}

QString CFileExporter::reportName(const QString &name) const
{
    return m_group.isEmpty() ? name : m_group + QLatin1Char('/') + name;
}
