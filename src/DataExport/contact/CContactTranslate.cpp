#include "contact/CContactTranslate.h"

#include "backup/FormatPasses_p.h"
#include "backup/SelectedItems_p.h"
#include "contact/BkContactData.h"
#include "contact/BkContactItem.h"
#include "contact/CContact2CSVTranslate.h"
#include "contact/CContact2HtmlTranslate.h"
#include "contact/CContact2VCFTranslate.h"
#include "export/CHtmlExporter.h"
#include "export/CsvFormat_p.h"
#include "export/PageText_p.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

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
    const SelectedItems items(*m_data, exporter, progress);
    if (!translateDataBefore(exporter))
        return false;
    const auto translate = [&](BkContactItem *item) { return translateItem(exporter, item); };
    return items.forEach<BkContactItem>(translate) && translateDataAfter(exporter);
}

bool CContactTranslate::translateItem(CIDataExporter *exporter, BkContactItem *item)
{
    // Before the sink opens a file that would stay empty.
    if (!item->detailContent()) {
        if (m_tellsReport) {
            exporter->reportFailure(nameForReport(*item),
                                    { CIExportReport::Cause::Source,
                                      tr("The details of the contact could not be read.") });
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
    auto *contacts = dynamic_cast<BkContactData *>(data);
    if (!contacts)
        return false;
    constexpr int formats = 3;
    FormatPasses passes(formats, dir, owner, typeName, progress, exporter);
    {
        CHtmlExporter page;
        CContact2HtmlTranslate translator(contacts);
        page.setStyle(passes.isHardened()
                          ? translator.contactStyle() + PageText::wrappingStyleElement()
                          : translator.contactStyle());
        passes.run(page, translator, QStringLiteral("HTML"));
    }
    {
        CPlainFileExporter csv(QStringLiteral(".csv"), false);
        CContact2CSVTranslate translator(contacts);
        CsvFormat::setCodec(csv, passes.isHardened());
        passes.run(csv, translator, QStringLiteral("CSV"));
    }
    CPlainFileExporter cards(QStringLiteral(".vcf"), true);
    CContact2VCFTranslate translator(contacts);
    cards.setCodec(QStringLiteral("UTF-8"), false);
    passes.run(cards, translator, QStringLiteral("VCF"));
    return passes.succeeded();
}
