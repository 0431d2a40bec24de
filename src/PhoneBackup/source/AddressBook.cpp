#include "PhoneBackup/source/AddressBook.h"

#include "PhoneBackup/source/ContactKind.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "platform/Translation_p.h"

#include <algorithm>
#include <limits>
#include <tuple>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kWholeBackup = -1;
constexpr QLatin1StringView kDomain("HomeDomain");
constexpr QLatin1StringView kPath("Library/AddressBook/AddressBook.sqlitedb");
constexpr int kOrganisation = 1;
constexpr qsizetype kMaxNameCharacters = 500; // a list shows no more; the details hold all of it
constexpr qsizetype kMaxNameBytes = 8 * kMaxNameCharacters;

// In one line. Of a name that someone made a book of, as much as can be a name.
QString nameIn(const Statement &row, int column)
{
    const QByteArrayView bytes = row.bytes(column);
    const QString name =
        StoredText::cleaned(QString::fromUtf8(bytes.first(std::min(bytes.size(), kMaxNameBytes))))
            .simplified();
    return name.size() <= kMaxNameCharacters
        ? name
        : StoredText::beginning(name, kMaxNameCharacters) + u'…';
}

QByteArray keyIn(const Statement &row, int column)
{
    const QByteArrayView bytes = row.bytes(column);
    return bytes.first(std::min(bytes.size(), kMaxNameBytes)).toByteArray();
}

QString joined(QStringList parts)
{
    parts.removeAll(QString());
    return parts.join(u' ');
}

QString firstOf(const QStringList &texts)
{
    const auto found =
        std::find_if_not(texts.cbegin(), texts.cend(), [](const auto &t) { return t.isEmpty(); });
    return found == texts.cend() ? QString() : *found;
}

AddressBook::Person personOf(const Statement &row, int column)
{
    enum {
        Prefix,
        First,
        Middle,
        Last,
        Suffix,
        Nickname,
        Organization,
        Display,
        Fallback,
        Kind,
        FirstSpoken,
        LastSpoken,
        OrganizationSpoken,
        Alphabet,
        Section,
        Key
    };
    const auto text = [&](int place) { return nameIn(row, column + place); };
    const QString organization = text(Organization);
    const bool isOrganization =
        row.integer(column + Kind) == kOrganisation && !organization.isEmpty();

    AddressBook::Person person;
    AddressBook::SortKeys &sort = person.sort;
    if (!row.bytes(column + Alphabet).isEmpty())
        sort.alphabet = row.integer(column + Alphabet);
    sort.section = keyIn(row, column + Section);
    sort.key = keyIn(row, column + Key);
    person.name = isOrganization
        ? organization
        : firstOf({ joined({ text(Prefix), text(First), text(Middle), text(Last), text(Suffix) }),
                    text(Nickname),
                    organization,
                    text(Display),
                    text(Fallback) });
    if (isOrganization) {
        sort.name = firstOf({ text(OrganizationSpoken), organization });
        return person;
    }
    const QString family = firstOf({ text(LastSpoken), text(Last) });
    const QString given = joined({ firstOf({ text(FirstSpoken), text(First) }), text(Middle) });
    sort.name = firstOf({ family, given, person.name });
    sort.rest = family.isEmpty() ? QString() : given;
    return person;
}

} // namespace

AddressBook::AddressBook(Source &source)
{
    const Notice consequence("source.peopleMayBeMissing");
    Result<Database> database = source.files().openDatabase(kDomain, kPath);
    if (!database) {
        if (database.error().fault != Fault::NotFound) {
            m_openError = database.error().what;
            source.addProblem(kWholeBackup, place(), database.error(), consequence, true);
        }
        return;
    }
    m_database = std::make_unique<RowDatabase>(source, kWholeBackup, database.take(), consequence);
    readPeople();
    readValues();
    m_personOfCard.clear();
    m_settledNames.clear();
}

QString AddressBook::Person::nameForReport() const
{
    return u"%1 (%2)"_s.arg(name.isEmpty() ? tr("(no name)") : name).arg(cards.front());
}

QString AddressBook::place()
{
    return kDomain + u'/' + kPath;
}

Notice AddressBook::loss() const
{
    return m_database ? m_database->firstLoss() : m_openError;
}

void AddressBook::readPeople()
{
    const auto column = [this](const QString &name) {
        return m_database->column(u"ABPerson"_s, name);
    };
    QHash<qint64, Link> links;
    const QString linkTable = u"ABPersonLink"_s;
    if (m_database->hasTable(linkTable)) {
        m_database->query(
            u"ROWID, %1, %2"_s.arg(m_database->column(linkTable, u"PreferredNamePersonID"_s),
                                   m_database->column(linkTable, u"PreferredImagePersonID"_s)),
            linkTable,
            [&links](const Statement &row) {
                if (!links.contains(row.integer(0)))
                    links.insert(row.integer(0), { row.integer(1), row.integer(2) });
            });
    }
    QStringList wanted { u"ROWID"_s, column(u"PersonLink"_s), column(u"IsPreferredName"_s) };
    constexpr int kNames = 3; // the column that these begin at, in the order of personOf()
    for (const QString &name : { u"Prefix"_s,
                                 u"First"_s,
                                 u"Middle"_s,
                                 u"Last"_s,
                                 u"Suffix"_s,
                                 u"Nickname"_s,
                                 u"Organization"_s,
                                 u"DisplayName"_s,
                                 u"CompositeNameFallback"_s,
                                 u"Kind"_s,
                                 u"FirstPhonetic"_s,
                                 u"LastPhonetic"_s,
                                 u"OrganizationPhonetic"_s,
                                 u"LastSortLanguageIndex"_s,
                                 u"LastSortSection"_s,
                                 u"LastSort"_s })
        wanted.append(column(name));
    m_database->query(wanted.join(u','), u"ABPerson"_s, [&](const Statement &row) {
        const qint64 link = row.integer(1);
        const auto known = link > 0 ? links.find(link) : links.end();
        addCard({ row.integer(0),
                  known == links.end() ? nullptr : &*known,
                  row.integer(2) != 0,
                  personOf(row, kNames) });
    });
}

void AddressBook::addCard(Card &&card)
{
    if (m_personOfCard.contains(card.row))
        return;
    const bool isNameCard = !card.link || card.link->nameCard == card.row;
    if (!card.link || card.link->person == kNobody) {
        const int number = int(m_people.size());
        card.person.cards = { card.row };
        if (card.link) {
            card.link->person = number;
            card.person.imageCard = card.link->imageCard;
        }
        m_people.push_back(std::move(card.person));
        m_personOfCard.insert(card.row, number);
        if (isNameCard)
            m_settledNames.insert(number);
        return;
    }
    const int number = card.link->person;
    Person &person = m_people[std::size_t(number)];
    m_personOfCard.insert(card.row, number);
    const bool isBetter = isNameCard || person.name.isEmpty()
        || (!m_settledNames.contains(number) && card.isPreferred);
    person.cards.push_back(card.row);
    if (!card.person.name.isEmpty() && isBetter) {
        person.name = card.person.name;
        person.sort = card.person.sort;
        std::swap(person.cards.front(), person.cards.back());
    }
    if (isNameCard)
        m_settledNames.insert(number);
}

void AddressBook::readValues()
{
    const QString table = u"ABMultiValue"_s;
    if (!m_database->hasTable(table))
        return;
    // Of a person without any name: the number or address that stands first.
    struct FirstAddress
    {
        Value value;
        QString text;
    };
    const auto isBefore = [](const Value &a, const Value &b) {
        return std::tie(a.card, a.kind, a.place, a.row) < std::tie(b.card, b.kind, b.place, b.row);
    };
    QHash<int, FirstAddress> names;
    QSet<qint64> unknown;
    const QString what = u"ROWID, record_id, property, %1, CASE WHEN property IN (%2, %3) THEN "
                         "value END"_s.arg(m_database->column(table, u"identifier"_s))
                             .arg(ContactKind::kPhone)
                             .arg(ContactKind::kEmail);
    m_database->query(what, table, [&](const Statement &row) {
        const auto person = m_personOfCard.constFind(row.integer(1));
        if (person == m_personOfCard.constEnd())
            return;
        const auto kind = row.integer(2);
        if (kind == ContactKind::kSound)
            return;
        if (kind < 0 || kind > std::numeric_limits<int>::max()
            || !ContactKind::isShown(int(kind))) {
            unknown.insert(row.integer(0));
            return;
        }
        const Value value { row.integer(1),
                            int(kind),
                            int(std::clamp<qint64>(row.integer(3),
                                                   std::numeric_limits<int>::min(),
                                                   std::numeric_limits<int>::max())),
                            row.integer(0) };
        m_values.push_back(value);
        const QString text = nameIn(row, 4);
        if (text.isEmpty())
            return;
        addAddress(*person, text);
        if (m_people[std::size_t(*person)].name.isEmpty()) {
            const auto first = names.constFind(*person);
            if (first == names.constEnd() || isBefore(value, first->value))
                names.insert(*person, { value, text });
        }
    });
    std::sort(m_values.begin(), m_values.end(), isBefore);
    const auto isSame = [](const Value &a, const Value &b) { return a.row == b.row; };
    m_values.erase(std::unique(m_values.begin(), m_values.end(), isSame), m_values.end());
    m_unknownValues = int(unknown.size());
    for (auto it = names.cbegin(); it != names.cend(); ++it) {
        Person &person = m_people[std::size_t(it.key())];
        person.name = it->text;
        person.sort.name = it->text;
    }
}

void AddressBook::addAddress(int person, const QString &text)
{
    const PhoneAddress address(text);
    if (address.kind() == PhoneAddress::Kind::None)
        return;
    m_buckets.insert(address.bucket(), int(m_entries.size()));
    m_entries.push_back({ address, person });
}

std::pair<AddressBook::Values::const_iterator, AddressBook::Values::const_iterator>
AddressBook::values(qint64 card) const
{
    struct Less
    {
        bool operator()(const Value &value, qint64 wanted) const { return value.card < wanted; }
        bool operator()(qint64 wanted, const Value &value) const { return wanted < value.card; }
    };
    return std::equal_range(m_values.cbegin(), m_values.cend(), card, Less());
}

int AddressBook::person(const QString &address) const
{
    const auto known = m_known.constFind(address);
    if (known != m_known.constEnd())
        return *known;
    const int found = find(PhoneAddress(address));
    m_known.insert(address, found);
    return found;
}

int AddressBook::find(const PhoneAddress &address) const
{
    if (address.kind() == PhoneAddress::Kind::None)
        return kNobody;
    int best = 0;
    int person = kNobody;
    const auto [first, last] = m_buckets.equal_range(address.bucket());
    for (auto it = first; it != last; ++it) {
        const Entry &entry = m_entries[std::size_t(*it)];
        const int match = PhoneAddress::match(address, entry.address);
        if (match == 0 || match < best)
            continue;
        if (match > best) {
            best = match;
            person = entry.person;
        } else if (person != kNobody && personName(person) != personName(entry.person)) {
            person = kNobody; // a wrong name is worse than none
        } else if (person != kNobody) {
            person = std::min(person, entry.person); // the table knows no order
        }
    }
    return person;
}

QString AddressBook::personName(int person) const
{
    const bool known = person >= 0 && person < int(m_people.size());
    return known ? m_people[std::size_t(person)].name : QString();
}

} // namespace PhoneBackup
