#include "Archive/chats/ChatPages.h"

#include "Archive/chats/BubbleHtml.h"
#include "Archive/html/Html.h"
#include "Archive/media/Site.h"

#include <QCryptographicHash>

#include <algorithm>

namespace Archive {

using namespace Qt::StringLiterals;
using PhoneBackup::FileIndex;
using PhoneBackup::PhoneTime::kNoMs;

namespace {

constexpr std::size_t kMediaPerPage = 600;
constexpr std::size_t kLatestInTile = 3;

QByteArray shortHash(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex().first(12);
}

QDate monthOf(int key)
{
    return { key / 12, key % 12 + 1, 1 };
}

QByteArray pageName(int number)
{
    return QByteArray::number(number) + ".html";
}

} // namespace

ChatPages::ChatPages(Site &site)
    : m_site(site)
{
}

QByteArray ChatPages::pageOf(qint64 number, const QByteArray &anchor)
{
    QByteArray page = QByteArray::number(number / kMessagesPerPage + 1);
    page.reserve(page.size() + 6 + anchor.size());
    return page.append(".html#").append(anchor);
}

QByteArray ChatPages::anchorOf(const QByteArray &identity, qint64 row)
{
    return identity.isEmpty() ? 'r' + QByteArray::number(row) : 'm' + shortHash(identity);
}

QString ChatPages::timeText(const QString &what, qint64 ms, qint64 sentMs)
{
    const LocalClock::Time time = m_site.clock.at(ms);
    const bool isSameDay = sentMs != kNoMs && m_site.clock.at(sentMs).day == time.day;
    return what + u' '
        + (isSameDay ? QString::fromLatin1(time.clock()) : m_site.clock.dayAndTime(ms));
}

QString ChatPages::begin(const ChatHead &head)
{
    end();
    m_isOpen = true;
    Entry &entry = m_entries.emplace_back();
    entry.head = head;
    entry.firstMs = kNoMs;
    entry.lastMs = kNoMs;
    const QString name = QString::fromLatin1(shortHash(head.identity));
    entry.folder = name;
    for (int i = 2; m_folders.contains(entry.folder); ++i)
        entry.folder = u"%1-%2"_s.arg(name).arg(i);
    m_folders.insert(entry.folder);
    m_place = m_site.search.addPlace("message", head.title, u"chats/"_s + entry.folder);
    m_pages = 0;
    m_messages = 0;
    m_page.clear();
    m_months.clear();
    m_media.clear();
    return u"chats/"_s + entry.folder;
}

void ChatPages::add(Bubble &&bubble)
{
    if (int(m_page.size()) == kMessagesPerPage)
        flush(false);
    Entry &entry = m_entries.back();
    const QByteArray page = pageOf(m_messages, bubble.anchor);
    if (bubble.dateMs != kNoMs) {
        if (entry.firstMs == kNoMs)
            entry.firstMs = bubble.dateMs;
        entry.lastMs = std::max(entry.lastMs, bubble.dateMs);
        const int month = m_site.clock.month(bubble.dateMs);
        if (m_months.empty() || m_months.back().key != month)
            m_months.push_back({ month, page, 0 });
        ++m_months.back().count;
    }
    const QString text = bubble.plainText();
    const QString who = bubble.side == Bubble::Side::Right ? u"You"_s : bubble.sender;
    m_site.search.add(m_place, bubble.dateMs, page, who, text);
    for (const BubblePart &part : bubble.parts) {
        if (part.kind == BubblePart::Kind::Media && part.media.file != FileIndex::kNone)
            m_media.push_back({ part.media.file, part.media, page });
    }
    ++m_messages;
    m_page.push_back(std::move(bubble));
}

void ChatPages::end()
{
    if (!std::exchange(m_isOpen, false))
        return;
    if (m_messages == 0) {
        m_entries.pop_back();
        return;
    }
    flush(true);
    Entry &entry = m_entries.back();
    entry.count = m_messages;
    entry.lastPage = pageName(m_pages);
    entry.hasMedia = !m_media.empty();
    writeMedia();
    writeOverview();
    writeMonths();
}

// The months are in a script that all pages share: a page whose number is full does not change.
void ChatPages::writeMonths()
{
    QByteArray out = "archiveMonths(" + QByteArray::number(m_pages) + ",[";
    for (std::size_t i = 0; i < m_months.size(); ++i) {
        out += (i == 0 ? "[" : ",[") + scriptText(monthText(monthOf(m_months[i].key))) + ",\""
            + m_months[i].page + "\"]";
    }
    m_site.tree.write(u"chats/%1/months.js"_s.arg(m_entries.back().folder), out + "]);\n");
}

QByteArray ChatPages::head(int number, bool isLast)
{
    const Entry &entry = m_entries.back();
    const Page page { entry.head.title, "chats", 2 };
    QByteArray out;
    Html html(out);
    html << "<div class=\"head\">";
    MediaHtml(m_site, page).putAvatar(html, entry.head.avatar, entry.head.title);
    html << "<div><h1 dir=\"auto\">";
    html.text(entry.head.title) << "</h1><p dir=\"auto\">";
    html.text(entry.head.service);
    if (!entry.head.about.isEmpty())
        html << " · ", html.text(entry.head.about);
    html << "</p></div><nav aria-label=\"Pages of the conversation\">";
    if (number > 1)
        html << "<a class=\"btn\" rel=\"prev\" href=\"" << pageName(number - 1)
             << "#end\">‹ Older</a>";
    if (number > 0 && !isLast)
        html << "<a class=\"btn\" rel=\"next\" href=\"" << pageName(number + 1) << "\">Newer ›</a>";
    if (number > 0)
        html << "<a class=\"btn months\" href=\"index.html\">Months and media</a>";
    html << "</nav></div>\n";
    return out;
}

void ChatPages::flush(bool isLast)
{
    const Entry &entry = m_entries.back();
    std::vector<FileIndex::Row> wanted;
    for (const Bubble &bubble : m_page) {
        for (const BubblePart &part : bubble.parts)
            part.media.addWanted(wanted);
    }
    m_site.thumbnails.prepare(wanted);
    const auto last = std::find_if(m_page.rbegin(), m_page.rend(), [](const Bubble &bubble) {
        return bubble.side != Bubble::Side::Middle;
    });
    if (last != m_page.rend()) {
        const QString who = last->side == Bubble::Side::Right ? u"You"_s : last->sender;
        const QString line = last->summary();
        m_entries.back().lastText =
            entry.head.isGroup && !who.isEmpty() ? who + u": "_s + line : line;
    }
    ++m_pages;
    const Page page { entry.head.title, "chats", 2, "talks", { "months.js", "../list.js" } };
    QByteArray out =
        "<aside id=\"chats\" aria-label=\"Conversations\" hidden></aside><div class=\"talkside\">"
        + head(m_pages, isLast);
    Html html(out);
    html << "<ol class=\"talk\">\n";
    BubbleHtml bubbles(m_site, page, entry.head.isGroup);
    for (const Bubble &bubble : m_page)
        bubbles.put(html, bubble);
    html << "</ol>";
    if (!isLast)
        html << "<p class=\"on\"><a class=\"btn\" href=\"" << pageName(m_pages + 1)
             << "\">Newer messages ›</a></p>";
    html << "<div id=\"end\" tabindex=\"-1\"></div></div>\n";
    m_site.write(u"chats/%1/%2.html"_s.arg(entry.folder).arg(m_pages), page, out);
    m_page.clear();
}

void ChatPages::writeOverview()
{
    const Entry &entry = m_entries.back();
    const Page page { entry.head.title, "chats", 2 };
    QByteArray out = head(0, false);
    Html html(out);
    html << "<div class=\"narrow\"><p class=\"acts\"><a class=\"btn\" href=\"" << entry.lastPage
         << "#end\">Latest messages</a><a class=\"btn\" href=\"1.html\">First messages</a>";
    if (!m_media.empty())
        html << "<a class=\"btn\" href=\"media-1.html\">Media</a>";
    html << "</p><p>";
    html.number(entry.count) << (entry.count == 1 ? " message" : " messages");
    if (entry.firstMs != kNoMs) {
        html << ", ";
        html.text(m_site.clock.day(entry.firstMs)) << " to ";
        html.text(m_site.clock.day(entry.lastMs));
    }
    html << "</p>\n";
    int year = 0;
    for (const Month &month : m_months) {
        if (month.key / 12 != year) {
            if (year != 0)
                html << "</ul>";
            year = month.key / 12;
            html << "<h2>" << QByteArray::number(year) << "</h2><ul class=\"months\">";
        }
        html << "<li><a href=\"" << month.page << "\">";
        html.text(monthText(monthOf(month.key))) << "</a> <small>";
        html.number(month.count) << "</small></li>";
    }
    html << (m_months.empty() ? "</div>\n" : "</ul></div>\n");
    m_site.write(u"chats/%1/index.html"_s.arg(entry.folder), page, out);
}

void ChatPages::writeMedia()
{
    const Entry &entry = m_entries.back();
    const Page page { u"Media: "_s + entry.head.title, "chats", 2 };
    const MediaHtml media(m_site, page);
    const std::size_t pages = (m_media.size() + kMediaPerPage - 1) / kMediaPerPage;
    for (std::size_t number = 0; number < pages; ++number) {
        QByteArray out = head(0, false);
        Html html(out);
        html << "<h2>Media</h2><ul class=\"grid\">\n";
        const std::size_t end = std::min(m_media.size(), (number + 1) * kMediaPerPage);
        for (std::size_t i = number * kMediaPerPage; i < end; ++i) {
            // The newest first.
            const Shown &shown = m_media[m_media.size() - 1 - i];
            media.putTile(html, shown.media, {}, {});
            html << "\n";
        }
        html << "</ul><p class=\"on\">";
        if (number > 0)
            html << "<a class=\"btn\" href=\"media-" << pageName(int(number)) << "\">‹ Newer</a>";
        if (number + 1 < pages)
            html << "<a class=\"btn\" href=\"media-" << pageName(int(number) + 2)
                 << "\">Older ›</a>";
        html << "</p>\n";
        m_site.write(u"chats/%1/media-%2.html"_s.arg(entry.folder).arg(number + 1), page, out);
    }
}

QByteArray ChatPages::listed(const Entry &entry, const MediaHtml &media) const
{
    QByteArray out;
    Html html(out);
    html << "<li data-date=\""
         << QByteArray::number(entry.lastMs == kNoMs ? 0 : entry.lastMs / 1000)
         << "\" data-count=\"" << QByteArray::number(entry.count) << "\"><a";
    html.link("href", {}, entry.folder + u'/' + QString::fromLatin1(entry.lastPage) + u"#end"_s)
        << '>';
    media.putAvatar(html, entry.head.avatar, entry.head.title);
    html << "<b dir=\"auto\">";
    html.text(entry.head.title) << "</b><span class=\"when\">";
    if (entry.lastMs != kNoMs)
        html.text(m_site.clock.day(entry.lastMs));
    html << "</span><span class=\"last\" dir=\"auto\">";
    html.text(entry.lastText) << "</span><span class=\"tag\">";
    html.text(entry.head.service) << " · ";
    html.number(entry.count) << (entry.head.isDeleted ? " · deleted" : "") << "</span></a></li>\n";
    return out;
}

void ChatPages::finish()
{
    end();
    if (m_entries.empty() || std::exchange(m_isFinished, true))
        return;
    std::stable_sort(m_entries.begin(), m_entries.end(), [](const Entry &a, const Entry &b) {
        return a.lastMs > b.lastMs;
    });
    const Page page { u"Conversations"_s, "chats", 1 };
    const MediaHtml media(m_site, page);
    const Page beside { {}, "chats", 2 };
    const MediaHtml mediaBeside(m_site, beside);
    qint64 messages = 0;
    qint64 firstMs = std::numeric_limits<qint64>::max();
    qint64 lastMs = kNoMs;
    QStringList latest;
    QByteArray out = "<div class=\"narrow\"><h1>Conversations</h1><div class=\"sift\" hidden></div>"
                     "<ul class=\"list chats\">\n";
    QByteArray script = "archiveChats(`";
    for (const Entry &entry : m_entries) {
        out += listed(entry, media);
        QByteArray one = listed(entry, mediaBeside);
        one.replace("<a href=\"", "<a href=\"../");
        script += one.replace('\\', "\\\\").replace('`', "\\`").replace('$', "\\$");
        messages += entry.count;
        firstMs = entry.firstMs == kNoMs ? firstMs : std::min(firstMs, entry.firstMs);
        lastMs = std::max(lastMs, entry.lastMs);
        if (latest.size() < qsizetype(kLatestInTile))
            latest.append(entry.head.title + u" — "_s + entry.lastText);
    }
    m_site.write(u"chats/index.html"_s, page, out + "</ul></div>\n");
    m_site.tree.write(u"chats/list.js"_s, script + "`);\n");
    QString period = u"%1 messages"_s.arg(QLocale::c().toString(messages));
    if (lastMs != kNoMs) {
        const int from = m_site.clock.at(firstMs).date().year();
        const int to = m_site.clock.at(lastMs).date().year();
        period += from == to ? u", %1"_s.arg(to) : u", %1 – %2"_s.arg(from).arg(to);
    }
    m_site.tiles.insert("chats", tile(qint64(m_entries.size()), period, latest));
}

} // namespace Archive
