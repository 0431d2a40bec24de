#include "message/CWhatsapp2HtmlTranslate.h"

#include "export/CIDataExporter.h"
#include "export/Thumbnail_p.h"
#include "message/BkWhatsappChat.h"
#include "message/BkWhatsappItem.h"
#include "message/BkWhatsappMsg.h"
#include "message/BkWhatsappType.h"
#include "message/Bubble_p.h"
#include "message/MessagePage_p.h"
#include "platform/CCommonUtils.h"
#include "platform/NativeFile_p.h"
#include "platform/Translation_p.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

using namespace Qt::StringLiterals;
DATAEXPORT_USE_TR(DataExport);

namespace {

// Above the mark-up of one message, so that a page grows without being copied over and over.
constexpr qsizetype kExpectedCharsPerMessage = 520;

// What stands for a medium that is no picture, or is not there.
QString iconOf(int type)
{
    switch (type) {
    case BkWhatsappType::Picture:
        return MessagePage::imagePath(u"picture.png"_s);
    case BkWhatsappType::Video:
        return MessagePage::imagePath(u"video.png"_s);
    case BkWhatsappType::Audio:
        return MessagePage::imagePath(u"audio.png"_s);
    case BkWhatsappType::ContactCard:
        return MessagePage::imagePath(u"vcard.png"_s);
    case BkWhatsappType::Location:
        return MessagePage::imagePath(u"location.png"_s);
    default:
        return {};
    }
}

void outputLabel(QTextStream &out, const QString &text)
{
    MessagePage::writeLine(out, text);
}

// Composes the mark-up of one chat, message by message.
class ChatWriter
{
public:
    ChatWriter(CIDataExporter *exporter, const BkWhatsappItem &item, int &imageIndex)
        : m_exporter(exporter)
        , m_item(item)
        , m_deleted(item.flag(0))
        , m_imageIndex(imageIndex)
        , m_out(&m_page)
    {
    }

    QString write(const BkWhatsappChat &chat)
    {
        m_page.reserve(chat.messages().size() * kExpectedCharsPerMessage);
        m_out << QStringView(u"<div class=\"main\">");
        MessagePage::writeHeading(
            m_out, m_item, { tr("Chat: %1"), tr("Name: %1"), tr("Phone: %1") });
        for (const BkWhatsappMsg *message : chat.messages()) {
            if (message)
                writeMessage(*message);
        }
        m_out << QStringView(u"</div>");
        return m_page;
    }

private:
    void writeMessage(const BkWhatsappMsg &message)
    {
        outputLabel(m_out,
                    m_dateLabel.arg(CCommonUtils::datetimeToMinute(message.msgDate(), true)));
        if (message.type() == BkWhatsappType::GroupEvent) {
            outputLabel(m_out, message.content());
            return;
        }
        MessagePage::writeSender(m_out, message.member());
        const QString picture = pictureOf(message);
        if (message.content().isEmpty() && picture.isEmpty())
            return;
        Bubble bubble { message.isFromMe(), !message.isSentDone(), false, m_deleted };
        bubble.broadcast = message.isBroadcast();
        bubble.hasAlt = m_exporter->isHardened();
        bubble.write(m_out, message.content(), picture);
    }

    // The path of what is shown beside the text, empty for a mere text.
    QString pictureOf(const BkWhatsappMsg &message)
    {
        const QString &media = message.media();
        if (!media.isEmpty()) {
            QString why;
            const QByteArray png = pictureAt(media, &why);
            if (!png.isEmpty())
                return Thumbnail::place(m_exporter, png, m_imageIndex++);
            // Of any other type it need not be a picture.
            if (message.type() == BkWhatsappType::Picture) {
                // Its date leads to it; what a backup calls the file seldom says anything.
                const QString date = CCommonUtils::datetimeToMinute(message.msgDate(), true);
                MessagePage::reportPicture(
                    m_exporter, m_item, date.isEmpty() ? QFileInfo(media).fileName() : date, why);
            }
        }
        return iconOf(message.type());
    }

    // Empty, and why, when there is none that can be shown.
    static QByteArray pictureAt(const QString &path, QString *why)
    {
        NativeFile native;
        QFile source; // buffered: what a picture is, is read byte by byte
        if (native.openForReading(path)
            && source.open(native.release(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
            return MessagePage::makePicture(source, why);
        *why = native.errorString();
        return {};
    }

    CIDataExporter *m_exporter;
    const BkWhatsappItem &m_item;
    bool m_deleted;
    int &m_imageIndex;
    QString m_dateLabel = tr("Date: %1");
    QString m_page;
    QTextStream m_out;
};

} // namespace

CWhatsapp2HtmlTranslate::CWhatsapp2HtmlTranslate(BkData *data)
    : CWhatsappTranslate(data)
{
}

CWhatsapp2HtmlTranslate::~CWhatsapp2HtmlTranslate() = default;

QString CWhatsapp2HtmlTranslate::smsStyle() const
{
    return MessagePage::styleElement({
        "h2 { color:#333333; font-size:14px; font-weight:bold; padding-bottom:0px; "
        "padding-top:10px; }"_L1,
        ".main p { color:#333333; text-align:center; font-size:14px; padding-top:10px; "
        "clear:both; }"_L1,
        false,
    });
}

bool CWhatsapp2HtmlTranslate::translateHeader(CIDataExporter * /*exporter*/, const QString &title)
{
    m_title = title;
    return true;
}

bool CWhatsapp2HtmlTranslate::translateDataBefore(CIDataExporter *exporter)
{
    MessagePage::copyImages(exporter,
                            { "message"_L1, "rmessage"_L1 },
                            { "exclamation.png"_L1,
                              "del_msg_recv.png"_L1,
                              "del_msg_send.png"_L1,
                              "broadcast.png"_L1,
                              "audio.png"_L1,
                              "video.png"_L1,
                              "vcard.png"_L1,
                              "location.png"_L1,
                              "picture.png"_L1 });
    return MessagePage::open(exporter, m_title);
}

bool CWhatsapp2HtmlTranslate::translateDataAfter(CIDataExporter *exporter)
{
    return MessagePage::close(exporter);
}

bool CWhatsapp2HtmlTranslate::translateDataItem(CIDataExporter *exporter, BkWhatsappItem *item)
{
    const BkWhatsappChat *chat = item->detailContent();
    if (!chat) {
        exporter->reportFailure(
            MessagePage::nameForReport(*item),
            { CIExportReport::Cause::Source, tr("The messages of the chat could not be read.") });
        return true;
    }
    if (!exporter->exportData(ChatWriter(exporter, *item, m_imageIndex).write(*chat)))
        return false;
    exporter->reportExported(MessagePage::nameForReport(*item));
    return true;
}
