#include "message/CSMS2CSVTranslate.h"

#include "message/BkSMSChat.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSItem.h"
#include "message/ChatCsv_p.h"
#include "message/MessagePiece_p.h"
#include "platform/Translation_p.h"

#include <QStringList>

DATAEXPORT_USE_TR(DataExport);

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

// Names of the files that came along; kinds of those without a name.
QString attachmentNames(const BkSMSChat &chat)
{
    QString names;
    for (const BkSMSPiece *piece : chat.pieces()) {
        const PieceKind kind = piece ? pieceKind(*piece) : PieceKind::Text;
        if (kind == PieceKind::Text)
            continue;
        QString name = piece->pieceLocation();
        if (name.isEmpty()) {
            name = kind == PieceKind::Picture ? DataExport::tr("Picture")
                : kind == PieceKind::Video    ? DataExport::tr("Video")
                                              : DataExport::tr("File");
        }
        if (!names.isEmpty())
            names += QLatin1String("; ");
        names += name;
    }
    return names;
}

// The sender of a message in a group, by name where there is one.
QString senderOf(const BkSMSChat &chat, const BkSMSChatGroup &group)
{
    if (chat.isFromMe() || group.addrIds().size() < 2)
        return {};
    const QString name = group.addrIds().value(chat.addr());
    return name.isEmpty() ? chat.addr() : name;
}

// The type words as cells, looked up once a conversation instead of once a message.
struct TypeWords
{
    explicit TypeWords(const ChatCsv &csv)
        : sent(csv.cell(tr("Sent")))
        , received(csv.cell(tr("Received")))
        , unknown(csv.cell(tr("Unknown")))
    {
    }

    QString sent;
    QString received;
    QString unknown;

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
    const TypeWords words(csv);
    for (const BkSMSChat *chat : group->chats()) {
        if (!chat)
            continue;
        ChatCsv::Line line { chat->msgDate(), words.of(*chat), joinedText(*chat), {}, {} };
        if (csv.hasAllColumns()) {
            line.sender = senderOf(*chat, *group);
            line.attachments = attachmentNames(*chat);
        }
        if (!line.content.isEmpty() || !line.attachments.isEmpty())
            csv.write(line);
    }
    return true;
}
