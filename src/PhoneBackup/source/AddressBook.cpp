#include "PhoneBackup/source/AddressBook.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/ContactKind.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/Table.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kDomain("HomeDomain");
constexpr QLatin1StringView kPath("Library/AddressBook/AddressBook.sqlitedb");
constexpr int kOrganisation = 1;
constexpr qsizetype kMaxNameCharacters = 500; // a list shows no more; the details hold all of it
constexpr qsizetype kMaxNameBytes = 8 * kMaxNameCharacters;

// In one line. Of a name that someone made a book of, as much as can be a name.
QString nameIn(const Table::Row &row, Table::Column column)
{
    const QByteArrayView bytes = row.bytes(column);
    const QString name =
        StoredText::cleaned(QString::fromUtf8(bytes.first(std::min(bytes.size(), kMaxNameBytes))))
            .simplified();
    return name.size() <= kMaxNameCharacters
        ? name
        : StoredText::beginning(name, kMaxNameCharacters) + u'…';
}

QByteArray keyIn(const Table::Row &row, Table::Column column)
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

// The cards, with what names and orders them.
class Cards
{
public:
    explicit Cards(RowDatabase &database)
        : table(database, u"ABPerson"_s)
    {
    }

    AddressBook::Person person(const Table::Row &row) const;

    Table table;
    Table::Column link = table.column(u"PersonLink"_s);
    Table::Column isPreferred = table.column(u"IsPreferredName"_s);

private:
    Table::Column m_prefix = table.column(u"Prefix"_s);
    Table::Column m_first = table.column(u"First"_s);
    Table::Column m_middle = table.column(u"Middle"_s);
    Table::Column m_last = table.column(u"Last"_s);
    Table::Column m_suffix = table.column(u"Suffix"_s);
    Table::Column m_nickname = table.column(u"Nickname"_s);
    Table::Column m_organization = table.column(u"Organization"_s);
    Table::Column m_display = table.column(u"DisplayName"_s);
    Table::Column m_fallback = table.column(u"CompositeNameFallback"_s);
    Table::Column m_kind = table.column(u"Kind"_s);
    Table::Column m_firstSpoken = table.column(u"FirstPhonetic"_s);
    Table::Column m_lastSpoken = table.column(u"LastPhonetic"_s);
    Table::Column m_organizationSpoken = table.column(u"OrganizationPhonetic"_s);
    Table::Column m_alphabet = table.column(u"LastSortLanguageIndex"_s);
    Table::Column m_section = table.column(u"LastSortSection"_s);
    Table::Column m_key = table.column(u"LastSort"_s);
};

AddressBook::Person Cards::person(const Table::Row &row) const
{
    const auto text = [&row](Table::Column column) { return nameIn(row, column); };
    const QString organization = text(m_organization);
    const bool isOrganization = row.integer(m_kind) == kOrganisation && !organization.isEmpty();

    AddressBook::Person person;
    AddressBook::SortKeys &sort = person.sort;
    if (!row.bytes(m_alphabet).isEmpty())
        sort.alphabet = row.integer(m_alphabet);
    sort.section = keyIn(row, m_section);
    sort.key = keyIn(row, m_key);
    const QString first = text(m_first);
    const QString middle = text(m_middle);
    const QString last = text(m_last);
    person.name = isOrganization
        ? organization
        : firstOf({ joined({ text(m_prefix), first, middle, last, text(m_suffix) }),
                    text(m_nickname),
                    organization,
                    text(m_display),
                    text(m_fallback) });
    if (isOrganization) {
        sort.name = firstOf({ text(m_organizationSpoken), organization });
        return person;
    }
    const QString family = firstOf({ text(m_lastSpoken), last });
    const QString given = joined({ firstOf({ text(m_firstSpoken), first }), middle });
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
            source.addProblem(DataType::WholeBackup, place(), database.error(), consequence, true);
        }
        return;
    }
    m_database =
        std::make_unique<RowDatabase>(source, DataType::WholeBackup, database.take(), consequence);
    readPeople();
    readValues();
    m_personOfCard.clear();
    m_settledNames.clear();
}

Problem AddressBook::Person::loss(const Notice &what) const
{
    const QString card = u'(' + QString::number(cards.front()) + u')';
    Problem problem { DataType::Contacts, name.isEmpty() ? card : name + u' ' + card, what, true };
    problem.isNameless = name.isEmpty();
    return problem;
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
    QHash<qint64, Link> links;
    Table linkTable(*m_database, u"ABPersonLink"_s);
    const auto [nameCard, imageCard] =
        linkTable.columns(u"PreferredNamePersonID"_s, u"PreferredImagePersonID"_s);
    linkTable.forEach([&, nameCard = nameCard, imageCard = imageCard](const Table::Row &row) {
        links.insert(row.id(), { row.integer(nameCard), row.integer(imageCard) });
    });
    const Cards cards(*m_database);
    if (!cards.table.isThere())
        return;
    cards.table.forEach([&](const Table::Row &row) {
        const qint64 link = row.integer(cards.link);
        const auto known = link > 0 ? links.find(link) : links.end();
        addCard({ row.id(),
                  known == links.end() ? nullptr : &*known,
                  row.integer(cards.isPreferred) != 0,
                  cards.person(row) });
    });
}

void AddressBook::addCard(Card &&card)
{
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
    Table table(*m_database, u"ABMultiValue"_s);
    const auto [card, kind, place] = table.columns(u"record_id"_s, u"property"_s, u"identifier"_s);
    const auto address = table.expression(
        u"CASE WHEN %1 IN (%2, %3) THEN %4 END"_s.arg(table.sql(u"property"_s),
                                                      QString::number(ContactKind::kPhone),
                                                      QString::number(ContactKind::kEmail),
                                                      table.sql(u"value"_s)));
    table.forEach([&, card = card, kind = kind, place = place](const Table::Row &row) {
        const auto person = m_personOfCard.constFind(row.integer(card));
        const qint64 number = row.integer(kind);
        if (person == m_personOfCard.constEnd() || number == ContactKind::kSound)
            return;
        if (number < 0 || number > std::numeric_limits<int>::max()
            || !ContactKind::isShown(int(number))) {
            ++m_unknownValues;
            return;
        }
        const Value value { row.integer(card),
                            int(number),
                            int(std::clamp<qint64>(row.integer(place),
                                                   std::numeric_limits<int>::min(),
                                                   std::numeric_limits<int>::max())),
                            row.id() };
        m_values.push_back(value);
        const QString text = nameIn(row, address);
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
