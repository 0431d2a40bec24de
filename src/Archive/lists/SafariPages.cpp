#include "Archive/lists/SafariPages.h"

#include "Archive/html/Html.h"
#include "Archive/media/Site.h"
#include "PhoneBackup/safari/Bookmark.h"
#include "PhoneBackup/safari/VisitedPage.h"

#include <algorithm>

namespace Archive {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

constexpr int kDeepest = 64; // of folders; deeper ones are damage that repeats itself

QString folderName(const BookmarkFolder &folder)
{
    switch (folder.kind) {
    case BookmarkFolder::Kind::Root:
        return {};
    case BookmarkFolder::Kind::Favorites:
        return u"Favorites"_s;
    case BookmarkFolder::Kind::Menu:
        return u"Bookmarks menu"_s;
    case BookmarkFolder::Kind::ReadingList:
        return u"Reading list"_s;
    case BookmarkFolder::Kind::AllowList:
        return u"Allowed websites"_s;
    case BookmarkFolder::Kind::Own:
        break;
    }
    return folder.title;
}

QString pathOf(const Bookmark &bookmark)
{
    QStringList names;
    int depth = 0;
    for (const auto *folder = bookmark.folder; folder && depth < kDeepest;
         folder = folder->parent) {
        names.prepend(folderName(*folder));
        ++depth;
    }
    names.removeAll(QString());
    return names.isEmpty() ? u"Bookmarks"_s : names.join(u" › "_s);
}

void putPage(Html &html, const QString &title, const QString &address)
{
    html << "<b dir=\"auto\">";
    html.external(address, title.isEmpty() ? address : title) << "</b>";
    if (!title.isEmpty())
        html << "<small class=\"url\">", html.text(address) << "</small>";
}

} // namespace

SafariPages::SafariPages(Site &site)
    : m_site(site)
    , m_bookmarks(site, "bookmarks", "bookmark", "rows")
    , m_history(site, "history", "visit", "rows")
{
}

void SafariPages::take(const Bookmark &bookmark)
{
    const QString path = pathOf(bookmark);
    const auto same = std::find_if(
        m_folders.begin(), m_folders.end(), [&](const auto &one) { return one.first == path; });
    auto &entries = same != m_folders.end()
        ? same->second
        : m_folders.emplace_back(path, std::vector<Listing::Entry>()).second;
    Listing::Entry &entry = entries.emplace_back();
    Html html(entry.html);
    putPage(html, bookmark.title, bookmark.address);
    QStringList facts;
    if (const ReadingListEntry *later = bookmark.readLater.get()) {
        if (!later->preview.isEmpty())
            html << "<span dir=\"auto\">", html.text(later->preview) << "</span>";
        facts.append(later->isRead ? u"Read"_s : u"Not read yet"_s);
        if (later->added.isValid())
            facts.append(u"Added "_s + m_site.clock.dayAndTime(later->added));
        entry.text = later->preview;
        entry.date = later->added;
    }
    if (bookmark.deleted)
        facts.append(u"Deleted"_s);
    if (!facts.isEmpty())
        html << "<small>", html.text(facts.join(u" · "_s)) << "</small>";
    entry.who = bookmark.title;
    entry.text += u' ' + bookmark.address;
    entry.latest = bookmark.title;
}

void SafariPages::take(const VisitedPage &page)
{
    m_history.group(page.visited.isValid() ? weekdayText(page.visited.toLocalTime().date())
                                           : u"Without a date"_s);
    Listing::Entry entry;
    Html html(entry.html);
    putPage(html, page.title, page.address);
    html << "<span class=\"when\">";
    html.text(m_site.clock.dayAndTime(page.visited)) << "</span>";
    if (page.visits > 1)
        html << "<small>" << QByteArray::number(page.visits) << " visits</small>";
    entry.date = page.visited;
    entry.who = page.title;
    entry.text = page.address;
    entry.latest = page.title;
    m_history.add(entry);
}

void SafariPages::finish()
{
    for (const auto &[folder, entries] : m_folders) {
        m_bookmarks.group(folder);
        for (const Listing::Entry &entry : entries)
            m_bookmarks.add(entry);
    }
    m_bookmarks.finish();
    m_history.finish();
}

} // namespace Archive
