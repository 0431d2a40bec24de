#ifndef ARCHIVE_CHATS_BUBBLEHTML_H
#define ARCHIVE_CHATS_BUBBLEHTML_H

#include "Archive/chats/Bubble.h"
#include "Archive/media/MediaHtml.h"

namespace Archive {

class LocalClock;

//! Writes messages into the list of a page.
class BubbleHtml
{
public:
    //! For pages like \a page of a conversation; all are borrowed. \a isGroup: it tells who wrote.
    BubbleHtml(const Site &site, const Page &page, bool isGroup);

    //! A message, with the day before it when that is another than that of the last one.
    void put(Html &html, const Bubble &bubble);

private:
    void putDay(Html &html, qint64 day);
    void putPart(Html &html, const BubblePart &part) const;
    void putLink(Html &html, const BubblePart &part) const;
    void putPoll(Html &html, const BubblePart &part) const;
    void putPlace(Html &html, const BubblePart &part) const;
    void putQuote(Html &html, const Bubble::Quote &quote) const;
    void putBadges(Html &html, const Bubble &bubble) const;
    void putBelow(Html &html, const Bubble &bubble);

    const Site &m_site;
    MediaHtml m_media;
    bool m_isGroup;
    qint64 m_day;
    QString m_sender; // of the message before
};

} // namespace Archive

#endif
