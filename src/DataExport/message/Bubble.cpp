#include "export/CUtils.h"
#include "message/Bubble_p.h"
#include "platform/Translation_p.h"

#include <QString>
#include <QTextStream>

DATAEXPORT_USE_TR(DataExport);

namespace {

// UTF-16 literals: a page of a million messages would otherwise be widened letter by letter.
constexpr QStringView kSentDeletedMark =
    u"<img src='image/del_msg_send.png' style='top:20px;left:5px; position:relative;'";
constexpr QStringView kReceivedDeletedMark =
    u"<img src='image/del_msg_recv.png' style='position:absolute; margin:-5px 0 0 8px;'";
constexpr QStringView kTopRow =
    u"<tr><td class=\"top-l\"></td><td class=\"top-c\"></td><td class=\"top-r\">";
constexpr QStringView kTopRowEnd = u"</td></tr><tr><td class=\"mid-l\"></td>";
constexpr QStringView kMiddleRowEnd = u"<td class=\"mid-r\"></td>";
constexpr QStringView kNotDeliveredMark = u"<img src='image/exclamation.png'";
constexpr QStringView kBottomRow = u"</tr><tr><td class=\"bot-l\"></td><td class=\"bot-c\"></td>"
                                   u"<td class=\"bot-r\"></td></tr></table></div>";

// What a page of today says instead of a picture: the icons are told by their names.
QString wordsOf(const QString &path)
{
    if (path.endsWith(QLatin1String("video.png")))
        return DataExport::tr("Video");
    if (path.endsWith(QLatin1String("audio.png")))
        return DataExport::tr("Audio");
    if (path.endsWith(QLatin1String("vcard.png")))
        return DataExport::tr("Contact");
    if (path.endsWith(QLatin1String("location.png")))
        return DataExport::tr("Location");
    return DataExport::tr("Picture");
}

} // namespace

void Bubble::endImage(QTextStream &out, const QString &words) const
{
    if (hasAlt)
        out << QStringView(u" alt=\"") << CUtils::attributeEncode(words) << QChar(u'"');
    out << QStringView(u" />");
}

void Bubble::writeNotDelivered(QTextStream &out) const
{
    out << kNotDeliveredMark;
    endImage(out, tr("Not delivered"));
}

void Bubble::writeReceivedDeleted(QTextStream &out) const
{
    out << kReceivedDeletedMark;
    endImage(out, tr("Deleted"));
}

void Bubble::openBox(QTextStream &out) const
{
    if (!fromMe) {
        out << QStringView(u"<div class=\"main-left\">");
        return;
    }
    out << (iMessage ? QStringView(u"<div class=\"main-right-imsg\">")
                     : QStringView(u"<div class=\"main-right\">"));
    if (deleted) {
        out << kSentDeletedMark;
        endImage(out, tr("Deleted"));
    }
    if (broadcast) {
        out << QStringView(u"<img src='image/broadcast.png' style='top:20px;left:")
            << (deleted ? QStringView(u"10") : QStringView(u"5"))
            << QStringView(u"px; position:relative;'");
        endImage(out, tr("Sent to a list"));
    }
}

void Bubble::openTable(QTextStream &out) const
{
    out << (fromMe
                ? QStringView(u"<table class=\"msg-box sm\" border=0 cellspacing=0 cellpadding=0>")
                : QStringView(u"<table class=\"msg-box rm\" border=0 cellspacing=0 cellpadding=0>"))
        << kTopRow;
    if (!fromMe && deleted)
        writeReceivedDeleted(out);
    out << kTopRowEnd;
}

void Bubble::closeTable(QTextStream &out) const
{
    out << kMiddleRowEnd;
    if (notDelivered) {
        out << QStringView(u"<td>");
        writeNotDelivered(out);
        out << QStringView(u"</td>");
    }
    out << kBottomRow;
}

void Bubble::write(QTextStream &out, const QString &text, const QString &picture) const
{
    openBox(out);
    openTable(out);
    if (picture.isEmpty()) {
        out << QStringView(u"<td class=\"mid-c\">") << CUtils::htmlEncode(text)
            << QStringView(u"&nbsp;</td>");
    } else {
        out << QStringView(u"<td class=\"mid-c\"><table><tr><td><img src=\"") << picture
            << QChar(u'"');
        endImage(out, wordsOf(picture));
        out << QStringView(u"</td><td>") << CUtils::htmlEncode(text)
            << QStringView(u"&nbsp;</td></tr></table></td>");
    }
    closeTable(out);
}

void Bubble::writePicture(QTextStream &out, const QString &path) const
{
    openBox(out);
    out << QStringView(u"<img src=\"") << path << QChar(u'"');
    endImage(out, wordsOf(path));
    if (!fromMe && deleted)
        writeReceivedDeleted(out);
    if (notDelivered)
        writeNotDelivered(out);
    out << QStringView(u"</div>");
}
