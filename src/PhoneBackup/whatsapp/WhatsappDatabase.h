#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPDATABASE_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPDATABASE_H

#include "PhoneBackup/source/RowDatabase.h"

#include <QByteArray>
#include <QDateTime>

#include <vector>

namespace PhoneBackup {

//! Where an edition of WhatsApp keeps its databases and media.
struct WhatsappPlace
{
    QByteArray domain;
    QString folder; //!< Of the databases, with its slash; empty: the domain itself.

    static WhatsappPlace app()
    {
        return { "AppDomainGroup-group.net.whatsapp.WhatsApp.shared", {} };
    }
    static WhatsappPlace business()
    {
        return { "AppDomainGroup-group.net.whatsapp.WhatsAppSMB.shared", {} };
    }
};

//! One of WhatsApp's databases.
class WhatsappDatabase : public RowDatabase
{
public:
    static constexpr int kChats = 11; //!< The data type that its problems usually belong to.

    //! The database \a name. None when the backup has none or it cannot be opened.
    static std::unique_ptr<WhatsappDatabase> open(Source &source,
                                                  const WhatsappPlace &place,
                                                  const QString &name,
                                                  const QString &loss,
                                                  int dataType = kChats);

    explicit WhatsappDatabase(RowDatabase &&database);

    //! "SELECT \a columns FROM \a table WHERE Z_PK = ?1"; none when the table has no such column.
    std::unique_ptr<Statement> prepareRow(const QStringList &columns, const QString &table);
};

/*!
    \brief Which rows of a table belong to which message, for tables that name the message.

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
