#include "backup/BkAbstractItem.h"
#include "export/CHtmlExporter.h"
#include "export/CUtils.h"
#include "export/Thumbnail_p.h"
#include "message/MessagePage_p.h"
#include "platform/Translation_p.h"
#include "platform/UxResourceMgr.h"

#include <QTextStream>

#include <array>

using namespace Qt::StringLiterals;
DATAEXPORT_USE_TR(DataExport);

namespace {

constexpr Thumbnail::Box kPictureBox { 250 };

constexpr std::array kBubbleParts {
    "-top-l.png"_L1,    "-top-c.png"_L1, "-top-r.png"_L1, "-middle-l.png"_L1, "-bg.png"_L1,
    "-middle-r.png"_L1, "-bot-l.png"_L1, "-bot-c.png"_L1, "-bot-r.png"_L1,
};

// The nine rules of one bubble. %1 is the box, %2 the image, whose folder comes later.
QString bubbleRules(QLatin1String box, QLatin1String image, int topHeightPx, int bottomHeightPx)
{
    return u".%1 .top-l { height:%3px; width:14px; background:url(%2-top-l.png) no-repeat; }"
           ".%1 .top-c { background:url(%2-top-c.png) repeat-x; }"
           ".%1 .top-r { width:18px; background:url(%2-top-r.png) no-repeat; }"
           ".%1 .mid-l { background:url(%2-middle-l.png) repeat-y; }"
           ".%1 .mid-c { background:url(%2-bg.png) repeat; }"
           ".%1 .mid-r { background:url(%2-middle-r.png) repeat-y; }"
           ".%1 .bot-l { height:%4px; background:url(%2-bot-l.png) no-repeat; }"
           ".%1 .bot-c { background:url(%2-bot-c.png) repeat-x; }"
           ".%1 .bot-r { background:url(%2-bot-r.png) no-repeat; }"_s.arg(
               box,
               MessagePage::imagePath(image),
               QString::number(topHeightPx),
               QString::number(bottomHeightPx));
}

} // namespace

QString MessagePage::styleElement(const Style &style)
{
    QString text = "<style type=\"text/css\">"
                   "html, div, body, p, form, img, h1, h2, input { margin:0 auto; padding:0; "
                   "font:14px/160% Arial, Helvetica, sans-serif; color:#575757; }"
                   "img, input { border:none; }"
                   "#wrap {width:500px; background:#fff; }"
                   "h1 { color:#333333; font-size:32px; font-weight:bold; text-align:center; "
                   "padding-top:10px; }"_L1
        + style.heading + ".main { overflow:hidden; clear:both; }"_L1 + style.line
        + ".main .cid { color:#2F85D0; padding-left:20px; text-align:left; font-size:14px; }"
          ".main-left { float:left; padding-top:10px; padding-bottom:20px; "
          "vertical-align:center; clear:both; }"
          ".main-right { float:right; padding-top:10px; padding-bottom:20px; clear:both; }"_L1;
    if (style.hasIMessage) {
        text += ".main-right-imsg { float:right; padding-top:10px; padding-bottom:20px; "
                "clear:both; }"_L1;
    }
    text += ".main-left img { vertical-align:middle; }"
            ".main-right img { vertical-align:middle; }"_L1;
    if (style.hasIMessage)
        text += ".main-right-imsg img { vertical-align:middle; }"_L1;
    text += ".msg-box .mid-c { max-width:230px; word-wrap:break-word; word-break:break-all; }"_L1;
    text += bubbleRules("main-right"_L1, "message"_L1, 13, 14);
    if (style.hasIMessage)
        text += bubbleRules("main-right-imsg"_L1, "imessage"_L1, 13, 14);
    text += bubbleRules("main-left"_L1, "rmessage"_L1, 15, 13);
    text += ".rm { color:#000; }"
            ".sm { color:#fff; }"
            "</style>"_L1;
    return text;
}

void MessagePage::copyImages(CIDataExporter *exporter,
                             std::initializer_list<QLatin1String> bubbles,
                             std::initializer_list<QLatin1String> others)
{
    const QString folder =
        UxResourceMgr::instance()->productResourceRoot() + QLatin1String("/DataExport/");
    for (const QLatin1String bubble : bubbles) {
        for (const QLatin1String part : kBubbleParts)
            exporter->exportDepends(folder + bubble + part, bubble + part);
    }
    for (const QString name : others)
        exporter->exportDepends(folder + name, name);
}

QString MessagePage::fittingStyleElement()
{
    return u"<style type=\"text/css\">"
           ".msg-box .mid-c table, .msg-box .mid-c tbody, .msg-box .mid-c tr { display:block; }"
           ".msg-box .mid-c td { display:inline-block; max-width:100%; vertical-align:middle; }"
           ".msg-box .mid-c, .msg-box .mid-c td { word-break:normal; overflow-wrap:anywhere; }"
           ".msg-box .mid-c img { max-width:100%; height:auto; }"
           "</style>"_s;
}

bool MessagePage::open(CIDataExporter *exporter, const QString &title)
{
    return exporter->exportData(
        u"<div id=\"wrap\"><div id=\"top\"><h1>%1</h1></div>"_s.arg(CUtils::htmlEncode(title)));
}

bool MessagePage::close(CIDataExporter *exporter)
{
    return exporter->exportData(u"</div>"_s);
}

void MessagePage::writeHeading(QTextStream &out,
                               const BkAbstractItem &item,
                               const QStringList &patterns)
{
    QStringList texts;
    for (const QString &pattern : patterns)
        texts.append(pattern.arg(CUtils::htmlEncode(item.value(int(texts.size())))));
    out << QStringView(u"<h2>") << texts.join("&nbsp;&nbsp;"_L1) << QStringView(u"</h2><hr />");
}

void MessagePage::writeLine(QTextStream &out, const QString &text)
{
    out << QStringView(u"<p>") << CUtils::htmlEncode(text) << QStringView(u"</p>");
}

void MessagePage::writeSender(QTextStream &out, const QString &name)
{
    if (!name.isEmpty())
        out << QStringView(u"<p class=\"cid\">") << CUtils::htmlEncode(name)
            << QStringView(u"</p>");
}

QString MessagePage::nameForReport(const BkAbstractItem &item)
{
    for (const int field : { 0, 1 }) {
        const QString name = item.value(field);
        if (!name.isEmpty())
            return name;
    }
    return item.value(2);
}

QByteArray MessagePage::makePicture(QIODevice &source, QString *why)
{
    return Thumbnail::makePng(source, kPictureBox, why);
}

void MessagePage::reportPicture(CIDataExporter *exporter,
                                const BkAbstractItem &item,
                                const QString &name,
                                const QString &why)
{
    exporter->reportFailure(
        name.isEmpty() ? nameForReport(item) : nameForReport(item) + u'/' + name,
        { CIExportReport::Cause::Content, tr("The picture cannot be shown: %1.").arg(why) });
}

QString MessagePage::imagePath(const QString &name)
{
    return CHtmlExporter::HTML_IMG_FOLDER + u'/' + name;
}
