#include "message/CWhatsapp2CSVTranslate.h"

#include "export/CUtils.h"
#include "message/BkWhatsappChat.h"
#include "message/BkWhatsappItem.h"
#include "message/BkWhatsappMsg.h"
#include "message/ChatCsv_p.h"
#include "message/WhatsappType_p.h"
#include "platform/Translation_p.h"

#include <QStringList>

using DataExport::tr;

namespace {

// The type words as cells, looked up once a chat instead of once a message.
struct TypeWords
{
    QString groupEvent = CUtils::csvEncode(tr("Group Event"));
    QString fail = CUtils::csvEncode(tr("Fail"));
    QString received = CUtils::csvEncode(tr("Received"));
    QString sent = CUtils::csvEncode(tr("Sent"));

    const QString &of(const BkWhatsappMsg &message) const
    {
        if (message.type() == WhatsappType::GroupEvent)
            return groupEvent;
        if (!message.isSentDone())
            return fail;
        return message.isFromMe() ? sent : received;
    }
};

bool isMedia(int type)
{
    return type == WhatsappType::Picture || type == WhatsappType::Video
        || type == WhatsappType::Audio;
}

} // namespace

CWhatsapp2CSVTranslate::CWhatsapp2CSVTranslate(BkData *data)
    : CWhatsappTranslate(data)
{
}

CWhatsapp2CSVTranslate::~CWhatsapp2CSVTranslate() = default;

bool CWhatsapp2CSVTranslate::translateHeader(CIDataExporter *exporter, const QString & /*title*/)
{
    return ChatCsv::writeHeader(
        exporter, { tr("Chat"), tr("Name"), tr("Phone"), tr("Date"), tr("Type"), tr("Content") });
}

bool CWhatsapp2CSVTranslate::translateDataBefore(CIDataExporter * /*exporter*/)
{
    return true;
}

bool CWhatsapp2CSVTranslate::translateDataAfter(CIDataExporter * /*exporter*/)
{
    return true;
}

bool CWhatsapp2CSVTranslate::translateDataItem(CIDataExporter *exporter, BkWhatsappItem *item)
{
    const BkWhatsappChat *chat = item->detailContent();
    if (!chat)
        return true;
    ChatCsv csv(exporter, *item);
    const TypeWords words;
    for (const BkWhatsappMsg *message : chat->messages()) {
        if (message && !isMedia(message->type()) && !message->content().isEmpty())
            csv.write(message->msgDate(), words.of(*message), message->content());
    }
    return true;
}
