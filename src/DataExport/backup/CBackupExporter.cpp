#include "backup/CBackupExporter.h"

#include "backup/BkBackup.h"
#include "backup/BkData.h"
#include "backup/BkDataType.h"
#include "export/CIExportReport.h"
#include "platform/CSubProgress.h"

#include <QDir>

namespace {

using ExportFunction = bool (*)(BkData *,
                                const QDir &,
                                const QString &,
                                const QString &,
                                CIProgressCallback *,
                                CBackupExporter *);

ExportFunction functionOf(BkDataType::Form form)
{
    switch (form) {
    case BkDataType::Form::Files:
        return &CBackupExporter::exportFile;
    case BkDataType::Form::Contacts:
        return &CBackupExporter::exportContact;
    case BkDataType::Form::Messages:
        return &CBackupExporter::exportSMS;
    case BkDataType::Form::Whatsapp:
        return &CBackupExporter::exportWhatsapp;
    case BkDataType::Form::Table:
        return &CBackupExporter::exportHtml;
    case BkDataType::Form::Bookmarks:
        return &CBackupExporter::exportBookmark;
    }
    return nullptr;
}

constexpr int kUnitsPerItem = 100;

int itemCount(const BkData *data)
{
    return data ? data->recoverCount() : 0;
}

} // namespace

CBackupExporter::CBackupExporter() = default;

CBackupExporter::~CBackupExporter() = default;

void CBackupExporter::setFromDFU(bool fromDFU)
{
    m_fromDFU = fromDFU;
}

bool CBackupExporter::fromDFU() const
{
    return m_fromDFU;
}

void CBackupExporter::setReport(CIExportReport *report)
{
    m_report = report;
}

CIExportReport *CBackupExporter::report() const
{
    return m_report;
}

void CBackupExporter::setCopyStep(CICopyStep *step)
{
    m_copyStep = step;
}

CICopyStep *CBackupExporter::copyStep() const
{
    return m_copyStep;
}

void CBackupExporter::setHardened(bool hardened)
{
    m_hardened = hardened;
}

bool CBackupExporter::isHardened() const
{
    return m_hardened;
}

void CBackupExporter::setOmitted(const QList<CIExportReport::Output> &outputs)
{
    m_omitted = outputs;
}

bool CBackupExporter::isOmitted(CIExportReport::Output output) const
{
    return m_omitted.contains(output);
}

bool CBackupExporter::exportBackup(BkBackup *backup, const QDir &dir, CIProgressCallback *progress)
{
    const QList<BkDataType> &types = BkDataType::all();
    QList<int> weights;
    int total = 0;
    for (const BkDataType &type : types) {
        weights.append(itemCount(backup->getBkData(type.code)) * kUnitsPerItem);
        total += weights.last();
    }
    if (progress && total != 0)
        progress->initRange(total);

    const QString owner = total != 0 ? backup->backupProperty(0) : QString();
    for (qsizetype i = 0; total != 0 && i < types.size(); ++i) {
        BkData *data = backup->getBkData(types[i].code);
        if (itemCount(data) == 0)
            continue;
        CSubProgress sub(progress, weights[i]);
        sub.initRange(weights[i]);
        const QString typeName = backup->dataTypeName(types[i].code);
        if (m_report)
            m_report->typeStarts(types[i].code, typeName);
        functionOf(types[i].form)(data, dir, owner, typeName, &sub, this);
        if (!sub.finish())
            break;
    }
    if (progress)
        progress->finish();
    return true;
}
