#include "backup/BkAbstractItem.h"
#include "export/CIDataExporter.h"
#include "export/CUtils.h"
#include "message/ChatCsv_p.h"
#include "platform/CCommonUtils.h"

namespace {

constexpr QLatin1Char kComma(',');
constexpr QLatin1Char kLineEnd('\n');

} // namespace

ChatCsv::ChatCsv(CIDataExporter *exporter, const BkAbstractItem &item)
    : m_exporter(exporter)
{
    for (const int field : { 0, 1, 2 })
        m_line += CUtils::csvEncode(item.value(field)) + kComma;
    m_chatCells = m_line.size();
}

bool ChatCsv::writeHeader(CIDataExporter *exporter, const QStringList &names)
{
    return exporter->exportData(names.join(kComma) + kLineEnd);
}

void ChatCsv::write(const QDateTime &date, const QString &typeCell, const QString &content)
{
    m_line.truncate(m_chatCells);
    m_line += CUtils::csvEncode(CCommonUtils::datetimeToMinute(date, true));
    m_line += kComma;
    m_line += typeCell;
    m_line += kComma;
    m_line += CUtils::csvEncode(content);
    m_line += kLineEnd;
    m_exporter->exportData(m_line);
}
