#include "message/CSMS2HtmlTranslate.h"

#include "export/CIDataExporter.h"
#include "export/Thumbnail_p.h"
#include "message/BkSMSChat.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSItem.h"
#include "message/Bubble_p.h"
#include "message/MessagePage_p.h"
#include "message/MessagePiece_p.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QBuffer>
#include <QTextStream>

#include <optional>

using namespace Qt::StringLiterals;
DATAEXPORT_USE_TR(DataExport);

namespace {

// Above the mark-up of one message, so that a page grows without being copied over and over.
constexpr qsizetype kExpectedCharsPerMessage = 480;

QString attachSubject(bool &subjectPending, const QString &subject, const QString &text)
{
    if (!subjectPending)
        return text;
    subjectPending = false;
    return text.isEmpty() ? subject : subject + u'\n' + text;
}

void outputText(QTextStream &out,
                const QString &text,
                bool fromMe,
                bool notDelivered,
                bool iMessage,
                bool deleted,
                bool hasAlt)
{
    const Bubble bubble { fromMe, notDelivered, iMessage, deleted, false, hasAlt };
    bubble.write(out, text, {});
}

// Composes the mark-up of one conversation, message by message.
class ConversationWriter
{
public:
    ConversationWriter(CIDataExporter *exporter,
                       const BkSMSItem &item,
                       const BkSMSChatGroup &group,
                       int &imageIndex)
        : m_exporter(exporter)
        , m_item(item)
        , m_group(group)
        , m_isGroupConversation(group.addrIds().size() > 1)
        , m_deleted(item.flag(0))
        , m_imageIndex(imageIndex)
        , m_out(&m_page)
    {
    }

    QString write()
    {
        m_page.reserve(m_group.chats().size() * kExpectedCharsPerMessage);
        m_out << QStringView(u"<div class=\"main\">");
        MessagePage::writeHeading(
            m_out, m_item, { tr("Name: %1"), tr("Phone: %1"), tr("Email: %1") });
        for (const BkSMSChat *chat : m_group.chats()) {
            if (chat)
                writeMessage(*chat);
        }
        m_out << QStringView(u"</div>");
        return m_page;
    }

private:
    void writeMessage(const BkSMSChat &chat)
    {
        writeLinesAbove(chat);
        const QString &subject = chat.subject();
        bool subjectPending = !subject.isEmpty();
        if (!chat.content().isEmpty())
            writeText(chat, attachSubject(subjectPending, subject, chat.content()));
        for (const BkSMSPiece *piece : chat.pieces()) {
            if (!piece)
                continue;
            switch (pieceKind(*piece)) {
            case PieceKind::Text: {
                const QString text = QString::fromUtf8(piece->pieceData());
                if (!text.isEmpty())
                    writeText(chat, attachSubject(subjectPending, subject, text));
                break;
            }
            case PieceKind::Picture:
                writePicture(chat, pictureOf(*piece));
                break;
            case PieceKind::Video:
                writePicture(chat, MessagePage::imagePath(u"sms_video.png"_s));
                break;
            case PieceKind::Other:
                break;
            }
        }
        if (subjectPending)
            writeText(chat, attachSubject(subjectPending, subject, QString()));
    }

    void writeLinesAbove(const BkSMSChat &chat)
    {
        const bool iMessage = !chat.isNormalSMS();
        if (m_lastWasIMessage != iMessage) {
            m_lastWasIMessage = iMessage;
            MessagePage::writeLine(m_out, iMessage ? tr("iMessage") : tr("SMS/MMS"));
            m_lastDate.clear();
        }
        const QString date = CCommonUtils::datetimeToMinute(chat.msgDate(), true);
        if (!date.isEmpty() && date != m_lastDate) {
            MessagePage::writeLine(m_out, date);
            m_lastDate = date;
        }
        if (!chat.isFromMe() && m_isGroupConversation)
            writeSender(chat.addr());
    }

    void writeSender(const QString &address)
    {
        const QString name = m_group.addrIds().value(address);
        MessagePage::writeSender(m_out, name.isEmpty() ? address : name);
    }

    void writeText(const BkSMSChat &chat, const QString &text)
    {
        outputText(m_out,
                   text,
                   chat.isFromMe(),
                   !chat.isSentDone(),
                   !chat.isNormalSMS(),
                   m_deleted,
                   m_exporter->isHardened());
    }

    void writePicture(const BkSMSChat &chat, const QString &path)
    {
        Bubble bubble { chat.isFromMe(), !chat.isSentDone(), !chat.isNormalSMS(), m_deleted };
        bubble.hasAlt = m_exporter->isHardened();
        bubble.writePicture(m_out, path);
    }

    // The path of the piece's picture, that of the placeholder when there is none.
    QString pictureOf(const BkSMSPiece &piece)
    {
        QBuffer source;
        source.setData(piece.pieceData());
        source.open(QIODevice::ReadOnly);
        QString why;
        const QByteArray png =
            source.data().isEmpty() ? QByteArray() : MessagePage::makePicture(source, &why);
        if (!png.isEmpty())
            return Thumbnail::place(m_exporter, png, m_imageIndex++);
        reportPicture(piece, why);
        return MessagePage::imagePath(u"sms_image.png"_s);
    }

    void reportPicture(const BkSMSPiece &piece, const QString &why)
    {
        const QString fault = piece.fault();
        if (fault.isEmpty() && !why.isEmpty()) {
            MessagePage::reportPicture(m_exporter, m_item, piece.pieceLocation(), why);
            return;
        }
        if (piece.neverDownloaded())
            return;
        QString name = MessagePage::nameForReport(m_item);
        if (!piece.pieceLocation().isEmpty())
            name += u'/' + piece.pieceLocation();
        m_exporter->reportFailure(name,
                                  { CIExportReport::Cause::Source,
                                    fault.isEmpty()
                                        ? tr("The picture is missing from the backup.")
                                        : tr("The picture cannot be shown. %1").arg(fault) });
    }

    CIDataExporter *m_exporter;
    const BkSMSItem &m_item;
    const BkSMSChatGroup &m_group;
    bool m_isGroupConversation;
    bool m_deleted;
    int &m_imageIndex;
    QString m_page;
    QTextStream m_out;
    std::optional<bool> m_lastWasIMessage;
    QString m_lastDate; // since the last separator line
};

} // namespace

CSMS2HtmlTranslate::CSMS2HtmlTranslate(BkSMSData *data)
    : CSMSTranslate(data)
{
}

CSMS2HtmlTranslate::~CSMS2HtmlTranslate() = default;

QString CSMS2HtmlTranslate::smsStyle() const
{
    return MessagePage::styleElement({
        "h2 { color:#333333; font-size:16px; padding-bottom:0px; padding-top:10px; }"_L1,
        ".main p { color:#333333; text-align:center; font-size:12px; padding-top:10px; "
        "clear:both; }"_L1,
        true,
    });
}

bool CSMS2HtmlTranslate::translateHeader(CIDataExporter * /*exporter*/, const QString &title)
{
    m_title = title;
    return true;
}

bool CSMS2HtmlTranslate::translateDataBefore(CIDataExporter *exporter)
{
    MessagePage::copyImages(exporter,
                            { "message"_L1, "imessage"_L1, "rmessage"_L1 },
                            { "exclamation.png"_L1,
                              "del_msg_recv.png"_L1,
                              "del_msg_send.png"_L1,
                              "sms_video.png"_L1,
                              "sms_image.png"_L1 });
    return MessagePage::open(exporter, m_title);
}

bool CSMS2HtmlTranslate::translateDataAfter(CIDataExporter *exporter)
{
    return MessagePage::close(exporter);
}

bool CSMS2HtmlTranslate::translateDataItem(CIDataExporter *exporter, BkSMSItem *item)
{
    const BkSMSChatGroup *group = item->detailContent();
    if (!group) {
        exporter->reportFailure(MessagePage::nameForReport(*item),
                                { CIExportReport::Cause::Source,
                                  tr("The messages of the conversation could not be read.") });
        return true;
    }
    if (!exporter->exportData(ConversationWriter(exporter, *item, *group, m_imageIndex).write()))
        return false;
    exporter->reportExported(MessagePage::nameForReport(*item));
    return true;
}
