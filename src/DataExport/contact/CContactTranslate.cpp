#include "contact/CContactTranslate.h"

#include "backup/SinkSettings_p.h"
#include "contact/BkContactData.h"
#include "contact/BkContactItem.h"
#include "contact/CContact2CSVTranslate.h"
#include "contact/CContact2HtmlTranslate.h"
#include "contact/CContact2VCFTranslate.h"
#include "export/CHtmlExporter.h"
#include "export/CPlainFileExporter.h"
#include "platform/CSubProgress.h"
#include "platform/Translation_p.h"

using DataExport::tr;

namespace {

constexpr int kUnitsPerPass = 100;

} // namespace

CContactTranslate::CContactTranslate(BkContactData *data)
    : m_data(data)
{
}

CContactTranslate::~CContactTranslate() = default;

bool CContactTranslate::translate(CIDataExporter *exporter,
                                  const QString &title,
                                  CIProgressCallback *progress)
{
    if (!translateHeader(exporter, title))
        return false;
    const QList<int> indices = m_data->recoverList();
    const double step = progress && !indices.isEmpty()
        ? static_cast<double>(progress->range()) / static_cast<double>(indices.size())
        : 0;
    if (!translateDataBefore(exporter))
        return false;
    for (const int index : indices) {
        if (progress && !progress->progress(step))
            break;
        auto *item = dynamic_cast<BkContactItem *>(m_data->at(index, true));
        if (item && !translateItem(exporter, item))
            return false;
    }
    return translateDataAfter(exporter);
}

bool CContactTranslate::translateItem(CIDataExporter *exporter, BkContactItem *item)
{
    // Before the sink opens a file that would stay empty.
    if (!item->detailContent()) {
        if (m_tellsReport) {
            exporter->reportFailure(nameForReport(*item),
                                    CIExportReport::Cause::Source,
                                    tr("The details of the contact could not be read."));
        }
        return true;
    }
    if (!exporter->itemExportBegin(item->value(0)))
        return true;
    const bool written = translateDataItem(exporter, item);
    const bool ended = exporter->itemExportEnd();
    if (!written || !ended)
        return false;
    if (m_tellsReport)
        exporter->reportExported(nameForReport(*item));
    return true;
}

QString CContactTranslate::nameForReport(const BkContactItem &item)
{
    const QString name = item.value(0);
    return name.isEmpty() ? tr("(no name)") : name;
}

bool CBackupExporter::exportContact(BkData *data,
                                    const QDir &dir,
                                    const QString &owner,
                                    const QString &typeName,
                                    CIProgressCallback *progress,
                                    CBackupExporter *exporter)
{
    CSubProgress sub(progress, progress ? progress->range() / 3 : 0);
    const QString title = tr("%1's %2").arg(owner, typeName);
    auto *contacts = dynamic_cast<BkContactData *>(data);
    if (!contacts)
        return false;

    // A failed or cancelled format ends the sequence. finish() is asked in either case.
    const auto pass = [&](CIDataExporter &sink, CContactTranslate &translator, const char *folder) {
        sub.initRange(kUnitsPerPass);
        applySettings(exporter, sink);
        return sink.initExporterWithSubDir(dir, owner, typeName, QLatin1String(folder))
            && translator.translate(&sink, title, &sub);
    };
    bool ok = false;
    {
        CHtmlExporter page;
        CContact2HtmlTranslate translator(contacts);
        page.setStyle(translator.contactStyle());
        ok = pass(page, translator, "HTML");
        page.finish(ok);
    }
    if (!sub.finish() || !ok)
        return ok;
    {
        CPlainFileExporter csv(QStringLiteral(".csv"), false);
        CContact2CSVTranslate translator(contacts);
        csv.setCodec(QStringLiteral("UTF16"), true);
        ok = pass(csv, translator, "CSV");
        csv.finish(ok);
    }
    if (!sub.finish() || !ok)
        return ok;
    {
        CPlainFileExporter cards(QStringLiteral(".vcf"), true);
        CContact2VCFTranslate translator(contacts);
        cards.setCodec(QStringLiteral("UTF-8"), false);
        ok = pass(cards, translator, "VCF");
        cards.finish(ok);
    }
    sub.finish();
    return ok;
}
