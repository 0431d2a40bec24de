#include "message/CSMSTranslate.h"

#include "backup/SelectedItems_p.h"
#include "message/BkSMSData.h"
#include "message/BkSMSItem.h"
#include "message/CSMS2CSVTranslate.h"
#include "message/CSMS2HtmlTranslate.h"
#include "message/ChatFormats_p.h"

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
    const SelectedItems items(*m_data, exporter, progress);
    if (!translateDataBefore(exporter))
        return false;
    const auto translateItem = [&](BkSMSItem *item) { return translateDataItem(exporter, item); };
    return items.forEach<BkSMSItem>(translateItem) && translateDataAfter(exporter);
}

bool CBackupExporter::exportSMS(BkData *data,
                                const QDir &dir,
                                const QString &owner,
                                const QString &typeName,
                                CIProgressCallback *progress,
                                CBackupExporter *exporter)
{
    auto *messages = dynamic_cast<BkSMSData *>(data);
    return messages
        && exportChats<CSMS2HtmlTranslate, CSMS2CSVTranslate>(
               messages, { kChatFormats, dir, owner, typeName, progress, exporter });
}
