#include "model/AddressBook.h"

#include "model/Source.h"

#include <QSet>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kWholeBackup = -1;
constexpr int kPhone = 3;
constexpr int kEmail = 4;
constexpr int kOrganisation = 1;

QString joinedName(const Statement &row, int first, int count)
{
    QStringList parts;
    for (int column = first; column < first + count; ++column) {
        const QString part = row.text(column).trimmed();
        if (!part.isEmpty())
            parts.append(part);
    }
    return parts.join(u' ');
}

QString firstOf(const QStringList &texts)
{
    for (const QString &text : texts) {
        if (!text.isEmpty())
            return text;
    }
    return {};
}

} // namespace

AddressBook::AddressBook(Source &source)
{
    const std::optional<Database> database = source.openDatabase(
        kWholeBackup, "HomeDomain", u"Library/AddressBook/AddressBook.sqlitedb"_s);
    if (!database)
        return;
    readPeople(source, *database);
    readAddresses(source, *database);
    m_personOfCard.clear();
}

void AddressBook::readPeople(Source &source, const Database &database)
{
    QHash<qint64, qint64> nameCards; // of a link: the card whose name is shown
    if (database.hasTable(u"ABPersonLink"_s)) {
        const QString preferred =
            columnOrNull(database.columns(u"ABPersonLink"_s), u"PreferredNamePersonID"_s);
        source.query(
            kWholeBackup,
            database,
            u"SELECT ROWID, %1 FROM ABPersonLink"_s.arg(preferred),
            [&](const Statement &row) { nameCards.insert(row.integer(0), row.integer(1)); });
    }
    const QStringList columns = database.columns(u"ABPerson"_s);
    QStringList wanted;
    for (const QString &column : { u"Prefix"_s,
                                   u"First"_s,
                                   u"Middle"_s,
                                   u"Last"_s,
                                   u"Suffix"_s,
                                   u"Nickname"_s,
                                   u"Organization"_s,
                                   u"DisplayName"_s,
                                   u"CompositeNameFallback"_s,
                                   u"Kind"_s,
                                   u"PersonLink"_s,
                                   u"IsPreferredName"_s })
        wanted.append(columnOrNull(columns, column));
    QHash<qint64, int> personOfLink;
    QSet<int> nameIsSettled;
    source.query(kWholeBackup,
                 database,
                 u"SELECT ROWID, %1 FROM ABPerson ORDER BY ROWID"_s.arg(wanted.join(u',')),
                 [&](const Statement &row) {
                     const qint64 card = row.integer(0);
                     const QString given = joinedName(row, 1, 5);
                     const QString organisation = row.text(7).trimmed();
                     const QString name =
                         firstOf({ row.integer(10) == kOrganisation ? organisation : QString(),
                                   given,
                                   row.text(6).trimmed(),
                                   organisation,
                                   row.text(8).trimmed(),
                                   row.text(9).trimmed() });
                     const qint64 link = row.integer(11);
                     const bool linked = link > 0 && nameCards.contains(link);
                     const auto known =
                         linked ? personOfLink.constFind(link) : personOfLink.constEnd();
                     if (known == personOfLink.constEnd()) {
                         const int person = int(m_names.size());
                         m_names.append(name);
                         m_personOfCard.insert(card, person);
                         if (linked)
                             personOfLink.insert(link, person);
                         if (!linked || nameCards.value(link) == card)
                             nameIsSettled.insert(person);
                         return;
                     }
                     const int person = *known;
                     m_personOfCard.insert(card, person);
                     const bool shown = nameCards.value(link) == card;
                     QString &current = m_names[person];
                     const bool better = shown || current.isEmpty()
                         || (!nameIsSettled.contains(person) && row.integer(12) != 0);
                     if (!name.isEmpty() && better)
                         current = name;
                     if (shown)
                         nameIsSettled.insert(person);
                 });
}

void AddressBook::readAddresses(Source &source, const Database &database)
{
    const QStringList columns = database.columns(u"ABMultiValue"_s);
    if (columns.isEmpty())
        return;
    const QString order = columnOrNull(columns, u"identifier"_s);
    const QString sql =
        u"SELECT record_id, value FROM ABMultiValue WHERE property IN (%1, %2) "
        "AND value IS NOT NULL ORDER BY record_id, property, %3, ROWID"_s.arg(kPhone)
            .arg(kEmail)
            .arg(order);
    source.query(kWholeBackup, database, sql, [this](const Statement &row) {
        const auto person = m_personOfCard.constFind(row.integer(0));
        const QString value = row.text(1).trimmed();
        const PhoneAddress address(value);
        if (person == m_personOfCard.constEnd() || address.kind() == PhoneAddress::Kind::None)
            return;
        if (m_names.at(*person).isEmpty())
            m_names[*person] = value;
        m_buckets.insert(address.bucket(), int(m_entries.size()));
        m_entries.push_back({ address, *person });
    });
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
        } else if (person != kNobody && m_names.at(person) != m_names.at(entry.person)) {
            person = kNobody; // a wrong name is worse than none
        } else if (person != kNobody) {
            person = std::min(person, entry.person); // the table knows no order
        }
    }
    return person;
}

QString AddressBook::personName(int person) const
{
    return person >= 0 && person < m_names.size() ? m_names.at(person) : QString();
}

} // namespace PhoneBackup
