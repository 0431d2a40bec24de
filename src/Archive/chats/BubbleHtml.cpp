#include "Archive/chats/BubbleHtml.h"

#include "Archive/html/Html.h"
#include "Archive/media/Site.h"

#include <limits>

namespace Archive {

using namespace Qt::StringLiterals;
using PhoneBackup::PhoneTime::kNoMs;

namespace {

constexpr qint64 kNoDay = std::numeric_limits<qint64>::min();
constexpr uint kColours = 8; // of senders, in the style sheet
constexpr qsizetype kMostBigEmoji = 3;
constexpr qsizetype kLongestQuote = 160;

// Whether the text is nothing but a few emoji.
bool isBigEmoji(const QString &text)
{
    qsizetype count = 0;
    bool isJoined = false;
    for (const char32_t point : text.toUcs4()) {
        const bool isPart = point == 0x200D || point == 0xFE0F
            || (point >= 0x1F3FB && point <= 0x1F3FF) || (point >= 0xE0020 && point <= 0xE007F);
        const bool isEmoji = (point >= 0x1F000 && point <= 0x1FAFF)
            || (point >= 0x2600 && point <= 0x27BF) || (point >= 0x2B00 && point <= 0x2BFF);
        if (!isPart && !isEmoji)
            return false;
        const bool isFlag = point >= 0x1F1E6 && point <= 0x1F1FF;
        count += isEmoji && !isJoined && !isPart ? 1 : 0;
        isJoined = point == 0x200D || (isFlag && !isJoined);
    }
    return count > 0 && count <= kMostBigEmoji;
}

// The same in every export.
uint colourOf(const QString &name)
{
    uint sum = 0;
    for (const QChar letter : name)
        sum = sum * 31 + letter.unicode();
    return sum % kColours;
}

QString shortened(const QString &text)
{
    const QString line = text.simplified();
    return line.size() <= kLongestQuote ? line : line.first(kLongestQuote) + u'…';
}

} // namespace

BubbleHtml::BubbleHtml(const Site &site, const Page &page, bool isGroup)
    : m_site(site)
    , m_media(site, page)
    , m_isGroup(isGroup)
    , m_day(kNoDay)
{
}

void BubbleHtml::put(Html &html, const Bubble &bubble)
{
    LocalClock::Time time;
    if (bubble.dateMs != kNoMs) {
        time = m_site.clock.at(bubble.dateMs);
        if (time.day != m_day)
            putDay(html, time.day);
    }
    html << "<li id=\"" << bubble.anchor << '"';
    if (bubble.side == Bubble::Side::Middle) {
        m_sender.clear();
        html << " class=\"event\">";
        for (const BubblePart &part : bubble.parts)
            putPart(html, part);
        if (bubble.dateMs != kNoMs)
            html << "<time>" << time.clock() << "</time>";
        html << "</li>\n";
        return;
    }
    static constexpr std::array kTones { "", " sms", " wa" };
    html << " class=\"msg " << (bubble.side == Bubble::Side::Right ? "out" : "in")
         << kTones[std::size_t(bubble.tone)] << (bubble.isDeleted ? " gone\">" : "\">");
    if (m_isGroup && bubble.side == Bubble::Side::Left && bubble.sender != m_sender) {
        html << "<p class=\"who c" << QByteArray::number(colourOf(bubble.sender))
             << "\" dir=\"auto\">";
        html.text(bubble.sender) << "</p>";
    }
    m_sender = bubble.side == Bubble::Side::Left ? bubble.sender : QString();
    html << (bubble.isBare() ? "<div class=\"b bare\">" : "<div class=\"b\">");
    if (bubble.quote)
        putQuote(html, *bubble.quote);
    if (!bubble.subject.isEmpty())
        html << "<p class=\"subject\" dir=\"auto\">", html.text(bubble.subject) << "</p>";
    for (const BubblePart &part : bubble.parts)
        putPart(html, part);
    if (bubble.dateMs != kNoMs)
        html << "<time>" << time.clock() << "</time>";
    html << "</div>";
    putBadges(html, bubble);
    putBelow(html, bubble);
    html << "</li>\n";
}

void BubbleHtml::putDay(Html &html, qint64 day)
{
    m_day = day;
    m_sender.clear();
    const QDate date = LocalClock::Time { day, 0 }.date();
    html << "<li class=\"day\"><time datetime=\"" << date.toString(Qt::ISODate).toLatin1() << "\">";
    html.text(weekdayText(date)) << "</time></li>\n";
}

void BubbleHtml::putPart(Html &html, const BubblePart &part) const
{
    using Kind = BubblePart::Kind;
    switch (part.kind) {
    case Kind::Text:
        html << (isBigEmoji(part.text) ? "<p class=\"big\">" : "<p dir=\"auto\">");
        html.linkedText(part.text, part.links) << "</p>";
        break;
    case Kind::Note:
        html << "<p class=\"meta\" dir=\"auto\">";
        html.text(part.text) << "</p>";
        break;
    case Kind::Media:
        m_media.put(html, part.media);
        break;
    case Kind::Link:
        putLink(html, part);
        break;
    case Kind::Poll:
        putPoll(html, part);
        break;
    case Kind::Place:
        putPlace(html, part);
        break;
    case Kind::App:
    case Kind::Card:
        html << "<div class=\"card\"><b dir=\"auto\">";
        html.external(part.address, part.title) << "</b>";
        for (const QString &line : part.lines)
            html << "<span dir=\"auto\">", html.text(line) << "</span>";
        html << "</div>";
        break;
    }
}

void BubbleHtml::putLink(Html &html, const BubblePart &part) const
{
    html << "<div class=\"card link\">";
    if (part.media.file != PhoneBackup::FileIndex::kNone)
        m_media.put(html, part.media);
    html << "<b dir=\"auto\">";
    html.external(part.address, part.title.isEmpty() ? part.address : part.title) << "</b>";
    if (!part.text.isEmpty())
        html << "<span dir=\"auto\">", html.text(part.text) << "</span>";
    if (!part.site.isEmpty() || !part.title.isEmpty())
        html << "<small>", html.text(part.site.isEmpty() ? part.address : part.site) << "</small>";
    html << "</div>";
}

void BubbleHtml::putPoll(Html &html, const BubblePart &part) const
{
    html << "<div class=\"card poll\"><b dir=\"auto\">";
    html.text(part.title.isEmpty() ? u"Poll"_s : part.title) << "</b><ul>";
    for (qsizetype i = 0; i < part.lines.size(); ++i) {
        html << "<li><span dir=\"auto\">";
        html.text(part.lines.at(i).isEmpty() ? u"Option %1"_s.arg(i + 1) : part.lines.at(i))
            << "</span>";
        if (std::size_t(i) < part.votes.size() && !part.votes[std::size_t(i)].isEmpty()) {
            const QStringList &who = part.votes[std::size_t(i)];
            html << " <small dir=\"auto\">";
            html.text(u"%1: %2"_s.arg(who.size()).arg(who.join(u", "_s))) << "</small>";
        }
        html << "</li>";
    }
    html << "</ul></div>";
}

void BubbleHtml::putPlace(Html &html, const BubblePart &part) const
{
    html << "<div class=\"card\"><b dir=\"auto\">";
    html.text(part.title.isEmpty() ? u"Place"_s : part.title) << "</b>";
    if (!part.text.isEmpty())
        html << "<span dir=\"auto\">", html.text(part.text) << "</span>";
    if (part.latitude && part.longitude) {
        const QString latitude = QString::number(*part.latitude, 'f', 6);
        const QString longitude = QString::number(*part.longitude, 'f', 6);
        html << "<span>";
        html.external(u"https://www.openstreetmap.org/?mlat=%1&mlon=%2"_s.arg(latitude, longitude),
                      QString(latitude + u", "_s + longitude));
        html << "</span>";
    } else if (!part.address.isEmpty()) {
        html << "<span>";
        html.external(part.address, u"Map") << "</span>";
    }
    html << "</div>";
}

void BubbleHtml::putQuote(Html &html, const Bubble::Quote &quote) const
{
    if (quote.page.isEmpty())
        html << "<div class=\"quote\">";
    else
        html << "<a class=\"quote\" href=\"" << quote.page << "\">";
    if (!quote.who.isEmpty())
        html << "<b dir=\"auto\">", html.text(quote.who) << "</b> ";
    html << "<span dir=\"auto\">";
    html.text(quote.text.isEmpty() ? u"A message that is not in the backup"_s
                                   : shortened(quote.text))
        << "</span>" << (quote.page.isEmpty() ? "</div>" : "</a>");
}

void BubbleHtml::putBadges(Html &html, const Bubble &bubble) const
{
    if (bubble.badges.empty())
        return;
    html << "<ul class=\"badges\" aria-label=\"Reactions\">";
    for (const Bubble::Badge &badge : bubble.badges) {
        const QString who = badge.who.join(u", "_s);
        html << "<li";
        html.attribute("title", who) << "><bdi>";
        html.text(badge.emoji) << "</bdi>";
        if (badge.who.size() > 1)
            html << " " << QByteArray::number(badge.who.size());
        if (!who.isEmpty())
            html << "<span class=\"hid\"> ", html.text(who) << "</span>";
        html << "</li>";
    }
    html << "</ul>";
}

void BubbleHtml::putBelow(Html &html, const Bubble &bubble)
{
    if (!bubble.earlier.empty()) {
        html << "<details class=\"edits\"><summary>Edited</summary><ol>";
        for (const Bubble::Version &version : bubble.earlier) {
            html << "<li><p dir=\"auto\">";
            html.text(version.text) << "</p>";
            if (version.dateMs != kNoMs)
                html << "<small>", html.text(m_site.clock.dayAndTime(version.dateMs)) << "</small>";
            html << "</li>";
        }
        html << "</ol></details>";
    }
    QStringList below = bubble.marks;
    if (!bubble.status.isEmpty())
        below.append(bubble.status);
    if (!below.isEmpty()) {
        html << (bubble.hasFailed ? "<p class=\"st bad\" dir=\"auto\">"
                                  : "<p class=\"st\" dir=\"auto\">");
        html.text(below.join(u" · "_s)) << "</p>";
    }
}

} // namespace Archive
