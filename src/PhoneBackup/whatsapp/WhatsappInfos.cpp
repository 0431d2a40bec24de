#include "PhoneBackup/whatsapp/WhatsappInfos.h"

#include "PhoneBackup/whatsapp/WhatsappPacked.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

WhatsappInfos::WhatsappInfos(WhatsappDatabase &database)
    : m_table(database, u"ZWAMESSAGEINFO"_s)
    , m_info(m_table.column(u"ZRECEIPTINFO"_s))
{
    const Table::Column message = m_table.column(u"ZMESSAGE"_s);
    m_table.forEach([&](const Table::Row &row) {
        if (!WhatsappPacked::hasMore(row.bytes(m_info)))
            return;
        m_rows.push_back(row.id());
        if (row.integer(message) != 0)
            m_byMessage.push_back({ row.integer(message), row.id() });
    });
    std::sort(m_rows.begin(), m_rows.end());
    std::sort(m_byMessage.begin(), m_byMessage.end(), [](const Link &a, const Link &b) {
        return a.message != b.message ? a.message < b.message : a.row < b.row;
    });
    if (!m_rows.empty())
        m_lookup = m_table.lookup();
}

QByteArrayView WhatsappInfos::of(qint64 message, qint64 info)
{
    if (!m_lookup)
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
    const Table::Row *found = m_lookup->find(row);
    return found ? found->bytes(m_info) : QByteArrayView();
}

} // namespace PhoneBackup
