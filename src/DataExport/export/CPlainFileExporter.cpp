#include "export/CPlainFileExporter.h"

#include "export/FileName_p.h"
#include "export/TextFile_p.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QFileInfo>

#include <cerrno>

DATAEXPORT_USE_TR(DataExport);

CPlainFileExporter::CPlainFileExporter(const QString &suffix, bool perItem)
    : CIDataExporter(perItem ? CIExportReport::Output::Cards : CIExportReport::Output::Table)
    , m_suffix(suffix)
    , m_perItem(perItem)
    , m_file(std::make_unique<TextFile>())
{
}

CPlainFileExporter::~CPlainFileExporter() = default;

void CPlainFileExporter::setCodec(const QString &codec, bool bom)
{
    m_codec = codec;
    m_bom = bom;
}

bool CPlainFileExporter::itemExportBegin(const QString &itemName)
{
    if (!m_perItem)
        return true;
    if (openFile(itemName))
        return true;
    reportFailure(itemName, openFault());
    setFailed();
    return false;
}

bool CPlainFileExporter::exportData(const QString &text, const QString & /*name*/)
{
    m_file->write(text);
    return true;
}

bool CPlainFileExporter::exportDepends(const QString & /*srcPath*/, const QString & /*name*/)
{
    return true;
}

bool CPlainFileExporter::exportDepends(const QByteArray & /*data*/, const QString & /*name*/)
{
    return true;
}

bool CPlainFileExporter::itemExportEnd()
{
    if (m_perItem && !closeFile(true))
        setFailed();
    return true;
}

bool CPlainFileExporter::openExporter(const QDir &outDir)
{
    m_curDir = outDir;
    if (m_perItem)
        return true;
    if (openFile(QStringLiteral("%1's %2").arg(m_name, m_folder)))
        return true;
    setOpenFault(openFault());
    return false;
}

bool CPlainFileExporter::closeExporter(bool ok)
{
    const bool isOneFile = !m_perItem;
    if (isOneFile && !closeFile(ok))
        setFailed();
    if (isHardened() && ok && m_perItem && m_hasWritten)
        syncAll(m_curDir->absolutePath());
    return true;
}

bool CPlainFileExporter::openFile(const QString &baseName)
{
    const auto encoding = m_codec.isEmpty()
        ? std::optional(QStringConverter::Utf8)
        : QStringConverter::encodingForName(m_codec.toUtf8().constData());
    if (!encoding || !m_curDir)
        return false;
    m_baseName = baseName;
    const auto way = isHardened() ? OutputFile::Way::Staged : OutputFile::Way::Direct;
    return m_file->open(
        uniqFileName(baseName), { *encoding, m_bom }, way, OutputFile::Existing::Keep);
}

bool CPlainFileExporter::closeFile(bool ok)
{
    using Closing = TextFile::Closing;
    const bool isSynced = isHardened() && !m_perItem;
    bool closed = m_file->close(!ok            ? Closing::Discard
                                    : isSynced ? Closing::KeepOnDisk
                                               : Closing::Keep);
    while (!closed && m_file->isOpen() && m_file->error() == EEXIST)
        closed = m_file->moveTo(uniqFileName(m_baseName));
    if (!closed)
        reportFailure(
            QFileInfo(m_file->path()).fileName(),
            m_file->fault(
                tr("It could not be written completely: %1.").arg(m_file->errorString())));
    m_hasWritten |= closed;
    return closed;
}

CIExportReport::Fault CPlainFileExporter::openFault() const
{
    return m_file->fault(
        tr("It could not be written to “%1”: %2.").arg(m_file->path(), m_file->errorString()));
}

QString CPlainFileExporter::uniqFileName(const QString &baseName)
{
    if (isHardened()) {
        const QString name = OutputNames::clean(baseName, m_suffix.mid(1));
        QString path = m_curDir->filePath(m_namesTaken.take(name));
        while (QFileInfo::exists(path) || QFileInfo(path).isSymLink())
            path = m_curDir->filePath(m_namesTaken.take(name));
        return path;
    }
    const qsizetype room = FileName::kMaxBytes - FileName::bytes(m_suffix);
    const auto numbered = [this](const QString &base) {
        return CCommonUtils::uniqFileName(*m_curDir, base, m_suffix, m_usedNames[base]);
    };
    QString path = numbered(FileName::visible(baseName, room));
    if (FileName::bytes(QFileInfo(path).fileName()) <= FileName::kMaxBytes)
        return path;
    return numbered(FileName::visible(baseName, room - FileName::kNumberBytes));
}
