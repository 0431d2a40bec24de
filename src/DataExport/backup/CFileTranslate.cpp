#include "backup/CFileTranslate.h"

#include "backup/BkData.h"
#include "backup/BkDataType.h"
#include "backup/BkFileItem.h"
#include "backup/CBackupExporter.h"
#include "backup/SinkSettings_p.h"
#include "export/CFileExporter.h"
#include "export/CICopyStep.h"
#include "export/FileProgress.h"
#include "platform/CCommonUtils.h"
#include "platform/NativeFile_p.h"

#include <QIODevice>

#include <algorithm>

namespace {

constexpr int kUnitsPerFile = 100;

qint64 contentSize(const BkFileItem &file)
{
    if (file.isStreamed())
        return std::max<qint64>(file.sizeBytes(), 0);
    const qint64 inMemory = file.fileData().size();
    return inMemory > 0 ? inMemory : NativeFile::sizeBytes(file.filePath());
}

qint64 contentSize(const QList<BkAbstractItem *> &items)
{
    qint64 total = 0;
    for (const BkAbstractItem *item : items) {
        if (const auto *file = dynamic_cast<const BkFileItem *>(item))
            total += contentSize(*file);
    }
    return total;
}

void exportContent(const BkFileItem &file, CFileExporter &sink, bool protect)
{
    const QString name = file.value(0);
    sink.setFileDate(file.fileDate());
    if (sink.copyStep())
        sink.copyStep()->itemStarts(file);
    if (file.isStreamed()) {
        const std::unique_ptr<QIODevice> stream = file.openStream();
        sink.exportStream(stream.get(), name);
        return;
    }
    const QByteArray content = file.fileData();
    if (!content.isEmpty()) {
        sink.exportDepends(content, name);
        return;
    }
    const QString path = file.filePath();
    if (protect)
        CCommonUtils::protectMediaFile(path, false);
    sink.exportData(path, name);
    if (protect)
        CCommonUtils::protectMediaFile(path, true);
}

} // namespace

CFileTranslate::CFileTranslate(BkData *data)
    : m_data(data)
{
}

CFileTranslate::~CFileTranslate() = default;

bool CFileTranslate::translate(CIDataExporter *exporter, CIProgressCallback *progress, bool protect)
{
    auto *sink = dynamic_cast<CFileExporter *>(exporter);
    if (!sink)
        return false;
    const QList<BkAbstractItem *> items = m_data->recoverFileList();
    FileProgress bytes(progress, static_cast<int>(items.size()) * kUnitsPerFile);
    if (items.isEmpty())
        return true;
    bytes.setTotal(contentSize(items));
    sink->setExportProgress(&bytes);

    for (const BkAbstractItem *item : items) {
        if (!bytes.progress(0)) {
            sink->setStopped();
            break;
        }
        const auto *file = dynamic_cast<const BkFileItem *>(item);
        if (!file)
            continue;
        const BkAbstractItem *group = file->groupItem();
        const bool entered = group && sink->intoSubDir(group->value(0));
        exportContent(*file, *sink, protect);
        if (entered)
            sink->backFromSubDir();
    }
    sink->setExportProgress(nullptr); // it ends with this call, the sink does not
    return true;
}

bool CBackupExporter::exportFile(BkData *data,
                                 const QDir &dir,
                                 const QString &owner,
                                 const QString &typeName,
                                 CIProgressCallback *progress,
                                 CBackupExporter *exporter)
{
    if (!data)
        return false;
    CFileExporter sink;
    bool result = false;
    applySettings(exporter, sink);
    if (exporter)
        sink.setCopyStep(exporter->copyStep());
    if (sink.initExporter(dir, owner, typeName)) {
        const bool protect =
            exporter && exporter->fromDFU() && data->dataType() != BkDataType::Voicemail;
        result = CFileTranslate(data).translate(&sink, progress, protect);
    }
    sink.finish(result);
    return result;
}
