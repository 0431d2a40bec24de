#include "Archive/chats/Bubble.h"

#include <algorithm>

namespace Archive {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestSummary = 120;

} // namespace

QString Bubble::summary() const
{
    for (const BubblePart &part : parts) {
        const QString text = part.text.isEmpty() ? part.title : part.text;
        if (!text.isEmpty())
            return text.first(std::min(text.size(), kLongestSummary)).simplified();
    }
    for (const BubblePart &part : parts) {
        if (part.kind != BubblePart::Kind::Media)
            continue;
        switch (part.media.kind) {
        case Media::Kind::Picture:
            return part.media.isSticker ? u"Sticker"_s : u"Picture"_s;
        case Media::Kind::Film:
            return u"Video"_s;
        case Media::Kind::Sound:
            return u"Audio"_s;
        case Media::Kind::Other:
            return part.media.name;
        }
    }
    return subject;
}

bool Bubble::isBare() const
{
    return parts.size() == 1 && parts.front().kind == BubblePart::Kind::Media && !quote
        && subject.isEmpty()
        && (parts.front().media.kind == Media::Kind::Picture
            || parts.front().media.kind == Media::Kind::Film);
}

QString Bubble::plainText() const
{
    if (parts.size() == 1 && parts.front().kind == BubblePart::Kind::Text && subject.isEmpty())
        return parts.front().text;
    QStringList texts;
    const auto add = [&texts](const QString &text) {
        if (!text.isEmpty())
            texts.append(text);
    };
    add(subject);
    for (const BubblePart &part : parts) {
        add(part.title);
        add(part.text);
        add(part.lines.join(u", "_s));
        add(part.media.name);
        add(part.media.transcript);
        if (part.kind == BubblePart::Kind::Link && !part.text.contains(part.address))
            add(part.address);
    }
    return texts.join(u' ');
}

void Bubble::addText(const QString &text, const QList<PhoneBackup::TextSpan> &links)
{
    if (QStringView(text).trimmed().isEmpty())
        return;
    BubblePart &part = parts.emplace_back();
    part.text = text;
    part.links = links;
}

void Bubble::addNote(const QString &text)
{
    BubblePart &part = parts.emplace_back();
    part.kind = BubblePart::Kind::Note;
    part.text = text;
}

void Bubble::addBadge(const QString &emoji, const QString &who)
{
    const auto same = std::find_if(
        badges.begin(), badges.end(), [&](const Badge &badge) { return badge.emoji == emoji; });
    if (same != badges.end())
        same->who.append(who);
    else
        badges.push_back({ emoji, { who } });
}

} // namespace Archive
