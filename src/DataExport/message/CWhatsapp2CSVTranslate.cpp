#include "message/CWhatsapp2CSVTranslate.h"

#include "message/BkWhatsappChat.h"
#include "message/BkWhatsappItem.h"
#include "message/BkWhatsappMsg.h"
#include "message/BkWhatsappType.h"
#include "message/ChatCsv_p.h"
#include "platform/Translation_p.h"

#include <QStringList>

DATAEXPORT_USE_TR(DataExport);

namespace {

// The type words as cells, looked up once a chat instead of once a message.
struct TypeWords
{
    explicit TypeWords(const ChatCsv &csv)
        : groupEvent(csv.cell(tr("Group Event")))
        , fail(csv.cell(tr("Fail")))
        , received(csv.cell(tr("Received")))
        , sent(csv.cell(tr("Sent")))
    {
    }

    QString groupEvent;
    QString fail;
    QString received;
    QString sent;

    const QString &of(const BkWhatsappMsg &message) const
    {
        if (message.type() == BkWhatsappType::GroupEvent)
            return groupEvent;
        if (!message.isSentDone())
            return fail;
        return message.isFromMe() ? sent : received;
    }
};

// What kind of file the message is, empty when it is none.
QString mediaKind(int type)
{
    switch (type) {
    case BkWhatsappType::Picture:
        return DataExport::tr("Picture");
    case BkWhatsappType::Video:
        return DataExport::tr("Video");
    case BkWhatsappType::Audio:
        return DataExport::tr("Audio");
    default:
        return {};
    }
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
    const TypeWords words(csv);
    for (const BkWhatsappMsg *message : chat->messages()) {
        if (!message)
            continue;
        const QString kind = mediaKind(message->type());
        ChatCsv::Line line { message->msgDate(), words.of(*message), message->content(), {}, {} };
        if (csv.hasAllColumns()) {
            line.sender = message->isFromMe() ? QString() : message->member();
            line.attachments = message->mediaName();
            if (line.attachments.isEmpty())
                line.attachments = kind;
        } else if (!kind.isEmpty()) {
            continue;
        }
        if (!line.content.isEmpty() || !line.attachments.isEmpty())
            csv.write(line);
    }
    return true;
}
