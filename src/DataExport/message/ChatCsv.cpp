#include "backup/BkAbstractItem.h"
#include "export/CIDataExporter.h"
#include "message/ChatCsv_p.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace {

constexpr QLatin1Char kComma(',');

} // namespace

ChatCsv::ChatCsv(CIDataExporter *exporter, const BkAbstractItem &item)
    : m_exporter(exporter)
    , m_format(*exporter)
{
    for (const int field : { 0, 1, 2 })
        m_line += m_format.cell(item.value(field)) + kComma;
    m_chatCells = m_line.size();
}

bool ChatCsv::writeHeader(CIDataExporter *exporter, QStringList names)
{
    const CsvFormat format(*exporter);
    if (format.isStandard()) {
        names.insert(names.size() - 1, tr("Sender"));
        names.append(tr("Attachments"));
    }
    return exporter->exportData(format.header(names) + format.lineEnd());
}

void ChatCsv::write(const Line &line)
{
    m_line.truncate(m_chatCells);
    m_line += m_format.cell(CCommonUtils::datetimeToMinute(line.date, true));
    m_line += kComma;
    m_line += line.typeCell;
    m_line += kComma;
    if (m_format.isStandard())
        m_line += m_format.cell(line.sender) + kComma;
    m_line += m_format.cell(line.content);
    if (m_format.isStandard())
        m_line += kComma + m_format.cell(line.attachments);
    m_line += m_format.lineEnd();
    m_exporter->exportData(m_line);
}
