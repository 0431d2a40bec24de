#include "table/CBookmarkTranslate.h"

#include "backup/SelectedItems_p.h"
#include "export/CUtils.h"
#include "export/PageText_p.h"
#include "table/BkSafariBookmarkItem.h"
#include "table/PageExport_p.h"

#include <QMap>

using namespace Qt::StringLiterals;
DATAEXPORT_USE_TR(DataExport);

namespace {

using Links = QList<const BkSafariBookmarkItem *>;
using Groups = QMap<QString, Links>;

const QString kReadingList = u"Reading List"_s;
const QString kHistory = u"History"_s;

// Folders come by name, between the groups that have their own place.
QStringList orderOf(const Groups &groups)
{
    QStringList names = groups.keys();
    for (const QString &fixed : { QString(), kReadingList, kHistory })
        names.removeAll(fixed);
    return QStringList { QString(), kReadingList } + names + QStringList { kHistory };
}

QString heading(const QString &group)
{
    if (group.isEmpty())
        return {};
    const QString text = group == kReadingList ? DataExport::tr("Reading List")
        : group == kHistory                    ? DataExport::tr("History")
                                               : group;
    return "<tr class=\"dark\"><td>"_L1 + CUtils::htmlEncode(text) + "&nbsp;</td></tr>"_L1;
}

QString cell(const CIDataExporter &page, const BkSafariBookmarkItem &link)
{
    const bool isDeleted = link.flag(0);
    const QString target = link.value(1);
    QString text = u"<td>"_s;
    if (isDeleted)
        text += "<img src='image/"_L1 + CHtmlExporter::DELETE_FLAG_IMG + u'\''
            + PageText::alt(page, DataExport::tr("Deleted")) + u'>';
    const QString title = PageText::plain(page, link.value(0));
    if (PageText::mayLink(page, target)) {
        text += "<a href='"_L1 + PageText::linkTarget(page, target)
            + (isDeleted ? "' class='ad'>"_L1 : "'>"_L1) + title + "</a>"_L1;
    } else {
        const QString shown = PageText::plain(page, target);
        const bool isBoth = !title.isEmpty() && !shown.isEmpty() && title != shown;
        text += isBoth ? title + "<br>"_L1 + shown : title.isEmpty() ? shown : title;
    }
    return text + "</td>"_L1;
}

QString bodyOf(const CIDataExporter &page, const Groups &groups, const QStringList &order)
{
    QString body;
    for (const QString &group : order) {
        const Links links = groups.value(group);
        if (links.isEmpty())
            continue;
        body += heading(group);
        for (qsizetype i = 0; i < links.size(); ++i) {
            body += i % 2 == 0 ? "<tr>"_L1 : "<tr class=\"grey\">"_L1;
            body += cell(page, *links[i]) + "</tr>"_L1;
        }
    }
    return body;
}

void reportLinks(CIDataExporter &page, const Groups &groups, const QStringList &order)
{
    for (const QString &group : order) {
        for (const BkSafariBookmarkItem *link : groups.value(group)) {
            const QString title = link->value(0);
            page.reportExported(title.isEmpty() ? link->value(1) : title);
        }
    }
}

} // namespace

CBookmarkTranslate::CBookmarkTranslate(BkData *data)
    : m_data(data)
{
}

CBookmarkTranslate::~CBookmarkTranslate() = default;

QString CBookmarkTranslate::bookmarkStyle() const
{
    return u"<style type=\"text/css\">"
           "html, div, body, p, form, img, h1, h2, h3, input { margin:0 auto; padding:0; "
           "font:12px/160% Arial, Helvetica, sans-serif; color:#575757; }"
           "img, input { border:none; }"
           "h1 { color:#fefefe; font-size:32px; font-weight:bold; margin-left:16px; "
           "padding-top:5px; }"
           "#wrap { width:900px; background-color:#FFF; padding:4px; border:1px solid #cacaca; }"
           "#top { background:#7f8ea3; }"
           ".main table { margin:0 auto; font-size:14px; width:100%; }"
           ".main table tr td { background-color:#fff; border-collapse:collapse; height:38px; "
           "line-height:150%; padding-left:14px; }"
           ".main table tr.grey td { background-color:#f8f8f8; }"
           ".main table tr.dark td { background-color:#e5e4e4; color:#353535; font-weight:bold; }"
           ".ad:link { color:#e61010; }"
           " </style>"_s;
}

bool CBookmarkTranslate::translate(CIDataExporter *exporter,
                                   const QString &title,
                                   CIProgressCallback *progress)
{
    if (!exporter->exportData(
            u"<div id=\"wrap\"><div id=\"top\"><h1>%1</h1></div>"
            "<div class=\"main\">"
            "<table border=0 cellspacing=0 cellpadding=0>"_s.arg(CUtils::htmlEncode(title))))
        return false;
    Groups groups;
    bool hasFlagImage = false;
    SelectedItems(*m_data, exporter, progress)
        .forEach<BkSafariBookmarkItem>([&](const BkSafariBookmarkItem *link) {
            if (link->flag(0) && !hasFlagImage) {
                CHtmlExporter::exportDeleteFlagImage(exporter);
                hasFlagImage = true;
            }
            groups[link->bookmarkGroup()].append(link);
            return true;
        });
    const QStringList order = orderOf(groups);
    if (!exporter->exportData(bodyOf(*exporter, groups, order)))
        return false;
    reportLinks(*exporter, groups, order);
    return exporter->exportData(u"</table></div></div>"_s);
}

bool CBackupExporter::exportBookmark(BkData *data,
                                     const QDir &dir,
                                     const QString &owner,
                                     const QString &typeName,
                                     CIProgressCallback *progress,
                                     CBackupExporter *exporter)
{
    if (!data)
        return false;
    CBookmarkTranslate translator(data);
    return exportPage(
        translator, translator.bookmarkStyle(), dir, owner, typeName, progress, exporter);
}
