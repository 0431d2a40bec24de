#include "message/CWhatsappTranslate.h"

#include "backup/SelectedItems_p.h"
#include "message/BkWhatsappItem.h"
#include "message/CWhatsapp2CSVTranslate.h"
#include "message/CWhatsapp2HtmlTranslate.h"
#include "message/ChatFormats_p.h"

CWhatsappTranslate::CWhatsappTranslate(BkData *data)
    : m_data(data)
{
}

CWhatsappTranslate::~CWhatsappTranslate() = default;

bool CWhatsappTranslate::translate(CIDataExporter *exporter,
                                   const QString &title,
                                   CIProgressCallback *progress)
{
    if (!translateHeader(exporter, title))
        return false;
    const SelectedItems items(*m_data, exporter, progress);
    if (!translateDataBefore(exporter))
        return false;
    const auto translateItem = [&](BkWhatsappItem *item) {
        return translateDataItem(exporter, item);
    };
    return items.forEach<BkWhatsappItem>(translateItem) && translateDataAfter(exporter);
}

bool CBackupExporter::exportWhatsapp(BkData *data,
                                     const QDir &dir,
                                     const QString &owner,
                                     const QString &typeName,
                                     CIProgressCallback *progress,
                                     CBackupExporter *exporter)
{
    return data
        && exportChats<CWhatsapp2HtmlTranslate, CWhatsapp2CSVTranslate>(
               data, { kChatFormats, dir, owner, typeName, progress, exporter });
}
