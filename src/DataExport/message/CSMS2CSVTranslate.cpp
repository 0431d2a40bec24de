#include "message/CSMS2CSVTranslate.h"

#include "export/CUtils.h"
#include "message/BkSMSChat.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSItem.h"
#include "message/ChatCsv_p.h"
#include "message/MessagePiece_p.h"
#include "platform/Translation_p.h"

#include <QStringList>

using DataExport::tr;

namespace {

void appendPart(QString &text, const QString &part)
{
    if (part.isEmpty())
        return;
    if (!text.isEmpty())
        text += QLatin1Char(' ');
    text += part;
}

QString joinedText(const BkSMSChat &chat)
{
    QString text = chat.subject();
    appendPart(text, chat.content());
    for (const BkSMSPiece *piece : chat.pieces()) {
        if (piece && pieceKind(*piece) == PieceKind::Text)
            appendPart(text, QString::fromUtf8(piece->pieceData()));
    }
    return text;
}

// The type words as cells, looked up once a conversation instead of once a message.
struct TypeWords
{
    QString sent = CUtils::csvEncode(tr("Sent"));
    QString received = CUtils::csvEncode(tr("Received"));
    QString unknown = CUtils::csvEncode(tr("Unknown"));

    const QString &of(const BkSMSChat &chat) const
    {
        if (!chat.isSentDone())
            return unknown;
        return chat.isFromMe() ? sent : received;
    }
};

} // namespace

CSMS2CSVTranslate::CSMS2CSVTranslate(BkSMSData *data)
    : CSMSTranslate(data)
{
}

CSMS2CSVTranslate::~CSMS2CSVTranslate() = default;

bool CSMS2CSVTranslate::translateHeader(CIDataExporter *exporter, const QString & /*title*/)
{
    return ChatCsv::writeHeader(
        exporter, { tr("Name"), tr("Phone"), tr("Email"), tr("Date"), tr("Type"), tr("Content") });
}

bool CSMS2CSVTranslate::translateDataBefore(CIDataExporter * /*exporter*/)
{
    return true;
}

bool CSMS2CSVTranslate::translateDataAfter(CIDataExporter * /*exporter*/)
{
    return true;
}

bool CSMS2CSVTranslate::translateDataItem(CIDataExporter *exporter, BkSMSItem *item)
{
    const BkSMSChatGroup *group = item->detailContent();
    if (!group)
        return true;
    ChatCsv csv(exporter, *item);
    const TypeWords words;
    for (const BkSMSChat *chat : group->chats()) {
        if (!chat)
            continue;
        const QString text = joinedText(*chat);
        if (!text.isEmpty())
            csv.write(chat->msgDate(), words.of(*chat), text);
    }
    return true;
}
