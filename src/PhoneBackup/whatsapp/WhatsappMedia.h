#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPMEDIA_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPMEDIA_H

#include "PhoneBackup/source/Table.h"
#include "PhoneBackup/whatsapp/WhatsappDatabase.h"
#include "PhoneBackup/whatsapp/WhatsappMessage.h"

namespace PhoneBackup {

/*!
    \brief The media of WhatsApp's messages, and where their files are.

    Only files of the index in the app's own domains are found: a path that leads elsewhere, by ".."
    or from the root, is that of a missing file.
*/
class WhatsappMedia
{
public:
    //! \a home is the one of \a database.
    WhatsappMedia(Source &source, const WhatsappHome &home, WhatsappDatabase &database);

    const RowsOfMessages &rows() const { return m_rows; }

    /*!
        Puts what media row \a media, else that which names \a message, tells into the details of
        that message, whose kind is known; without such a row they stay as they are.
    */
    void read(qint64 media, qint64 messageRow, WhatsappMessage &message);

    //! Whether the backup has the file of that media row, else of the one that names the message.
    bool hasFile(qint64 media, qint64 messageRow);

    //! The file at \a path, FileIndex::kNone when the backup has none.
    FileIndex::Row find(const QString &path) const;

private:
    struct Columns
    {
        explicit Columns(RowDatabase &database);

        Table table;
        Table::Column path, title, cardName, cardText, latitude, longitude, preview, metadata, size,
            duration, origin;
        Table::Lookup rows;
    };

    const Table::Row *row(qint64 media, qint64 messageRow);
    FileIndex::Row findPreview(const QString &path, const QString &filePath) const;

    Source &m_source;
    const WhatsappHome m_home;
    RowsOfMessages m_rows;
    Columns m_columns;
};

} // namespace PhoneBackup

#endif
