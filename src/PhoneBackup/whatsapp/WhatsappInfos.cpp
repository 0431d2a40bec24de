#include "PhoneBackup/whatsapp/WhatsappInfos.h"

#include "PhoneBackup/whatsapp/WhatsappRecords.h"
#include "platform/Translation_p.h"

#include <algorithm>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

WhatsappInfos::WhatsappInfos(WhatsappDatabase &database)
    : m_database(database)
{
    const QString table = u"ZWAMESSAGEINFO"_s;
    if (!database.hasColumn(table, u"ZRECEIPTINFO"_s) || !database.hasColumn(table, u"Z_PK"_s))
        return;
    const QString what = u"Z_PK, %1, ZRECEIPTINFO"_s.arg(database.column(table, u"ZMESSAGE"_s));
    database.query(what, table, [this](const Statement &row) {
        if (!WhatsappRecords::hasMore(row.bytes(2)))
            return;
        m_rows.push_back(row.integer(0));
        if (row.integer(1) != 0)
            m_byMessage.push_back({ row.integer(1), row.integer(0) });
    });
    std::sort(m_rows.begin(), m_rows.end());
    std::sort(m_byMessage.begin(), m_byMessage.end(), [](const Link &a, const Link &b) {
        return a.message != b.message ? a.message < b.message : a.row < b.row;
    });
    if (!m_rows.empty())
        m_query = database.prepareRow({ u"ZRECEIPTINFO"_s }, table);
}

QByteArrayView WhatsappInfos::of(qint64 message, qint64 info)
{
    if (!m_query)
        return {};
    qint64 row = std::binary_search(m_rows.cbegin(), m_rows.cend(), info) ? info : 0;
    if (row == 0) {
        const auto before = [](const Link &link, qint64 wanted) { return link.message < wanted; };
        const auto found =
            std::lower_bound(m_byMessage.cbegin(), m_byMessage.cend(), message, before);
        if (found == m_byMessage.cend() || found->message != message)
            return {};
        row = found->row;
    }
    m_query->reset();
    m_query->bind(1, row);
    const Statement::Step step = m_query->step();
    if (step == Statement::Step::Failed)
        m_database.addLoss(tr("It is damaged: %1.").arg(m_query->error()));
    return step == Statement::Step::Row ? m_query->bytes(0) : QByteArrayView();
}

} // namespace PhoneBackup
