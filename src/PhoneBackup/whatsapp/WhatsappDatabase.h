#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPDATABASE_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPDATABASE_H

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/RowDatabase.h"

#include <QByteArray>

#include <vector>

namespace PhoneBackup {

//! Where an edition of WhatsApp keeps its databases and media.
struct WhatsappHome
{
    QByteArray domain;
    QString folder; //!< Of the databases, with its slash; empty: the domain itself.

    static WhatsappHome app()
    {
        return { "AppDomainGroup-group.net.whatsapp.WhatsApp.shared", {} };
    }
    static WhatsappHome business()
    {
        return { "AppDomainGroup-group.net.whatsapp.WhatsAppSMB.shared", {} };
    }
};

//! One of WhatsApp's databases.
class WhatsappDatabase : public RowDatabase
{
public:
    //! The database \a name. None when the backup has none or it cannot be opened.
    static std::unique_ptr<WhatsappDatabase> open(Source &source,
                                                  const WhatsappHome &home,
                                                  const QString &name,
                                                  const Notice &loss,
                                                  int dataType = DataType::Whatsapp);

    explicit WhatsappDatabase(RowDatabase &&database);
};

/*!
    \brief Which rows of a table belong to which message or chat, for tables that name it.

    The app keeps no index over that column that could be relied on.
    \par Memory
    16 bytes a row.
*/
class RowsOfMessages
{
public:
    //! Reads \a column of \a table; without either there are no rows.
    RowsOfMessages(RowDatabase &database, const QString &table, const QString &column);

    bool has(qint64 message) const { return first(message) != 0; }

    //! The first row of \a message, 0 when it has none.
    qint64 first(qint64 message) const;

    //! All rows of \a message.
    QList<qint64> of(qint64 message) const;

private:
    struct Link
    {
        qint64 message;
        qint64 row;
    };
    std::vector<Link>::const_iterator find(qint64 message) const;

    std::vector<Link> m_links; // by message, then row
};

} // namespace PhoneBackup

#endif
