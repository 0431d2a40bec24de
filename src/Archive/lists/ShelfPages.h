#ifndef ARCHIVE_LISTS_SHELFPAGES_H
#define ARCHIVE_LISTS_SHELFPAGES_H

#include "Archive/lists/Listing.h"
#include "Archive/media/Persons.h"
#include "Archive/records/RecordTaker.h"

namespace Archive {

//! What is mainly files: voice memos, voicemail, books, music and the documents of apps.
class ShelfPages final : public TakerOf<ShelfPages>
{
public:
    //! Both are borrowed.
    ShelfPages(Site &site, Persons &persons);

    void take(const Transcribed<PhoneBackup::Voicemail> &voicemail);
    void take(const Transcribed<PhoneBackup::VoiceMemo> &memo);
    void take(const PhoneBackup::Book &book);
    void take(const PhoneBackup::Song &song);
    void take(const PhoneBackup::AppDocument &document);

    //! Writes the pages.
    void finish();

private:
    Listing::Entry sound(
        Listing &list, const QString &title, Media media, const QDateTime &date, QStringList facts);

    Site &m_site;
    Persons &m_persons;
    Listing m_voicemail;
    Listing m_memos;
    Listing m_books;
    Listing m_music;
    Listing m_documents;
};

} // namespace Archive

#endif
