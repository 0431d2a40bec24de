#ifndef ARCHIVE_NOTES_NOTEPAGES_H
#define ARCHIVE_NOTES_NOTEPAGES_H

#include "Archive/lists/Listing.h"
#include "Archive/records/RecordTaker.h"

#include <QSet>

namespace PhoneBackup {
struct NoteAttachment;
struct NoteBlock;
struct NoteBody;
struct NoteRun;
} // namespace PhoneBackup

namespace Archive {

class Html;

//! A page per note, and the list of all by folder.
class NotePages final : public TakerOf<NotePages>
{
public:
    //! \a site is borrowed.
    explicit NotePages(Site &site);

    void take(const PhoneBackup::Note &note);

    //! Writes the list.
    void finish();

private:
    struct Listed
    {
        QString folder;
        bool isPinned;
        Listing::Entry entry;
    };

    void writeNote(const PhoneBackup::Note &note, const QString &title, const QString &name);

    Site &m_site;
    Listing m_list;
    int m_place;
    std::vector<Listed> m_notes;
    QSet<QString> m_names;
};

//! Writes the body of a note with its formatting.
class NoteHtml
{
public:
    //! All are borrowed.
    NoteHtml(Html &html, const MediaHtml &media, const PhoneBackup::Note &note);

    void put(const PhoneBackup::NoteBody &body);

    //! The attachments that stand nowhere in the text.
    void putRest();

    //! What a page shows of \a attachment.
    static Media mediaOf(const PhoneBackup::NoteAttachment &attachment);

private:
    void putBlock(const PhoneBackup::NoteBody &body, const PhoneBackup::NoteBlock &block);
    void putRuns(const PhoneBackup::NoteBody &body, const PhoneBackup::NoteBlock &block);
    void putRun(const PhoneBackup::NoteBody &body, const PhoneBackup::NoteRun &run);
    void putTable(const PhoneBackup::NoteBody &body, const PhoneBackup::NoteBlock &block);
    void putAttachment(const PhoneBackup::NoteAttachment &attachment);

    Html &m_html;
    const MediaHtml &m_media;
    const PhoneBackup::Note &m_note;
    QSet<qsizetype> m_shown;
};

} // namespace Archive

#endif
