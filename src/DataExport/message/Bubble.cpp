#include "export/CUtils.h"
#include "message/Bubble_p.h"

#include <QString>
#include <QTextStream>

namespace {

// UTF-16 literals: a page of a million messages would otherwise be widened letter by letter.
constexpr QStringView kSentDeletedMark =
    u"<img src='image/del_msg_send.png' style='top:20px;left:5px; position:relative;' />";
constexpr QStringView kReceivedDeletedMark =
    u"<img src='image/del_msg_recv.png' style='position:absolute; margin:-5px 0 0 8px;' />";
constexpr QStringView kTopRow =
    u"<tr><td class=\"top-l\"></td><td class=\"top-c\"></td><td class=\"top-r\">";
constexpr QStringView kTopRowEnd = u"</td></tr><tr><td class=\"mid-l\"></td>";
constexpr QStringView kMiddleRowEnd = u"<td class=\"mid-r\"></td>";
constexpr QStringView kNotDeliveredMark = u"<img src='image/exclamation.png' />";
constexpr QStringView kBottomRow = u"</tr><tr><td class=\"bot-l\"></td><td class=\"bot-c\"></td>"
                                   u"<td class=\"bot-r\"></td></tr></table></div>";

} // namespace

void Bubble::openBox(QTextStream &out) const
{
    if (!fromMe) {
        out << QStringView(u"<div class=\"main-left\">");
        return;
    }
    out << (iMessage ? QStringView(u"<div class=\"main-right-imsg\">")
                     : QStringView(u"<div class=\"main-right\">"));
    if (deleted)
        out << kSentDeletedMark;
    if (broadcast) {
        out << QStringView(u"<img src='image/broadcast.png' style='top:20px;left:")
            << (deleted ? QStringView(u"10") : QStringView(u"5"))
            << QStringView(u"px; position:relative;' />");
    }
}

void Bubble::openTable(QTextStream &out) const
{
    out << (fromMe
                ? QStringView(u"<table class=\"msg-box sm\" border=0 cellspacing=0 cellpadding=0>")
                : QStringView(u"<table class=\"msg-box rm\" border=0 cellspacing=0 cellpadding=0>"))
        << kTopRow;
    if (!fromMe && deleted)
        out << kReceivedDeletedMark;
    out << kTopRowEnd;
}

void Bubble::closeTable(QTextStream &out) const
{
    out << kMiddleRowEnd;
    if (notDelivered)
        out << QStringView(u"<td>") << kNotDeliveredMark << QStringView(u"</td>");
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
            << QStringView(u"\" /></td><td>") << CUtils::htmlEncode(text)
            << QStringView(u"&nbsp;</td></tr></table></td>");
    }
    closeTable(out);
}

void Bubble::writePicture(QTextStream &out, const QString &path) const
{
    openBox(out);
    out << QStringView(u"<img src=\"") << path << QStringView(u"\" />");
    if (!fromMe && deleted)
        out << kReceivedDeletedMark;
    if (notDelivered)
        out << kNotDeliveredMark;
    out << QStringView(u"</div>");
}
