#include "Archive/lists/Listing.h"

#include "Archive/html/Html.h"
#include "Archive/media/Site.h"
#include "PhoneBackup/base/PhoneTime.h"

#include <algorithm>

namespace Archive {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLatestInTile = 2;
constexpr std::size_t kFewGroups = 2;

QString titleOf(const char *folder)
{
    for (const Section &section : allSections()) {
        if (QByteArrayView(section.folder) == folder)
            return QString::fromUtf8(section.title);
    }
    return QString::fromUtf8(folder);
}

QByteArray nameOf(int number)
{
    return number == 1 ? QByteArray("index.html") : QByteArray::number(number) + ".html";
}

} // namespace

Listing::Listing(Site &site, const char *folder, const char *kind, const char *layout)
    : m_site(site)
    , m_folder(folder)
    , m_layout(layout)
    , m_title(titleOf(folder))
    , m_page { m_title, folder, 1 }
    , m_media(site, m_page)
    , m_place(site.search.addPlace(kind, m_title, QString::fromLatin1(folder)))
{
}

void Listing::group(const QString &title)
{
    if (!m_groups.empty() && m_groups.back().title == title)
        return;
    if (m_onPage >= kEntriesPerPage)
        flush(false);
    m_groups.push_back({ title, {}, 0 });
    if (std::exchange(m_isInList, false))
        m_body += "</ul>\n";
}

QByteArray Listing::lastPlace() const
{
    return nameOf(m_pages + 1) + "#e" + QByteArray::number(m_count);
}

void Listing::add(const Entry &entry)
{
    if (m_onPage >= kEntriesPerPage)
        flush(false);
    ++m_count;
    ++m_onPage;
    Html html(m_body);
    if (!m_isInList) {
        if (!m_groups.empty()) {
            html << "<h2 dir=\"auto\">";
            html.text(m_groups.back().title) << "</h2>";
        }
        html << "<ul class=\"list " << m_layout << "\">\n";
        m_isInList = true;
    }
    if (!m_groups.empty()) {
        if (m_groups.back().count++ == 0)
            m_groups.back().place = lastPlace();
    }
    html << "<li id=\"e" << QByteArray::number(m_count) << "\">" << entry.html << "</li>\n";
    m_site.search.add(m_place,
                      entry.date.isValid() ? entry.date.toMSecsSinceEpoch()
                                           : PhoneBackup::PhoneTime::kNoMs,
                      lastPlace(),
                      entry.who,
                      entry.text);
    if (entry.date.isValid()) {
        if (!m_oldest.isValid() || entry.date < m_oldest)
            m_oldest = entry.date;
        if (!m_newest.isValid() || entry.date > m_newest)
            m_newest = entry.date;
    }
    if (m_latest.size() < kLatestInTile && !entry.latest.isEmpty())
        m_latest.append(entry.latest);
}

QByteArray Listing::heading() const
{
    QByteArray out = "<div class=\"narrow\"><h1>";
    Html html(out);
    html.text(m_title) << " <small>";
    html.number(m_count) << "</small></h1><div class=\"sift\" hidden></div>";
    if (m_groups.size() > kFewGroups) {
        html << "<details class=\"jump\"" << (m_groups.size() < 40 ? " open" : "")
             << "><summary>Jump to</summary><ul>";
        for (const Group &group : m_groups) {
            if (group.count == 0)
                continue;
            html << "<li><a href=\"" << group.place << "\" dir=\"auto\">";
            html.text(group.title.isEmpty() ? u"Others"_s : group.title) << "</a></li>";
        }
        html << "</ul></details>\n";
    }
    return out;
}

void Listing::flush(bool isLast)
{
    if (std::exchange(m_isInList, false))
        m_body += "</ul>\n";
    ++m_pages;
    Html html(m_body);
    html << "<p class=\"on\">";
    if (m_pages > 1)
        html << "<a class=\"btn\" href=\"" << nameOf(m_pages - 1) << "\">‹ Previous</a>";
    if (m_pages > 2)
        html << "<a class=\"btn\" href=\"index.html\">First page</a>";
    if (!isLast)
        html << "<a class=\"btn\" href=\"" << nameOf(m_pages + 1) << "\">Next ›</a>";
    html << "</p></div>\n";
    if (m_pages == 1) {
        m_firstBody = std::exchange(m_body, {});
    } else {
        QByteArray body = "<div class=\"narrow\"><h1>";
        Html(body).text(m_title) << " <small>page " << QByteArray::number(m_pages)
                                 << "</small></h1>\n";
        m_site.write(QString::fromLatin1(m_folder) + u'/' + QString::fromLatin1(nameOf(m_pages)),
                     m_page,
                     body + std::exchange(m_body, {}));
    }
    m_onPage = 0;
}

void Listing::finish()
{
    if (m_count == 0 || std::exchange(m_isFinished, true))
        return;
    flush(true);
    m_site.write(QString::fromLatin1(m_folder) + u"/index.html"_s, m_page, heading() + m_firstBody);
    QString period;
    if (m_oldest.isValid()) {
        const int from = m_oldest.toLocalTime().date().year();
        const int to = m_newest.toLocalTime().date().year();
        period = from == to ? QString::number(to) : u"%1 – %2"_s.arg(from).arg(to);
    }
    m_site.tiles.insert(m_folder, tile(m_count, period, m_latest));
}

} // namespace Archive
