#include "message/CSMSTranslate.h"

#include "backup/SinkSettings_p.h"
#include "export/CHtmlExporter.h"
#include "export/CPlainFileExporter.h"
#include "message/BkSMSData.h"
#include "message/BkSMSItem.h"
#include "message/CSMS2CSVTranslate.h"
#include "message/CSMS2HtmlTranslate.h"
#include "platform/CSubProgress.h"
#include "platform/Translation_p.h"

using DataExport::tr;

namespace {

constexpr int kUnitsPerPass = 100;

} // namespace

CSMSTranslate::CSMSTranslate(BkSMSData *data)
    : m_data(data)
{
}

CSMSTranslate::~CSMSTranslate() = default;

bool CSMSTranslate::translate(CIDataExporter *exporter,
                              const QString &title,
                              CIProgressCallback *progress)
{
    if (!translateHeader(exporter, title))
        return false;
    const QList<int> indices = m_data->recoverList();
    const double step = progress && !indices.isEmpty()
        ? static_cast<double>(progress->range()) / static_cast<double>(indices.size())
        : 0;
    if (!translateDataBefore(exporter))
        return false;
    for (const int index : indices) {
        if (progress && !progress->progress(step))
            break;
        auto *item = dynamic_cast<BkSMSItem *>(m_data->at(index, true));
        if (item && !translateDataItem(exporter, item))
            return false;
    }
    return translateDataAfter(exporter);
}

bool CBackupExporter::exportSMS(BkData *data,
                                const QDir &dir,
                                const QString &owner,
                                const QString &typeName,
                                CIProgressCallback *progress,
                                CBackupExporter *exporter)
{
    CSubProgress sub(progress, progress ? progress->range() / 2 : 0);
    const QString title = tr("%1's %2").arg(owner, typeName);
    auto *messages = dynamic_cast<BkSMSData *>(data);
    if (!messages)
        return false;

    bool ok = false;
    {
        CHtmlExporter page;
        CSMS2HtmlTranslate translator(messages);
        sub.initRange(kUnitsPerPass);
        page.setStyle(translator.smsStyle());
        applySettings(exporter, page);
        ok = page.initExporter(dir, owner, typeName) && translator.translate(&page, title, &sub);
        page.finish(ok);
    }
    if (!sub.finish() || !ok)
        return ok;

    {
        CPlainFileExporter csv(QStringLiteral(".csv"), false);
        csv.setCodec(QStringLiteral("UTF16"), true);
        applySettings(exporter, csv);
        sub.initRange(kUnitsPerPass);
        CSMS2CSVTranslate translator(messages);
        ok = csv.initExporter(dir, owner, typeName) && translator.translate(&csv, title, &sub);
        csv.finish(ok);
    }
    sub.finish();
    return ok;
}
