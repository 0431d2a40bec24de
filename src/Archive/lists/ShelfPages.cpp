#include "Archive/lists/ShelfPages.h"

#include "Archive/html/Html.h"
#include "Archive/media/Site.h"
#include "PhoneBackup/calls/Voicemail.h"
#include "PhoneBackup/media/AppDocuments.h"
#include "PhoneBackup/media/Books.h"
#include "PhoneBackup/media/Songs.h"
#include "PhoneBackup/media/VoiceMemos.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

namespace Archive {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

ShelfPages::ShelfPages(Site &site, Persons &persons)
    : m_site(site)
    , m_persons(persons)
    , m_voicemail(site, "voicemail", "voicemail", "cards")
    , m_memos(site, "memos", "memo", "cards")
    , m_books(site, "books", "book", "rows")
    , m_music(site, "music", "music", "cards")
    , m_documents(site, "documents", "document", "rows")
{
}

Listing::Entry ShelfPages::sound(
    Listing &list, const QString &title, Media media, const QDateTime &date, QStringList facts)
{
    Listing::Entry entry;
    media.kind = Media::Kind::Sound;
    if (media.name.isEmpty())
        media.name = m_site.files.nameOf(media.file).section(u'/', -1);
    if (media.name.isEmpty())
        media.name = u"Recording"_s;
    facts.removeAll(QString());
    Html html(entry.html);
    html << "<b dir=\"auto\">";
    html.text(title) << "</b>";
    if (date.isValid())
        html << "<span class=\"when\">", html.text(m_site.clock.dayAndTime(date)) << "</span>";
    list.media().put(html, media);
    if (!facts.isEmpty())
        html << "<small dir=\"auto\">", html.text(facts.join(u" · "_s)) << "</small>";
    entry.date = date;
    entry.who = title;
    entry.text = facts.join(u' ') + u' ' + media.transcript;
    entry.latest = date.isValid() ? title + u", "_s + m_site.clock.dayAndTime(date) : title;
    return entry;
}

void ShelfPages::take(const Transcribed<Voicemail> &of)
{
    const Voicemail &voicemail = of.recording;
    const QString number = voicemail.number();
    Media media;
    media.file = voicemail.file;
    media.transcript = of.transcript;
    media.seconds = voicemail.seconds.value_or(-1);
    if (voicemail.file == FileIndex::kNone)
        media.missing = u"was never downloaded to the phone"_s;
    const QString name = number.isEmpty() ? u"Unknown"_s : m_persons.name(number);
    m_voicemail.add(sound(m_voicemail,
                          name,
                          media,
                          voicemail.date,
                          { name == number ? QString() : number,
                            voicemail.isHeard ? u""_s : u"Not heard yet"_s,
                            voicemail.isDeleted ? u"Deleted"_s : QString() }));
    if (!number.isEmpty())
        m_persons.mention(
            number,
            { u"Voicemail"_s, u"voicemail/"_s + QString::fromLatin1(m_voicemail.lastPlace()) });
}

void ShelfPages::take(const Transcribed<VoiceMemo> &of)
{
    const VoiceMemo &memo = of.recording;
    Media media;
    media.file = memo.file;
    media.transcript = of.transcript;
    media.seconds = memo.seconds.value_or(-1);
    m_memos.add(sound(m_memos,
                      memo.title.isEmpty() ? memo.stem : memo.title,
                      media,
                      memo.date,
                      { memo.folder, memo.deleted ? u"Deleted"_s : QString() }));
}

void ShelfPages::take(const Song &song)
{
    Media media;
    media.file = song.file;
    media.seconds = song.seconds.value_or(-1);
    const QString name = PathParts::text(PathParts::name(m_site.source.index().path(song.file)));
    m_music.group(song.ringtone ? u"Ringtones"_s : u"Songs"_s);
    m_music.add(sound(
        m_music, song.title.isEmpty() ? name : song.title, media, {}, { song.artist, song.album }));
}

void ShelfPages::take(const Book &book)
{
    const QString path = m_site.files.nameOf(book.row);
    Listing::Entry entry;
    Html html(entry.html);
    const QString title =
        book.title.isEmpty() ? PathParts::text(PathParts::name(book.path)) : book.title;
    html << "<b dir=\"auto\">";
    if (path.isEmpty()) {
        html.text(title);
    } else {
        html << "<a";
        html.link("href", m_books.page().toOutput(), path) << '>';
        html.text(title) << "</a>";
    }
    static constexpr std::array kKinds { "EPUB", "PDF", "Book" };
    html << "</b><span dir=\"auto\">";
    html.text(book.author) << "</span><small>" << kKinds[std::size_t(book.kind)]
                           << (path.isEmpty() ? ", not exported" : "") << "</small>";
    entry.who = title;
    entry.text = book.author;
    entry.latest = title;
    m_books.add(entry);
}

void ShelfPages::take(const AppDocument &document)
{
    m_documents.group(PathParts::text(document.app));
    Listing::Entry entry;
    Html html(entry.html);
    Media media;
    media.file = document.file;
    media.name = PathParts::text(PathParts::name(document.path));
    media.bytes = m_site.source.files().contentSize(document.file);
    m_documents.media().put(html, media);
    html << "<small dir=\"auto\">";
    html.text(PathParts::text(PathParts::folder(document.path))) << "</small>";
    entry.who = media.name;
    entry.text = PathParts::text(document.app) + u' ' + PathParts::text(document.path);
    entry.latest = media.name;
    m_documents.add(entry);
}

void ShelfPages::finish()
{
    for (Listing *list : { &m_voicemail, &m_memos, &m_books, &m_music, &m_documents })
        list->finish();
}

} // namespace Archive
