#ifndef TESTS_PHONEBACKUP_WHATSAPPFIXTURE_H
#define TESTS_PHONEBACKUP_WHATSAPPFIXTURE_H

#include "BackupFixture.h"
#include "message/BkWhatsappChat.h"
#include "message/BkWhatsappItem.h"
#include "message/BkWhatsappMsg.h"
#include "sample/WhatsappDatabase.h"

//! A backup with WhatsApp's chats, and what the reader makes of them as lines of text.
class WhatsappFixture : public BackupFixture
{
public:
    static constexpr int kChats = 11;
    static constexpr int kFiles = 12;

    static QString domain()
    {
        return QStringLiteral("AppDomainGroup-group.net.whatsapp.WhatsApp.shared");
    }
    static QString businessDomain()
    {
        return QStringLiteral("AppDomainGroup-group.net.whatsapp.WhatsAppSMB.shared");
    }
    static QString oldDomain() { return QStringLiteral("AppDomain-net.whatsapp.WhatsApp"); }

    //! Adds the current tables filled by \a sql.
    void addChats(const QByteArray &sql, const QString &inDomain = domain())
    {
        addDatabase(database((Sample::whatsappTables() + sql).constData()), inDomain);
    }

    void addDatabase(const QByteArray &image, const QString &inDomain = domain())
    {
        writer.addFile(inDomain, QStringLiteral("ChatStorage.sqlite"), image);
    }

    //! Adds a file of a message; \a path as the database has it.
    void addMedia(const QString &path, const QByteArray &content = "x")
    {
        writer.addFile(domain(), QStringLiteral("Message/") + path, content);
    }

    //! Every chat as "name|contact|number", with "|deleted" behind those that are.
    QStringList chats()
    {
        QStringList lines;
        const BkData *data = set();
        for (int i = 0; data && i < data->count(1); ++i) {
            const BkAbstractItem *item = data->at(i, true);
            lines.append(item->value(0) + QLatin1Char('|') + item->value(1) + QLatin1Char('|')
                         + item->value(2)
                         + (item->flag(0) ? QStringLiteral("|deleted") : QString()));
        }
        return lines;
    }

    /*!
        The messages of a chat: type code, then marks ("> " the owner's, "! " failed, "* "
        broadcast), the member with ": ", the text, and "{name}" of its file.
    */
    QStringList messages(int chat = 0)
    {
        const BkWhatsappChat *opened = content(chat);
        if (!opened)
            return { QStringLiteral("not read") };
        QStringList lines;
        for (const BkWhatsappMsg *message : opened->messages()) {
            QString line = QString::number(message->type()) + QLatin1Char(' ');
            if (message->isFromMe())
                line += QStringLiteral("> ");
            if (!message->isSentDone())
                line += QStringLiteral("! ");
            if (message->isBroadcast())
                line += QStringLiteral("* ");
            if (!message->member().isEmpty())
                line += message->member() + QStringLiteral(": ");
            line += message->content();
            if (!message->media().isEmpty())
                line += QLatin1Char('{') + QString::fromUtf8(Files::read(message->media()))
                    + QLatin1Char('}');
            lines.append(line.replace(QLatin1Char('\n'), QLatin1Char('|')));
        }
        return lines;
    }

    BkWhatsappChat *content(int chat = 0)
    {
        const BkData *data = set();
        auto *item = data ? dynamic_cast<BkWhatsappItem *>(data->at(chat, true)) : nullptr;
        return item ? item->detailContent() : nullptr;
    }

    BkData *set(int code = kChats)
    {
        PhoneItems::Backup *opened = backup();
        return opened ? opened->getBkData(code) : nullptr;
    }

    PhoneItems::Backup *backup()
    {
        if (!m_opened)
            m_opened = open();
        return m_opened;
    }

private:
    PhoneItems::Backup *m_opened = nullptr;
};

//! Rows for the tables of WhatsApp's database.
namespace WhatsappRows {

inline QByteArray chat(int row, const QByteArray &jid, const QByteArray &more = {})
{
    const QByteArray number = QByteArray::number(row);
    return "INSERT INTO ZWACHATSESSION(Z_PK, ZSESSIONTYPE, ZCONTACTJID) VALUES (" + number + ", "
        + (jid.contains("@g.us") ? "1" : "0") + ", '" + jid + "');"
        + (more.isEmpty() ? QByteArray()
                          : "UPDATE ZWACHATSESSION SET " + more + " WHERE Z_PK = " + number + ';');
}

inline const QByteArray kAnn = chat(1, "15550100123@s.whatsapp.net", "ZPARTNERNAME = 'Ann'");
inline const QByteArray kGroup = chat(1, "120363000000000001@g.us", "ZPARTNERNAME = 'Crew'")
    + "INSERT INTO ZWAGROUPMEMBER(Z_PK, ZCHATSESSION, ZMEMBERJID) VALUES"
      " (1, 1, '15550100123@s.whatsapp.net'), (2, 1, '15550100124:7@s.whatsapp.net'),"
      " (3, 1, '205690000000001@lid'), (4, 1, '205690000000002@lid'),"
      " (5, 1, '15550100999@s.whatsapp.net');";

// A message of chat 1; \a more sets further columns.
inline QByteArray message(int row, const QByteArray &type, const QByteArray &more = {})
{
    const QByteArray number = QByteArray::number(row);
    return "INSERT INTO ZWAMESSAGE(Z_PK, ZCHATSESSION, ZSORT, ZMESSAGEDATE, ZISFROMME,"
           " ZGROUPEVENTTYPE, ZMESSAGESTATUS, ZMESSAGETYPE) VALUES ("
        + number + ", 1, " + number + ", " + QByteArray::number(700000000 + row) + ", 0, 2, 8, "
        + type + ");"
        + (more.isEmpty() ? QByteArray()
                          : "UPDATE ZWAMESSAGE SET " + more + " WHERE Z_PK = " + number + ';');
}

// The media row of message \a row.
inline QByteArray media(int row, const QByteArray &values)
{
    const QByteArray number = QByteArray::number(row);
    return "INSERT INTO ZWAMEDIAITEM(Z_PK, ZMESSAGE) VALUES (" + number + ", " + number
        + "); UPDATE ZWAMEDIAITEM SET " + values + " WHERE Z_PK = " + number
        + "; UPDATE ZWAMESSAGE SET ZMEDIAITEM = " + number + " WHERE Z_PK = " + number + ';';
}

} // namespace WhatsappRows

#endif
