#include "contact/CContact2HtmlTranslate.h"

#include "contact/BkContactItem.h"
#include "contact/BkContactPrivate.h"
#include "contact/ContactCard_p.h"
#include "export/CHtmlExporter.h"
#include "export/CUtils.h"
#include "export/Thumbnail_p.h"
#include "platform/Translation_p.h"
#include "platform/UxResourceMgr.h"

#include <QBuffer>

using namespace Qt::StringLiterals;
DATAEXPORT_USE_TR(DataExport);

namespace {

constexpr Thumbnail::Box kPhotoBox { 136, true };
constexpr QLatin1String kSilhouette("contact_person.png");

} // namespace

CContact2HtmlTranslate::CContact2HtmlTranslate(BkContactData *data)
    : CContactTranslate(data)
{
    m_tellsReport = true;
}

CContact2HtmlTranslate::~CContact2HtmlTranslate() = default;

QString CContact2HtmlTranslate::contactStyle() const
{
    return u"<style type=\"text/css\">"
           "html, div, body, p, form, img, h1, input { margin:0 auto; padding:0; "
           "font:12px/160% Arial, Helvetica, sans-serif; }"
           "img, input { border:none; }"
           "h1 { color:#fefefe; font-size:32px; margin-left:16px; padding-top:5px; }"
           "#wrap { width:700px; background-color:#FFF; padding:4px; border:1px solid #cacaca; }"
           "#top { background:#7f8ea3; }"
           ".main { border:1px solid #e5e4e4; margin-top:10px; padding:10px; }"
           ".main-top { overflow:hidden; }"
           ".main-pic { width:138px; height:138px; padding:6px; float:left; margin-top:6px; "
           "margin-bottom:6px; margin-left:6px; }"
           ".main-text { width:450px; margin-left:34px; float:left; }"
           ".main-title { font-size:30px; font-weight:bold; line-height:150%; margin-top:10px; }"
           ".main-text p { font-size:16px; font-weight:bold; }"
           ".main table { margin:0 auto; font-size:14px; width:100%; }"
           ".main table tr td { background-color:#fff; border-collapse:collapse; "
           "line-height:120%; padding:6px; vertical-align:text-top; }"
           ".main table tr.group td { height:32px; font-size:15px; font-weight:bold; "
           "border-bottom: 1px solid #f1f1f1; vertical-align: bottom; }"
           ".main table tr.group_end td { border-bottom: 1px solid #f1f1f1; }"
           ".first-td { width:150px; }"
           ".second-td { }"
           ".nc { color:#4f4c4c; }"
           ".dc { color:#e61010; }"
           "</style>"_s;
}

bool CContact2HtmlTranslate::translateHeader(CIDataExporter * /*exporter*/, const QString &title)
{
    m_title = title;
    return true;
}

bool CContact2HtmlTranslate::translateDataBefore(CIDataExporter *exporter)
{
    exporter->exportDepends(UxResourceMgr::instance()->productResourceRoot() + "/DataExport/"_L1
                                + kSilhouette,
                            QString(ContactCard::kSilhouette));
    CHtmlExporter::exportDeleteFlagImage(exporter);
    return exporter->exportData(
        u"<div id=\"wrap\"><div id=\"top\"><h1>%1</h1></div>"_s.arg(CUtils::htmlEncode(m_title)));
}

bool CContact2HtmlTranslate::translateDataAfter(CIDataExporter *exporter)
{
    return exporter->exportData(u"</div>"_s);
}

bool CContact2HtmlTranslate::translateDataItem(CIDataExporter *exporter, BkContactItem *item)
{
    if (!item->detailContent())
        return true;
    const BkContactPrivate &contact = *item->detailContent();
    ContactCard card(*exporter, *item, contact, pictureOf(exporter, *item, contact.photo()));
    if (!exporter->exportData(card.write()))
        return false;
    if (card.unknownCount() > 0) {
        exporter->reportFailure(
            nameForReport(*item),
            { CIExportReport::Cause::Content,
              tr("Entries of an unknown kind were left out: %1.").arg(card.unknownCount()) });
    }
    return true;
}

// Path of the photo's small copy, that of the silhouette when there is none.
QString CContact2HtmlTranslate::pictureOf(CIDataExporter *exporter,
                                          const BkContactItem &item,
                                          const QByteArray &photo)
{
    QString silhouette = CHtmlExporter::HTML_IMG_FOLDER + u'/' + ContactCard::kSilhouette;
    if (photo.isEmpty())
        return silhouette;
    const int number = m_photoCount++;
    QBuffer source;
    source.setData(photo);
    source.open(QIODevice::ReadOnly);
    QString why;
    const QByteArray png = Thumbnail::makePng(source, kPhotoBox, &why);
    if (!png.isEmpty())
        return Thumbnail::place(exporter, png, number);
    exporter->reportFailure(
        nameForReport(item),
        { CIExportReport::Cause::Content, tr("The photo cannot be shown: %1.").arg(why) });
    return silhouette;
}
