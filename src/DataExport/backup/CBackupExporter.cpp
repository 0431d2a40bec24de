#include "backup/CBackupExporter.h"

#include "backup/BkBackup.h"
#include "backup/BkData.h"
#include "platform/CSubProgress.h"

#include <QDir>

#include <array>

namespace {

using ExportFunction = bool (*)(BkData *,
                                const QDir &,
                                const QString &,
                                const QString &,
                                CIProgressCallback *,
                                CBackupExporter *);

struct Dispatch
{
    int code;
    ExportFunction exportData;
};

// The order is that of the folders' creation and of the progress bar.
const std::array<Dispatch, 19> &dispatchTable()
{
    using E = CBackupExporter;
    static const std::array<Dispatch, 19> table { {
        { 0, &E::exportFile },      { 1, &E::exportFile },  { 2, &E::exportFile },
        { 8, &E::exportContact },   { 6, &E::exportSMS },   { 7, &E::exportFile },
        { 9, &E::exportHtml },      { 14, &E::exportHtml }, { 13, &E::exportHtml },
        { 15, &E::exportHtml },     { 16, &E::exportFile }, { 17, &E::exportBookmark },
        { 11, &E::exportWhatsapp }, { 12, &E::exportFile }, { 3, &E::exportFile },
        { 4, &E::exportFile },      { 5, &E::exportFile },  { 18, &E::exportFile },
        { 10, &E::exportFile },
    } };
    return table;
}

constexpr int kUnitsPerItem = 100;

// Items that will be exported; none of a type that nothing here can export.
int itemCount(const Dispatch &row, const BkData *data)
{
    return row.exportData && data ? data->recoverCount() : 0;
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

void CBackupExporter::setHardened(bool hardened)
{
    m_hardened = hardened;
}

bool CBackupExporter::isHardened() const
{
    return m_hardened;
}

bool CBackupExporter::exportBackup(BkBackup *backup, const QDir &dir, CIProgressCallback *progress)
{
    const auto &table = dispatchTable();
    std::array<int, 19> weights {};
    int total = 0;
    for (std::size_t i = 0; i < table.size(); ++i) {
        weights[i] = itemCount(table[i], backup->getBkData(table[i].code)) * kUnitsPerItem;
        total += weights[i];
    }
    if (progress && total != 0)
        progress->initRange(total);

    const QString owner = total != 0 ? backup->backupProperty(0) : QString();
    for (std::size_t i = 0; total != 0 && i < table.size(); ++i) {
        BkData *data = backup->getBkData(table[i].code);
        if (itemCount(table[i], data) == 0)
            continue;
        CSubProgress sub(progress, weights[i]);
        sub.initRange(weights[i]);
        const QString typeName = backup->dataTypeName(table[i].code);
        table[i].exportData(data, dir, owner, typeName, &sub, this);
        if (!sub.finish())
            break;
    }
    if (progress)
        progress->finish();
    return true;
}
