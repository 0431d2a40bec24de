#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPINFOS_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPINFOS_H

#include "PhoneBackup/source/Table.h"
#include "PhoneBackup/whatsapp/WhatsappDatabase.h"

namespace PhoneBackup {

/*!
    \brief Which messages have reactions or are polls.

    They stand among the receipts, of which nearly every message has a row. All of them are looked
    through once, so that no other message costs a query.
    \par Memory
    16 bytes for each message that has any.
*/
class WhatsappInfos
{
public:
    explicit WhatsappInfos(WhatsappDatabase &database);

    //! What is stored for \a message, whose own column names the row \a info or 0; else empty.
    //! Valid until the next call.
    QByteArrayView of(qint64 message, qint64 info);

private:
    struct Link
    {
        qint64 message; // 0: the row names none
        qint64 row;
    };

    Table m_table;
    Table::Column m_info;
    std::vector<Link> m_byMessage;
    std::vector<qint64> m_rows; // all of them
    std::optional<Table::Lookup> m_lookup;
};

} // namespace PhoneBackup

#endif
