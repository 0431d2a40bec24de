#ifndef PHONEBACKUP_WHATSAPP_WHATSAPPMEDIA_H
#define PHONEBACKUP_WHATSAPP_WHATSAPPMEDIA_H

#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneBackup/whatsapp/WhatsappDatabase.h"
#include "PhoneBackup/whatsapp/WhatsappRecords.h"

namespace PhoneBackup {

//! What the database tells of a message's file, card or place.
struct WhatsappMediaItem
{
    qint64 row = 0; //!< 0: there is none.
    QString path; //!< Below the app's folder; empty when it was never downloaded.
    QString title;
    QString cardName; //!< Of contacts; of places the address.
    QString cardText; //!< Of contacts the vCards; else the type of the file.
    double latitude = 0; //!< Of places; of pictures their width.
    double longitude = 0;
    QString previewPath; //!< Of a small picture of it.
    WhatsappQuote quote; //!< What the message answers.
};

/*!
    \brief The media of WhatsApp's messages, and where their files are.

    Only files of the index in the app's own domains are found: a path that leads elsewhere, by ".."
    or from the root, is that of a missing file.
*/
class WhatsappMedia
{
public:
    //! \a place is the one of \a database.
    WhatsappMedia(Source &source, const WhatsappPlace &place, WhatsappDatabase &database);

    const RowsOfMessages &rows() const { return m_rows; }

    //! The item \a row; that of \a message when there is no such row.
    WhatsappMediaItem item(qint64 message, qint64 row);

    //! The file at \a path, FileIndex::kNone when the backup has none.
    FileIndex::Row find(const QString &path) const;

    //! The small picture that the app keeps beside the file of \a item, FileIndex::kNone when the
    //! backup has none.
    FileIndex::Row findPreview(const WhatsappMediaItem &item) const;

private:
    WhatsappMediaItem read(qint64 row);

    Source &m_source;
    const WhatsappPlace m_place;
    WhatsappDatabase &m_database;
    RowsOfMessages m_rows;
    std::unique_ptr<Statement> m_query;
};

} // namespace PhoneBackup

#endif
