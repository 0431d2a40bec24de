#include "PhoneBackup/contacts/ContactReader.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/contacts/StoredValue.h"
#include "PhoneBackup/source/ContactKind.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxOfAKind = 1000; // each is a column of its own in tables
constexpr qsizetype kMaxTextBytes = 4 << 20;
constexpr qsizetype kQuotedCharacters = 40; // of what is no date
constexpr std::size_t kMaxLeftOut = 5; // that are told of one contact

} // namespace

struct ContactReader::Cards
{
    explicit Cards(RowDatabase &database)
        : table(database, u"ABPerson"_s)
    {
    }

    Table table;
    Table::Column prefix = table.column(u"Prefix"_s);
    Table::Column first = table.column(u"First"_s);
    Table::Column middle = table.column(u"Middle"_s);
    Table::Column last = table.column(u"Last"_s);
    Table::Column suffix = table.column(u"Suffix"_s);
    Table::Column spokenFirst = table.column(u"FirstPhonetic"_s);
    Table::Column spokenMiddle = table.column(u"MiddlePhonetic"_s);
    Table::Column spokenLast = table.column(u"LastPhonetic"_s);
    Table::Column former = table.column(u"PreviousFamilyName"_s);
    Table::Column nickname = table.column(u"Nickname"_s);
    Table::Column jobTitle = table.column(u"JobTitle"_s);
    Table::Column department = table.column(u"Department"_s);
    Table::Column organization = table.column(u"Organization"_s);
    Table::Column spokenOrganization = table.column(u"OrganizationPhonetic"_s);
    Table::Column birthday = table.column(u"Birthday"_s);
    Table::Column note = table.column(u"Note"_s);
    Table::Column kind = table.column(u"Kind"_s);
    Table::Column guid = table.column(u"guid"_s);
    Table::Column created = table.column(u"CreationDate"_s);
    Table::Column modified = table.column(u"ModificationDate"_s);
    Table::Lookup lookup = table.lookup();
};

struct ContactReader::Values
{
    explicit Values(RowDatabase &database)
        : table(database, u"ABMultiValue"_s)
    {
    }

    Table table;
    Table::Column label = table.column(u"label"_s);
    Table::Column value = table.column(u"value"_s);
    Table::Lookup lookup = table.lookup();
};

struct ContactReader::Parts
{
    explicit Parts(RowDatabase &database)
        : table(database, u"ABMultiValueEntry"_s)
    {
    }

    Table table;
    Table::Column key = table.column(u"key"_s);
    Table::Column value = table.column(u"value"_s);
    Table::Lookup lookup = table.lookup();
};

ContactReader::ContactReader(Source &source, const AddressBook &book)
    : m_source(source)
    , m_book(book)
    , m_details(book.database()->readFor(DataType::Contacts, Notice("contacts.mayBeMissing")))
    , m_photos(source)
{
    readTexts(u"ABMultiValueLabel"_s, u"value"_s, m_labels);
    readTexts(u"ABMultiValueEntryKey"_s, u"value"_s, m_partKeys);
    readPartRows();
    readGroups();
    m_cards = std::make_unique<Cards>(m_details);
    m_values = std::make_unique<Values>(m_details);
    m_parts = std::make_unique<Parts>(m_details);
}

ContactReader::~ContactReader() = default;

// By the numbers of the rows, by which they are referred to.
void ContactReader::readTexts(const QString &table, const QString &column, Texts &texts)
{
    Table stored(*m_book.database(), table);
    const Table::Column text = stored.column(column);
    stored.forEach([&](const Table::Row &row) {
        texts.insert(row.id(), StoredText::cleaned(row.text(text)).simplified());
    });
}

void ContactReader::readPartRows()
{
    Table parts(*m_book.database(), u"ABMultiValueEntry"_s);
    const Table::Column value = parts.column(u"parent_id"_s);
    parts.forEach(
        [&, this](const Table::Row &row) { m_partRows.emplace_back(row.integer(value), row.id()); },
        Table::Order::Any);
    std::sort(m_partRows.begin(), m_partRows.end());
    m_partRows.erase(std::unique(m_partRows.begin(), m_partRows.end()), m_partRows.end());
}

void ContactReader::readGroups()
{
    constexpr int kPerson = 0; // type of a member; 1 is a group in a group
    Texts names;
    readTexts(u"ABGroup"_s, u"Name"_s, names);
    Table members(*m_book.database(), u"ABGroupMembers"_s);
    const auto [group, member, type] =
        members.columns(u"group_id"_s, u"member_id"_s, u"member_type"_s);
    members.forEach([&, this, group = group, member = member, type = type](const Table::Row &row) {
        const QString name = names.value(row.integer(group));
        if (row.integer(type) == kPerson && !name.isEmpty())
            m_groups[row.integer(member)].append(name);
    });
}

bool ContactReader::read(const AddressBook::Person &person, Contact &contact)
{
    contact = {};
    m_leftOut.clear();
    m_isCut = false;
    m_valueCounts.clear();
    m_seenValues.clear();
    bool isRead = false;
    for (const qint64 card : person.cards)
        isRead = readFields(card, contact) || isRead;
    if (!isRead)
        return false;
    contact.row = person.cards.front();
    for (const qint64 card : person.cards) {
        readValues(card, card == person.cards.front(), contact);
        contact.groups += m_groups.value(card);
    }
    contact.groups.removeDuplicates();
    tellWhatIsLeftOut(person);
    return true;
}

bool ContactReader::readFields(qint64 card, Contact &contact)
{
    const Table::Row *row = m_cards->lookup.find(card);
    if (!row)
        return false;
    const Cards &cards = *m_cards;
    const auto stored = [&](Table::Column column) { return text(*row, column); };
    const auto fill = [&](QString &field, Table::Column column) {
        if (field.isEmpty())
            field = stored(column);
    };
    // The parts of a name are those of one card.
    if (contact.name.isEmpty()) {
        contact.name = { stored(cards.prefix),       stored(cards.first),
                         stored(cards.middle),       stored(cards.last),
                         stored(cards.suffix),       stored(cards.spokenFirst),
                         stored(cards.spokenMiddle), stored(cards.spokenLast),
                         stored(cards.former) };
    }
    fill(contact.nickname, cards.nickname);
    fill(contact.jobTitle, cards.jobTitle);
    fill(contact.department, cards.department);
    fill(contact.organization, cards.organization);
    fill(contact.spokenOrganization, cards.spokenOrganization);
    if (!contact.birthday.isValid())
        contact.birthday = dayIn(stored(cards.birthday), "contacts.birthdayNoDate");
    fill(contact.note, cards.note);
    fill(contact.guid, cards.guid);
    constexpr int kOrganization = 1;
    contact.isOrganization = contact.isOrganization || row->integer(cards.kind) == kOrganization;
    if (!contact.created.isValid())
        contact.created = PhoneTime::since2001(row->number(cards.created));
    if (!contact.modified.isValid())
        contact.modified = PhoneTime::since2001(row->number(cards.modified));
    return true;
}

// An invalid one, which is left out as \a noDay says, for what is stored but is no day.
QDate ContactReader::dayIn(const QString &stored, const char *noDay)
{
    const QDate day = StoredValue::day(stored);
    if (!day.isValid() && !stored.isEmpty())
        leaveOut(Notice(noDay, { StoredText::beginning(stored, kQuotedCharacters) }));
    return day;
}

void ContactReader::readValues(qint64 card, bool isFirst, Contact &contact)
{
    const auto [first, last] = m_book.values(card);
    for (auto value = first; value != last; ++value) {
        if (const Table::Row *row = m_values->lookup.find(value->row))
            addValue(*value, *row, isFirst, contact);
        else
            leaveOut(Notice("contacts.entryUnreadable"));
    }
}

void ContactReader::addValue(const AddressBook::Value &stored,
                             const Table::Row &row,
                             bool isFirst,
                             Contact &contact)
{
    Contact::Value value;
    value.kind = stored.kind;
    value.label = m_labels.value(row.integer(m_values->label));
    value.parts = readParts(stored);
    QString text = this->text(row, m_values->value);
    const QString onlyPart = StoredValue::partOfPlainValue(stored.kind);
    if (value.parts.isEmpty() && !text.isEmpty() && !onlyPart.isEmpty())
        value.parts.insert(onlyPart, std::exchange(text, {}));
    if (value.parts.isEmpty() && stored.kind == ContactKind::kDate)
        value.day = dayIn(std::exchange(text, {}), "contacts.valueNoDate");
    else if (value.parts.isEmpty())
        value.text = text;
    const bool isNothing = value.parts.isEmpty() && value.text.isEmpty() && !value.day.isValid();
    if (!isNothing && isNew(value, isFirst) && ++m_valueCounts[stored.kind] <= kMaxOfAKind)
        contact.values.push_back(std::move(value));
}

QMap<QString, QString> ContactReader::readParts(const AddressBook::Value &value)
{
    QMap<QString, QString> parts;
    auto at = std::lower_bound(m_partRows.cbegin(),
                               m_partRows.cend(),
                               std::pair(value.row, std::numeric_limits<qint64>::min()));
    for (; at != m_partRows.cend() && at->first == value.row; ++at) {
        const Table::Row *row =
            parts.size() < kMaxOfAKind ? m_parts->lookup.find(at->second) : nullptr;
        if (!row) {
            leaveOut(Notice("contacts.partUnreadable"));
            continue;
        }
        const QString stored = m_partKeys.value(row->integer(m_parts->key));
        const QString key = StoredValue::partKey(stored);
        QString text = this->text(*row, m_parts->value);
        if (value.kind == ContactKind::kSocialProfile && key == "service"_L1)
            text = text.toLower(); // the words for it are found by this spelling only
        const bool goesFirst = stored == key || !parts.contains(key);
        if (!key.isEmpty() && !text.isEmpty() && goesFirst)
            parts.insert(key, text);
    }
    return parts;
}

// What cards that are shown as one have in common is shown once.
bool ContactReader::isNew(const Contact::Value &value, bool isFirst)
{
    QString key =
        QString::number(value.kind) + u'\n' + value.text + value.day.toString(Qt::ISODate);
    for (auto part = value.parts.cbegin(); part != value.parts.cend(); ++part)
        key += u'\n' + part.key() + u'\n' + part.value();
    const bool isKnown = m_seenValues.contains(key);
    m_seenValues.insert(key);
    return isFirst || !isKnown;
}

// As it is stored, but for control characters.
QString ContactReader::text(const Table::Row &row, Table::Column column)
{
    const QByteArrayView bytes = row.bytes(column);
    m_isCut = m_isCut || bytes.size() > kMaxTextBytes;
    const QString text =
        StoredText::cleaned(QString::fromUtf8(bytes.first(std::min(bytes.size(), kMaxTextBytes))));
    const auto isBlank = [](QChar c) { return c.isSpace(); };
    return std::all_of(text.cbegin(), text.cend(), isBlank) ? QString() : text;
}

void ContactReader::leaveOut(const Notice &what)
{
    const bool isKnown = std::find(m_leftOut.cbegin(), m_leftOut.cend(), what) != m_leftOut.cend();
    if (!isKnown && m_leftOut.size() < kMaxLeftOut)
        m_leftOut.push_back(what);
}

void ContactReader::tellWhatIsLeftOut(const AddressBook::Person &person)
{
    for (const auto &[kind, count] : m_valueCounts) {
        if (count > kMaxOfAKind)
            leaveOut(Notice("contacts.tooManyOfAKind", { qint64(count), qint64(kMaxOfAKind) }));
    }
    if (m_isCut)
        leaveOut(Notice("contacts.textTooLong"));
    if (m_leftOut.empty())
        return;
    Notice all;
    for (const Notice &what : m_leftOut)
        all += what;
    m_source.addProblem(person.loss(all));
}

void reportContactLosses(Source &source)
{
    const AddressBook &book = source.addressBook();
    const QString name = AddressBook::place();
    if (!book.loss().isEmpty()) {
        source.addProblem(
            { DataType::Contacts, name, book.loss() + Notice("contacts.mayBeMissing"), true });
    }
    if (book.unknownValueCount() > 0) {
        source.addProblem({ DataType::Contacts,
                            name + ": ABMultiValue.property"_L1,
                            Notice("contacts.unknownKinds", { qint64(book.unknownValueCount()) }),
                            true });
    }
}

} // namespace PhoneBackup
