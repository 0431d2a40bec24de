#include "sample/People.h"

#include <array>

namespace Sample {

using namespace Qt::StringLiterals;

QString ownersNumber()
{
    return u"+12025550100"_s;
}

const QList<Person> &people()
{
    // Written in as many ways as people write numbers.
    static const QList<Person> all {
        { u"Mara"_s, u"Lindqvist"_s, {}, u"+12025550142"_s, u"(202) 555-0142"_s, {} },
        { u"Jonas"_s, u"Weber"_s, {}, u"+12025550117"_s, u"+1 202-555-0117"_s, {} },
        { u"Priya"_s, u"Raman"_s, {}, u"+12025550163"_s, u"202.555.0163"_s, {} },
        { u"Tomás"_s, u"Oliveira"_s, {}, u"+12025550128"_s, u"001 202 555 0128"_s, {} },
        { u"Noor"_s, u"Haddad"_s, {}, {}, {}, u"noor@example.org"_s },
        { u"Grandma"_s, u"Elsie"_s, {}, u"+12025550109"_s, u"1 (202) 555‑0109"_s, {} },
        { u"Sam"_s, u"Okafor"_s, {}, u"+12025550155"_s, u"+12025550155"_s, u"sam@example.com"_s },
        { {}, {}, u"Marigold Boatyard"_s, u"+12025550190"_s, u"(202) 555 0190"_s, {} },
    };
    return all;
}

Person person(int index)
{
    if (index < people().size())
        return people()[index];
    constexpr std::array kFirst { u"Ada",  u"Ben",  u"Clara", u"Dmitri", u"Ella", u"Finn", u"Greta",
                                  u"Hugo", u"Ines", u"Jamal", u"Kirsti", u"Leo",  u"Mina", u"Niels",
                                  u"Olga", u"Pia",  u"Quinn", u"Rosa",   u"Sven", u"Tara" };
    constexpr std::array kLast { u"Ahlberg",  u"Brookfield", u"Castellano", u"Dunmore",  u"Eriksen",
                                 u"Fontaine", u"Grey",       u"Hartmann",   u"Iversen",  u"Jansson",
                                 u"Kowalski", u"Larkin",     u"Mbeki",      u"Nakamura", u"Orsini",
                                 u"Petrov",   u"Quist",      u"Rowe",       u"Sandbank" };
    const auto at = static_cast<std::size_t>(index);
    Person made;
    made.first = QStringView(kFirst[at % kFirst.size()]).toString();
    made.last = QStringView(kLast[at / kFirst.size() % kLast.size()]).toString();
    // Central office codes from 2 on, the last four from the range that is kept free for stories.
    // Area 202 is that of the people above.
    const int area = 203 + index / 100 % 700;
    made.number = u"+1%1"_s.arg(area) + u"555%1"_s.arg(100 + index % 100, 4, 10, QLatin1Char('0'));
    made.numberAsTyped = made.number;
    return made;
}

} // namespace Sample
