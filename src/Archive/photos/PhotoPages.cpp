#include "Archive/photos/PhotoPages.h"

#include "Archive/html/Html.h"
#include "Archive/media/Site.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/media/Photo.h"
#include "PhoneBackup/media/SharedAlbums.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

#include <QLocale>

#include <algorithm>

namespace Archive {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;
using PhoneTime::kNoMs;

namespace {

constexpr std::size_t kPerPage = 1000;
constexpr std::size_t kInTile = 6;

QString pageName(const QString &stem, std::size_t number)
{
    return number == 0 ? stem + u".html"_s : u"%1-%2.html"_s.arg(stem).arg(number + 1);
}

QString aboutOf(const Photo &photo, LocalClock &clock)
{
    QStringList facts;
    if (photo.taken.isValid())
        facts.append(clock.dayAndTime(photo.taken));
    for (const QString &text : { photo.title, photo.caption }) {
        if (!text.isEmpty())
            facts.append(text);
    }
    if (photo.place)
        facts.append(u"%1, %2"_s.arg(photo.place->latitude, 0, 'f', 4)
                         .arg(photo.place->longitude, 0, 'f', 4));
    if (photo.favourite)
        facts.append(u"★ Favourite"_s);
    if (photo.hidden)
        facts.append(u"Hidden"_s);
    if (photo.edited)
        facts.append(u"Edited"_s);
    if (photo.kind == Photo::Kind::Live)
        facts.append(u"Live"_s);
    if (photo.kind == Photo::Kind::Screenshot)
        facts.append(u"Screenshot"_s);
    if (photo.kind == Photo::Kind::Panorama)
        facts.append(u"Panorama"_s);
    if (photo.deleted)
        facts.append(u"Recently deleted"_s);
    return facts.join(u" · "_s);
}

} // namespace

PhotoPages::PhotoPages(Site &site, bool photos, bool videos)
    : m_site(site)
    , m_photos(photos)
    , m_videos(videos)
{
}

void PhotoPages::take(const Photo &photo)
{
    if (!m_isShared && !(photo.isVideo() ? m_videos : m_photos))
        return;
    const FileIndex &index = m_site.source.index();
    Entry &entry = m_entries.emplace_back();
    Media &media = entry.media;
    media.kind = photo.isVideo() ? Media::Kind::Film : Media::Kind::Picture;
    media.file = photo.editedFile != FileIndex::kNone ? photo.editedFile : photo.file;
    const FileIndex::Row named = photo.file != FileIndex::kNone ? photo.file : media.file;
    if (named != FileIndex::kNone)
        media.name = PathParts::text(PathParts::name(index.path(named)));
    if (m_isShared)
        media.kind = Media::kindOf(media.name);
    media.seconds = photo.seconds.value_or(-1);
    entry.takenMs = photo.taken.isValid() ? photo.taken.toMSecsSinceEpoch() : kNoMs;
    entry.about = aboutOf(photo, m_site.clock);
    const std::size_t number = m_entries.size() - 1;
    if (m_isShared) {
        m_shared.back().entries.push_back(number);
        return;
    }
    m_roll.push_back(number);
    for (const PhotoAlbum &album : photo.albums) {
        const QString key = album.identifier.isEmpty() ? album.title : album.identifier;
        if (!m_albumNumbers.contains(key)) {
            m_albumNumbers.insert(key, m_albums.size());
            m_albums.push_back({ album.title, {} });
        }
        m_albums[m_albumNumbers.value(key)].entries.push_back(number);
    }
}

void PhotoPages::take(const SharedAlbum &album)
{
    m_isShared = true;
    m_shared.push_back(
        { album.title.isEmpty() ? PathParts::text(album.identifier) : album.title, {} });
}

void PhotoPages::writeGrid(const QString &path,
                           const QByteArray &section,
                           const QString &title,
                           const std::vector<std::size_t> &entries)
{
    const Page page { title, section, 1 };
    const MediaHtml media(m_site, page);
    for (std::size_t from = 0; from < entries.size(); from += kPerPage) {
        const std::size_t end = std::min(entries.size(), from + kPerPage);
        std::vector<FileIndex::Row> wanted;
        for (std::size_t i = from; i < end; ++i)
            m_entries[entries[i]].media.addWanted(wanted);
        m_site.thumbnails.prepare(wanted);
        QByteArray out;
        Html html(out);
        html << "<div class=\"wall\"><p class=\"acts\"><a class=\"btn\" href=\"index.html\">‹ All "
                "albums and months</a></p><h1 dir=\"auto\">";
        html.text(title) << " <small>";
        html.number(qint64(entries.size())) << "</small></h1><ul class=\"grid\">\n";
        for (std::size_t i = from; i < end; ++i) {
            const Entry &entry = m_entries[entries[i]];
            media.putTile(html, entry.media, "p" + QByteArray::number(entries[i]), entry.about);
            html << "\n";
        }
        html << "</ul><p class=\"on\">";
        const std::size_t number = from / kPerPage;
        if (number > 0) {
            html << "<a class=\"btn\"";
            html.link("href", {}, pageName(path, number - 1)) << ">‹ Previous</a>";
        }
        if (end < entries.size()) {
            html << "<a class=\"btn\"";
            html.link("href", {}, pageName(path, number + 1)) << ">Next ›</a>";
        }
        html << "</p></div>\n";
        m_site.write(QString::fromLatin1(section) + u'/' + pageName(path, number), page, out);
    }
}

void PhotoPages::putCover(Html &html,
                          const QString &href,
                          const QString &title,
                          const std::vector<std::size_t> &entries)
{
    html << "<li><a";
    html.link("href", {}, href) << '>';
    for (const std::size_t number : entries) {
        const Thumbnails::Thumb thumb = m_site.thumbnails.of(m_entries[number].media.file);
        if (thumb.isNull())
            continue;
        html << "<img alt=\"\" loading=\"lazy\" width=\"" << QByteArray::number(thumb.size.width())
             << "\" height=\"" << QByteArray::number(thumb.size.height()) << '"';
        html.link("src", "../", thumb.path) << '>';
        break;
    }
    html << "<b dir=\"auto\">";
    html.text(title) << "</b><small>";
    html.number(qint64(entries.size())) << "</small></a></li>\n";
}

void PhotoPages::finish()
{
    finishPhotos();
    finishShared();
}

void PhotoPages::finishPhotos()
{
    if (m_roll.empty())
        return;
    // The newest first; of equal dates in the order of the camera.
    std::stable_sort(m_roll.begin(), m_roll.end(), [&](std::size_t a, std::size_t b) {
        return m_entries[a].takenMs > m_entries[b].takenMs;
    });
    std::vector<std::pair<QDate, std::vector<std::size_t>>> months;
    for (const std::size_t number : m_roll) {
        const qint64 ms = m_entries[number].takenMs;
        QDate month;
        if (ms != kNoMs) {
            const QDate day = m_site.clock.at(ms).date();
            month = QDate(day.year(), day.month(), 1);
        }
        if (months.empty() || months.back().first != month)
            months.push_back({ month, {} });
        months.back().second.push_back(number);
    }
    const int place = m_site.search.addPlace("photo", u"Photos"_s, u"photos"_s);
    QByteArray byMonth;
    Html html(byMonth);
    for (const auto &[month, entries] : months) {
        const QString stem = month.isValid() ? month.toString(u"yyyy-MM"_s) : u"undated"_s;
        const QString title = month.isValid() ? monthText(month) : u"Without a date"_s;
        writeGrid(stem, "photos", title, entries);
        putCover(html, stem + u".html"_s, title, entries);
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const Entry &entry = m_entries[entries[i]];
            m_site.search.add(place,
                              entry.takenMs,
                              pageName(stem, i / kPerPage).toLatin1() + "#p"
                                  + QByteArray::number(entries[i]),
                              entry.media.name,
                              entry.about);
        }
    }
    const Page page { u"Photos"_s, "photos", 1 };
    QByteArray out;
    Html all(out);
    all << "<div class=\"wall\"><h1>Photos <small>";
    all.number(qint64(m_roll.size())) << "</small></h1>\n";
    if (!m_albums.empty()) {
        all << "<h2>Albums</h2><ul class=\"covers\">\n";
        for (std::size_t i = 0; i < m_albums.size(); ++i) {
            const QString stem = u"album-%1"_s.arg(i + 1);
            writeGrid(stem, "photos", m_albums[i].title, m_albums[i].entries);
            putCover(all, stem + u".html"_s, m_albums[i].title, m_albums[i].entries);
        }
        all << "</ul>\n";
    }
    all << "<h2>Months</h2><ul class=\"covers\">\n" << byMonth << "</ul></div>\n";
    m_site.write(u"photos/index.html"_s, page, out);

    QByteArray small;
    for (const std::size_t number : m_roll) {
        const Thumbnails::Thumb thumb = m_site.thumbnails.of(m_entries[number].media.file);
        if (thumb.isNull() || m_entries[number].media.kind != Media::Kind::Picture)
            continue;
        Html one(small);
        one << "<img alt=\"\" width=\"80\" height=\"80\"";
        one.link("src", QByteArray(), m_site.frame.archiveFolder + u'/' + thumb.path) << '>';
        if (std::size_t(small.count("<img")) == kInTile)
            break;
    }
    const auto year = [&](std::size_t number) {
        const qint64 ms = m_entries[number].takenMs;
        return ms == kNoMs ? 0 : m_site.clock.at(ms).date().year();
    };
    int oldest = 0;
    for (const std::size_t number : m_roll)
        oldest = year(number) != 0 ? year(number) : oldest;
    const int newest = year(m_roll.front());
    const QString period = newest == 0 ? QString()
        : oldest == newest             ? QString::number(newest)
                                       : u"%1 – %2"_s.arg(oldest).arg(newest);
    m_site.tiles.insert("photos",
                        tile(qint64(m_roll.size()), period, {}) + "<span class=\"strip\">" + small
                            + "</span>");
}

void PhotoPages::finishShared()
{
    if (m_shared.empty())
        return;
    const Page page { u"Shared albums"_s, "albums", 1 };
    QByteArray out = "<div class=\"wall\"><h1>Shared albums</h1><ul class=\"covers\">\n";
    Html html(out);
    QStringList titles;
    for (std::size_t i = 0; i < m_shared.size(); ++i) {
        const QString stem = u"album-%1"_s.arg(i + 1);
        writeGrid(stem, "albums", m_shared[i].title, m_shared[i].entries);
        putCover(html, stem + u".html"_s, m_shared[i].title, m_shared[i].entries);
        titles.append(m_shared[i].title);
    }
    m_site.write(u"albums/index.html"_s, page, out + "</ul></div>\n");
    m_site.tiles.insert("albums", tile(qint64(m_shared.size()), {}, { titles.join(u", "_s) }));
}

} // namespace Archive
