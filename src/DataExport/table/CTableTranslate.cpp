#include "table/CTableTranslate.h"

#include "backup/BkDataType.h"
#include "backup/SelectedItems_p.h"
#include "export/CUtils.h"
#include "table/PageExport_p.h"

using namespace Qt::StringLiterals;
DATAEXPORT_USE_TR(DataExport);

namespace {

// Percent of the table that all columns but the last share; the last takes what they leave.
constexpr int kSharedWidth = 90;
constexpr int kDateOfCall = 3;

CIExportReport::Fault withoutColumns()
{
    return { CIExportReport::Cause::Content, tr("The table has no columns.") };
}

QString header(const BkData &data, const QString &title)
{
    const int columns = data.column();
    const QString width = QString::number(kSharedWidth / columns);
    QString text = "<table id=\"wrap\" cellspacing=0 cellpadding=0><tr><td>"
                   "<div id=\"top\"><h1>"_L1
        + CUtils::htmlEncode(title)
        + "</h1></div><div class=\"main\"><table border=0 cellspacing=0 cellpadding=0>"
          "<tr class=\"dark\">"_L1;
    for (int column = 0; column < columns; ++column) {
        text += column < columns - 1 ? "<td width=\""_L1 + width + "%\">"_L1 : u"<td>"_s;
        text += CUtils::htmlEncode(data.columnName(column)) + "&nbsp;</td>"_L1;
    }
    return text + "</tr>"_L1;
}

QString row(const CIDataExporter &page, const BkData &data, int index, bool isOdd, bool isDeleted)
{
    QString text = isDeleted ? (isOdd ? u"<tr class=\"grey rd\">"_s : u"<tr class=\"rd\">"_s)
                             : (isOdd ? u"<tr class=\"grey\">"_s : u"<tr>"_s);
    const int columns = data.column();
    const bool isCall = data.dataType() == BkDataType::Calls;
    // Browsers also break a date at its hyphens.
    const QLatin1StringView unbroken = page.isHardened() ? "<td nowrap>"_L1 : "<td>"_L1;
    for (int column = 0; column < columns; ++column) {
        QString cell = CUtils::htmlEncode(data.value(index, column));
        const bool isDateOfCall = isCall && column == kDateOfCall;
        if (isDateOfCall)
            cell.replace(u' ', "&nbsp;"_L1);
        text += isDateOfCall ? unbroken : "<td>"_L1;
        if (isDeleted && column == 0)
            text += "<img src='image/"_L1 + CHtmlExporter::DELETE_FLAG_IMG + u'\''
                + PageText::alt(page, DataExport::tr("Deleted")) + u'>';
        text += cell + "&nbsp;</td>"_L1;
    }
    return text + "</tr>"_L1;
}

} // namespace

CTableTranslate::CTableTranslate(BkData *data)
    : m_data(data)
{
}

CTableTranslate::~CTableTranslate() = default;

QString CTableTranslate::tableStyle() const
{
    return u"<style type=\"text/css\">"
           "html, div, body, p, form, img, h1, input { margin:0 auto; padding:0; "
           "font:12px/160% Arial, Helvetica, sans-serif; color:#575757; }"
           "img, input { border:none; }"
           "h1 { color:#fefefe; font-size:32px; font-weight:bold; margin-left:16px; "
           "padding-top:5px; }"
           "#wrap { margin:0 auto; width:80%; background-color:#FFF; padding:4px; "
           "border:1px solid #cacaca; }"
           "#top { background: #7f8ea3; }"
           ".main table { margin:0 auto; font-size:14px; width:100%; }"
           ".main table tr td { background-color:#fff; border-collapse:collapse; height:38px; "
           "line-height:150%; text-align:left; border:1px solid #f8f8f8; padding:6px; }"
           ".main table tr.grey td { background-color:#f8f8f8; }"
           ".main table tr.dark td { background-color:#e5e4e4; color:#353535; font-weight:bold; "
           "border:1px solid #dadada; text-align:center; }"
           ".rd { color:#e61010; }"
           "</style>"_s;
}

bool CTableTranslate::translate(CIDataExporter *exporter,
                                const QString &title,
                                CIProgressCallback *progress)
{
    if (m_data->column() < 1) {
        exporter->reportFailure({}, withoutColumns());
        return false;
    }
    if (!exporter->exportData(header(*m_data, title)))
        return false;
    bool hasFlagImage = false;
    const auto writeRow = [&](const BkAbstractItem *item, int index, qsizetype position) {
        const bool isDeleted = item->flag(0);
        if (isDeleted && !hasFlagImage)
            CHtmlExporter::exportDeleteFlagImage(exporter);
        hasFlagImage |= isDeleted;
        if (!exporter->exportData(row(*exporter, *m_data, index, position % 2 != 0, isDeleted)))
            return false;
        const QString name = m_data->value(index, 0);
        exporter->reportExported(name.isEmpty() ? tr("(no name)") : name);
        return true;
    };
    if (!SelectedItems(*m_data, exporter, progress).forEachRow<BkAbstractItem>(writeRow))
        return false;
    return exporter->exportData(u"</table></div></td></tr></table>"_s);
}

bool CBackupExporter::exportHtml(BkData *data,
                                 const QDir &dir,
                                 const QString &owner,
                                 const QString &typeName,
                                 CIProgressCallback *progress,
                                 CBackupExporter *exporter)
{
    if (!data)
        return false;
    // Before the sink opens, and so touches a folder that is there already.
    if (data->column() < 1) {
        if (CIExportReport *report = exporter ? exporter->report() : nullptr) {
            report->itemFailed(typeName, {}, withoutColumns());
            report->outputEnded(
                typeName, CIExportReport::Output::Page, CIExportReport::End::Failed);
        }
        return false;
    }
    CTableTranslate translator(data);
    return exportPage(
        translator, translator.tableStyle(), dir, owner, typeName, progress, exporter);
}
