#include "export/CFileExporter.h"

#include "export/CUtils.h"
#include "platform/CCommonUtils.h"
#include "platform/CIProgressCallback.h"
#include "platform/NativeFile_p.h"
#include "platform/Translation_p.h"

#include <QFile>
#include <QFileInfo>
#include <QIODevice>

#include <cerrno>

using DataExport::tr;

namespace {

constexpr int kChunk = 16384;

// The two parts of the name that an item's file gets, without what makes it free.
struct OutputName
{
    explicit OutputName(const QString &itemName)
    {
        const QString safe = CUtils::safeFileName(itemName);
        const auto dot = safe.lastIndexOf(QLatin1Char('.'));
        base = dot < 0 ? safe : safe.left(dot);
        if (dot >= 0 && dot + 1 < safe.size())
            extension = safe.mid(dot);
        while (base.startsWith(QLatin1Char('.')))
            base.remove(0, 1);
        if (base.isEmpty() && extension.isEmpty())
            base = QStringLiteral("_");
    }

    QString base;
    QString extension; // with its dot
};

CIExportReport::Fault missing()
{
    return { CIExportReport::Cause::Source, tr("Its file is missing.") };
}

CIExportReport::Fault unreadable(const QString &why, int systemError = 0)
{
    return { CIExportReport::Cause::Source,
             tr("Its file could not be read: %1.").arg(why),
             systemError };
}

CIExportReport::Fault readFault(const NativeFile &source)
{
    return unreadable(source.errorString(), source.error());
}

CIExportReport::Fault readFault(const QIODevice &source)
{
    return unreadable(source.errorString());
}

// A file being written, which goes away again unless it is completed.
class Target
{
public:
    Target(const QString &folder, const QString &itemName)
    {
        // Most names are free: to ask before would cost every file a look at the disk.
        const OutputName name(itemName);
        m_path = folder + QLatin1Char('/') + name.base + name.extension;
        m_created = m_file.create(m_path);
        if (!m_created && m_file.error() == EEXIST) {
            m_path = CCommonUtils::uniqFileName(QDir(folder), name.base, name.extension);
            m_created = m_file.create(m_path);
        }
    }
    ~Target()
    {
        m_file.close();
        if (m_created && !m_completed)
            QFile::remove(m_path);
    }
    Target(const Target &) = delete;
    Target &operator=(const Target &) = delete;

    bool isOpen() const { return m_created; }
    const QString &path() const { return m_path; }
    bool write(const char *data, qint64 size) { return m_file.write(data, size); }

    // The last errors of a network disk come when a file is closed.
    bool complete(const QDateTime &date)
    {
        if (date.isValid())
            m_file.setModified(date);
        m_completed = m_file.close();
        return m_completed;
    }
    CIExportReport::Fault fault() const
    {
        return { CIExportReport::Cause::Target,
                 tr("It could not be written to “%1”: %2.").arg(m_path, m_file.errorString()),
                 m_file.error() };
    }

private:
    NativeFile m_file;
    QString m_path;
    bool m_created = false;
    bool m_completed = false;
};

} // namespace

CFileExporter::CFileExporter()
    : CIDataExporter(CIExportReport::Output::Copies)
{
}

CFileExporter::~CFileExporter() = default;

bool CFileExporter::exportData(const QString &srcPath, const QString &name)
{
    NativeFile source;
    if (!source.openForReading(srcPath)) {
        return fail(name, source.error() == ENOENT ? missing() : readFault(source));
    }
    return writeFile(name, source);
}

bool CFileExporter::exportStream(QIODevice *source, const QString &name)
{
    if (!source)
        return fail(name, missing());
    if (!source->isOpen())
        return fail(name, { CIExportReport::Cause::Source, source->errorString() });
    return writeFile(name, *source);
}

template <class Source>
bool CFileExporter::writeFile(const QString &name, Source &source)
{
    Target target(m_curPath, name);
    if (!target.isOpen())
        return fail(name, target.fault());

    char chunk[kChunk];
    for (;;) {
        const qint64 count = source.read(chunk, kChunk);
        if (count < 0)
            return fail(name, readFault(source));
        if (count == 0)
            break;
        if (!target.write(chunk, count))
            return fail(name, target.fault());
        if (!progressFileCopy(static_cast<int>(count))) {
            setStopped();
            return true;
        }
    }
    if (!target.complete(m_fileDate))
        return fail(name, target.fault());
    reportFile(reportName(name), target.path());
    reportExported(reportName(name));
    return true;
}

bool CFileExporter::exportDepends(const QString & /*srcPath*/, const QString & /*name*/)
{
    return true;
}

bool CFileExporter::exportDepends(const QByteArray &data, const QString &name)
{
    Target target(m_curPath, name);
    const bool written = target.isOpen() && target.write(data.constData(), data.size())
        && target.complete(m_fileDate);
    progressFileCopy(static_cast<int>(data.size()));
    if (!written)
        return fail(name, target.fault());
    reportFile(reportName(name), target.path());
    reportExported(reportName(name));
    return true;
}

bool CFileExporter::openExporter(const QDir &outDir)
{
    m_curPath = outDir.absolutePath();
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
        const QDir current(m_curPath);
        if (!QFileInfo(current.filePath(folder)).isDir() && !current.mkdir(folder))
            return false;
        known = m_subDirs.insert(group, folder);
    }
    m_curPath += QLatin1Char('/') + *known;
    m_group = group;
    return true;
}

bool CFileExporter::backFromSubDir()
{
    m_group.clear();
    m_curPath.truncate(m_curPath.lastIndexOf(QLatin1Char('/')));
    return true;
}

QString CFileExporter::makeOutputFileName(const QString &name) const
{
    const OutputName output(name);
    return CCommonUtils::uniqFileName(QDir(m_curPath), output.base, output.extension);
}

bool CFileExporter::progressFileCopy(int bytes)
{
    return !m_progress || m_progress->progress(bytes);
}

bool CFileExporter::fail(const QString &name, const CIExportReport::Fault &fault)
{
    reportFailure(reportName(name), fault);
    return false;
}

QString CFileExporter::reportName(const QString &name) const
{
    return m_group.isEmpty() ? name : m_group + QLatin1Char('/') + name;
}
