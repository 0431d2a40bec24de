#include "sample/SmallTalk.h"

#include "sample/Random.h"

#include <array>

namespace Sample {

namespace {

// A line begins with > when the first one speaks and with < when the other answers. What stands in
// braces is filled in.
constexpr std::array<QStringView, 32> kExchanges {
    u">Are you free {day}?\n<After {time}, yes. Why?\n>I have two tickets for {event}\n<I'm in! "
    u"Where do we meet?\n>At {place}, half an hour before",
    u">Did you feed the cat?\n<Twice. She lies\n>She always does 😹",
    u">Can you bring {food} on your way?\n<How much?\n>Enough for {number}\n<Done. Anything "
    u"else?\n>Yourself",
    u">Look what I found: my old {thing}!\n<The one from {place}?\n>The very same. It still "
    u"works\n<I don't believe it until I see it",
    u">Running {number} minutes late, sorry!\n<No hurry, the {food} needs a while anyway",
    u">How was {event}?\n<Loud, crowded, wonderful\n>So you will go again?\n<{day}, if you come "
    u"along",
    u">Happy birthday!! 🎂🎉\n<Thank you! You are the first one\n>I set an alarm\n<At five in the "
    u"morning?\n>At five in the morning",
    u">Is the {thing} still in your cellar?\n<Somewhere behind the skis\n>I'd need it {day}\n<Come "
    u"by after {time}, bring a torch",
    u">We just landed\n<Already? Welcome home!\n>Tailwind. See you at {place}?\n<Give me {number} "
    u"minutes",
    u">What was the name of that song?\n<Which one?\n>The one that goes da da dum\n<They all go da "
    u"da dum",
    u">The train is standing since {time}\n<Again? Where are you?\n>Between two fields and a "
    u"cow\n<Say hello to the cow 🐄",
    u">Recipe please! That {food} was out of this world\n<Family secret\n>I am practically "
    u"family\n<OK: butter. More than you think. Then more",
    u">Rain {day}, they say\n<They said that last week, too\n>And it rained\n<Only a little. From "
    u"above",
    u">Can I call you?\n<In a meeting until {time}. Is it urgent?\n>Not at all, just good news",
    u">Here's the number of the plumber: +1 202 555 0181\n<You saved my kitchen, thank you!",
    u">Thinking of you today\n<That means a lot. Thank you ❤️",
    u">Did you see the moon?\n<No, clouds over {place}\n>It is huge. Go outside!\n<Oh. OH.",
    u">The kids want to know whether the {thing} comes, too\n<Tell them it already sits in the "
    u"car\n>They scream with joy\n<I can hear it from here",
    u">Lunch at {place}?\n<{time}?\n>Perfect\n<If I'm late, order me the {food}",
    u">I finally finished the book you lent me\n<And?\n>I cried on the bus\n<Page {number}?\n>Page "
    u"{number}",
    u">Don't forget: {event} is {day}\n<It stands in my calendar, twice\n>Last time it stood there "
    u"as well\n<…",
    u">How are you feeling?\n<Better. Soup helps, sleep helps more\n>Shall I bring {food}?\n<You "
    u"are an angel",
    u">Who won?\n<We did! In the last minute\n>I leave for {number} minutes and you WIN?\n<You "
    u"should leave more often",
    u">New job starts {day} 😬\n<You will be great\n>What do I wear?\n<The blue one. Always the "
    u"blue one",
    u">The photos from {place} are here: https://photos.example.org/album/{number}\n<Beautiful! "
    u"Who is the one with the {thing}?\n>That is you\n<Oh no",
    u">Parking is terrible, start early\n<I take the bike\n>Uphill?\n<Downhill there. Somebody "
    u"drives me back, hint hint",
    u">Quick question: {food} or cake?\n<Is this a trap?\n>Yes\n<Both",
    u">I'm at {place} and they are out of {food}\n<Impossible\n>I stand in front of the empty "
    u"shelf\n<Then {food} from the corner shop, quick, before {time}",
    u">Is it true that you're moving?\n<Who told you?\n>Everybody\n<To {place}. From the window "
    u"you can see the bay!\n>When is the party?\n<First the boxes, then the party",
    u">Good night 🌙\n<Sleep well. Tomorrow {time}!\n>Tomorrow {time}",
    u">Hey, long time no see! I was sorting out boxes with letters from school and found the one "
    u"that you wrote me from {place}, the summer you lost the {thing}. I laughed until I had to "
    u"sit down. How have you been all these years?\n<What a nice surprise! I remember that summer "
    u"very well, above all the search for the {thing}, which by the way never turned up. I live "
    u"near {place} now, with two children and a dog who thinks that he is the third. Come and see "
    u"us, any time, {day} would be perfect.\n>I'd love to. I'll bring {food} and the letters",
    u">Your parcel is here\n<Big?\n>It does not fit through the door\n<Ah. That would be the "
    u"{thing}",
};
constexpr std::array<QStringView, 8> kDays { u"tomorrow",          u"on Monday",   u"on Thursday",
                                             u"on Friday evening", u"on Saturday", u"on Sunday",
                                             u"tonight",           u"next week" };
constexpr std::array<QStringView, 8> kTimes {
    u"six", u"half past seven", u"noon", u"quarter to nine", u"4:30", u"five", u"8:15", u"ten"
};
constexpr std::array<QStringView, 10> kPlaces { u"the harbour",      u"the café on the quay",
                                                u"the old mill",     u"the station",
                                                u"Lisbon",           u"the lighthouse",
                                                u"the market",       u"the park gate",
                                                u"grandma's garden", u"the library" };
constexpr std::array<QStringView, 9> kFoods { u"strawberries", u"bread",    u"noodle soup",
                                              u"apple cake",   u"cheese",   u"dumplings",
                                              u"olives",       u"lemonade", u"tomato salad" };
constexpr std::array<QStringView, 9> kThings { u"telescope",    u"accordion",  u"tent",
                                               u"red umbrella", u"ladder",     u"camera",
                                               u"sledge",       u"typewriter", u"straw hat" };
constexpr std::array<QStringView, 7> kEvents { u"the jazz concert",  u"the regatta",
                                               u"the film festival", u"the flea market",
                                               u"quiz night",        u"the open-air theatre",
                                               u"the marathon" };

} // namespace

SmallTalk::SmallTalk(Random &random)
    : m_random(random)
{
}

void SmallTalk::begin()
{
    m_rest = m_random.pick(kExchanges);
}

bool SmallTalk::next(SpokenLine &line)
{
    if (m_rest.isEmpty())
        return false;
    const qsizetype end = m_rest.indexOf(u'\n');
    const QStringView pattern = end < 0 ? m_rest : m_rest.first(end);
    m_rest = end < 0 ? QStringView() : m_rest.sliced(end + 1);
    line.first = pattern.front() == u'>';
    line.text = filled(pattern.sliced(1));
    return true;
}

QString SmallTalk::filled(QStringView pattern)
{
    QString text;
    text.reserve(pattern.size() + 16);
    for (;;) {
        const qsizetype open = pattern.indexOf(u'{');
        if (open < 0)
            break;
        const qsizetype close = pattern.indexOf(u'}', open);
        const QStringView slot = pattern.sliced(open + 1, close - open - 1);
        text += pattern.first(open);
        if (slot == u"day")
            text += m_random.pick(kDays);
        else if (slot == u"time")
            text += m_random.pick(kTimes);
        else if (slot == u"place")
            text += m_random.pick(kPlaces);
        else if (slot == u"food")
            text += m_random.pick(kFoods);
        else if (slot == u"thing")
            text += m_random.pick(kThings);
        else if (slot == u"event")
            text += m_random.pick(kEvents);
        else
            text += QString::number(m_random.between(5, 90));
        pattern = pattern.sliced(close + 1);
    }
    text += pattern;
    return text;
}

} // namespace Sample
