#include "export/CFileExporter.h"

#include "export/CICopyStep.h"
#include "export/CUtils.h"
#include "export/FileName_p.h"
#include "platform/CCommonUtils.h"
#include "platform/CIProgressCallback.h"
#include "platform/NativeFile_p.h"
#include "platform/OutputFile_p.h"
#include "platform/OutputFolder_p.h"
#include "platform/Translation_p.h"

#include <QFileInfo>
#include <QIODevice>

#include <cerrno>
#include <utility>

DATAEXPORT_USE_TR(DataExport);

namespace {

constexpr int kChunk = 16384;

constexpr qsizetype kLongestExtension = 32; // of a name that is too long

// The two parts of the name that an item's file gets, without what makes it free.
struct OutputName
{
    explicit OutputName(const QString &itemName, qsizetype maxBytes = FileName::kMaxBytes)
    {
        QString safe = CUtils::safeFileName(itemName);
        safe.replace(QChar(u'\0'), QLatin1Char('_')); // where a path would end
        const auto dot = safe.lastIndexOf(QLatin1Char('.'));
        if (dot >= 0 && dot + 1 < safe.size())
            extension = safe.mid(dot);
        base = dot < 0 ? safe : safe.left(dot);
        if (FileName::bytes(safe) > maxBytes && FileName::bytes(extension) > kLongestExtension)
            base = std::exchange(extension, QString()).prepend(base);
        while (base.startsWith(QLatin1Char('.')))
            base.remove(0, 1);
        base = FileName::cut(base, maxBytes - FileName::bytes(extension));
        if (base.isEmpty() && extension.isEmpty())
            base = QStringLiteral("_");
    }

    QString path(const QString &folder) const
    {
        return folder + QLatin1Char('/') + base + extension;
    }

    QString base;
    QString extension; // with its dot
};

QString freePath(const QString &folder, const QString &itemName)
{
    const auto numbered = [&](const OutputName &name) {
        return CCommonUtils::uniqFileName(QDir(folder), name.base, name.extension);
    };
    QString path = numbered(OutputName(itemName));
    if (FileName::bytes(QFileInfo(path).fileName()) <= FileName::kMaxBytes)
        return path;
    return numbered(OutputName(itemName, FileName::kMaxBytes - FileName::kNumberBytes));
}

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

// Sequential devices say with the same number that they are at their end and that they failed.
bool isAtEnd(const QIODevice &source, const QString &reasonBefore)
{
    return source.isSequential() && source.errorString() == reasonBefore;
}

bool isAtEnd(const NativeFile & /*source*/, const QString & /*reasonBefore*/)
{
    return false;
}

CIExportReport::Fault writeFault(const OutputFile &target)
{
    return { CIExportReport::Cause::Target,
             tr("It could not be written to “%1”: %2.").arg(target.path(), target.errorString()),
             target.error() };
}

bool open(OutputFile &target, const QString &folder, const QString &itemName, bool isStaged)
{
    const auto way = isStaged ? OutputFile::Way::Staged : OutputFile::Way::Direct;
    constexpr auto kKeep = OutputFile::Existing::Keep;
    // Most names are free: to ask before would cost every file a look at the disk.
    return target.open(OutputName(itemName).path(folder), way, kKeep)
        || (target.error() == EEXIST && target.open(freePath(folder, itemName), way, kKeep));
}

// The last errors of a network disk come when a file is closed.
bool complete(OutputFile &target,
              const QString &folder,
              const QString &itemName,
              const QDateTime &date)
{
    if (date.isValid())
        target.setModified(date);
    bool done = target.complete();
    while (!done && target.isOpen() && target.error() == EEXIST)
        done = target.moveTo(freePath(folder, itemName));
    return done;
}

} // namespace

CICopyStep::~CICopyStep() = default;

void CICopyStep::itemStarts(const BkFileItem & /*item*/) { }

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
    OutputFile target;
    if (m_curPath.isEmpty() || !open(target, m_curPath, name, isHardened()))
        return fail(name, writeFault(target));

    const QString reasonBefore = source.errorString();
    char chunk[kChunk];
    for (;;) {
        const qint64 count = source.read(chunk, kChunk);
        if (count < 0 && isAtEnd(source, reasonBefore))
            break;
        if (count < 0)
            return fail(name, readFault(source));
        if (count == 0)
            break;
        if (!target.write(chunk, count))
            return fail(name, writeFault(target));
        if (!progressFileCopy(static_cast<int>(count))) {
            setStopped();
            return true;
        }
    }
    if (!complete(target, m_curPath, name, m_fileDate))
        return fail(name, writeFault(target));
    tellWritten(name, target.path());
    return true;
}

bool CFileExporter::exportDepends(const QString & /*srcPath*/, const QString & /*name*/)
{
    return true;
}

bool CFileExporter::exportDepends(const QByteArray &data, const QString &name)
{
    OutputFile target;
    const bool written = !m_curPath.isEmpty() && open(target, m_curPath, name, isHardened())
        && target.write(data.constData(), data.size())
        && complete(target, m_curPath, name, m_fileDate);
    progressFileCopy(static_cast<int>(data.size()));
    if (!written)
        return fail(name, writeFault(target));
    tellWritten(name, target.path());
    return true;
}

bool CFileExporter::openExporter(const QDir &outDir)
{
    m_rootPath = outDir.absolutePath();
    m_curPath = m_rootPath;
    return true;
}

bool CFileExporter::closeExporter(bool ok)
{
    if (isHardened() && ok && m_hasWritten)
        syncAll(m_rootPath);
    return true;
}

void CFileExporter::setExportProgress(CIProgressCallback *progress)
{
    m_progress = progress;
}

void CFileExporter::setCopyStep(CICopyStep *step)
{
    m_copyStep = step;
}

void CFileExporter::setFileDate(const QDateTime &date)
{
    m_fileDate = date;
}

bool CFileExporter::intoSubDir(const QString &group)
{
    if (m_curPath.isEmpty() || group.isEmpty() || group == QLatin1String(".")
        || group == QLatin1String(".."))
        return false;
    const bool isKnown = m_subDirs.contains(group);
    const QString folder =
        isKnown ? m_subDirs.value(group) : FileName::visible(group, FileName::kMaxBytes);
    const QString path = m_curPath + QLatin1Char('/') + folder;
    if (!enterFolder(path, isKnown))
        return false;
    m_subDirs.insert(group, folder);
    m_curPath = path;
    m_group = group;
    return true;
}

bool CFileExporter::enterFolder(const QString &path, bool isKnown)
{
    if (isKnown)
        return QFileInfo(path).isDir();
    const auto made = OutputFolder::make(
        path, isHardened() ? OutputFolder::Links::Refused : OutputFolder::Links::Followed);
    if (isHardened() && made.error == 0 && !made.isNew)
        OutputFile::removeLeftovers(QDir(path));
    return made.error == 0;
}

bool CFileExporter::backFromSubDir()
{
    m_group.clear();
    m_curPath.truncate(m_curPath.lastIndexOf(QLatin1Char('/')));
    return true;
}

QString CFileExporter::makeOutputFileName(const QString &name) const
{
    return freePath(m_curPath, name);
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

void CFileExporter::tellWritten(const QString &name, const QString &path)
{
    m_hasWritten = true;
    const auto fault = m_copyStep ? m_copyStep->fileCopied(path) : std::nullopt;
    if (fault)
        reportFailure(reportName(name), *fault);
    else
        reportExported(reportName(name));
}
