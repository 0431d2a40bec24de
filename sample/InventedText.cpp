#include "sample/InventedText.h"

#include "sample/Random.h"

#include <QDate>

#include <array>

namespace Sample {

using namespace Qt::StringLiterals;

QString inventedPhoneNumber(Random &random)
{
    return u"+120255501%1"_s.arg(random.below(100), 2, 10, QLatin1Char('0'));
}

QString inventedSentence(Random &random)
{
    constexpr std::array kWho {
        u"The old ferry",    u"Our little boat", u"The harbour master",
        u"A flock of terns", u"The lighthouse",  u"The crew of the Marigold"
    };
    constexpr std::array kDoes { u"waited for", u"set out with",  u"came home before",
                                 u"sang about", u"never trusted", u"was painted after" };
    constexpr std::array kWhat { u"the morning tide",
                                 u"a westerly breeze",
                                 u"the first rain of the week",
                                 u"the fog over the bay",
                                 u"a long summer – and a short autumn",
                                 u"the café at the quay" };
    const auto who = random.pick(kWho);
    const auto does = random.pick(kDoes);
    const auto what = random.pick(kWhat);
    return u"%1 %2 %3."_s.arg(QStringView(who), QStringView(does), QStringView(what));
}

QString inventedText(Random &random, int paragraphs)
{
    QString text;
    for (int paragraph = 0; paragraph < paragraphs; ++paragraph) {
        const int sentences = random.between(2, 5);
        for (int i = 0; i < sentences; ++i)
            text += inventedSentence(random) + (i + 1 < sentences ? u' ' : u'\n');
        text += u'\n';
    }
    return text;
}

QString inventedTable(Random &random, int rows)
{
    QString text = u"Date,High water,Height (m),Remark\n"_s;
    for (int i = 0; i < rows; ++i) {
        const int hour = random.below(24);
        const int minute = random.below(60);
        const int decimetres = random.between(12, 48);
        text += u"%1,%2:%3,%4.%5,\"%6\"\n"_s.arg(QDate(2024, 3, 1).addDays(i).toString(Qt::ISODate))
                    .arg(hour, 2, 10, QLatin1Char('0'))
                    .arg(minute, 2, 10, QLatin1Char('0'))
                    .arg(decimetres / 10)
                    .arg(decimetres % 10)
                    .arg(inventedSentence(random));
    }
    return text;
}

} // namespace Sample
