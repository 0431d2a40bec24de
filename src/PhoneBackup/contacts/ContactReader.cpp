#include "PhoneBackup/contacts/ContactReader.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/contacts/StoredValue.h"
#include "PhoneBackup/source/ContactKind.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxOfAKind = 1000; // each is a column of its own in tables
constexpr qsizetype kMaxTextBytes = 4 << 20;
constexpr qsizetype kQuotedCharacters = 40; // of what is no date
constexpr std::size_t kMaxLeftOut = 5; // that are told of one contact

// What is read of a card, in the order of the query.
enum Column {
    Prefix,
    First,
    Middle,
    Last,
    Suffix,
    FirstPhonetic,
    MiddlePhonetic,
    LastPhonetic,
    PreviousFamilyName,
    Nickname,
    JobTitle,
    Department,
    Organization,
    OrganizationPhonetic,
    Birthday,
    Note,
    Kind,
    Guid,
    CreationDate,
    ModificationDate,
};
constexpr std::array kColumns {
    "Prefix"_L1,
    "First"_L1,
    "Middle"_L1,
    "Last"_L1,
    "Suffix"_L1,
    "FirstPhonetic"_L1,
    "MiddlePhonetic"_L1,
    "LastPhonetic"_L1,
    "PreviousFamilyName"_L1,
    "Nickname"_L1,
    "JobTitle"_L1,
    "Department"_L1,
    "Organization"_L1,
    "OrganizationPhonetic"_L1,
    "Birthday"_L1,
    "Note"_L1,
    "Kind"_L1,
    "guid"_L1,
    "CreationDate"_L1,
    "ModificationDate"_L1,
};
static_assert(kColumns.size() == ModificationDate + 1);

} // namespace

ContactReader::ContactReader(Source &source, const AddressBook &book)
    : m_source(source)
    , m_book(book)
    , m_database(*book.database())
    , m_photos(source)
{
    readTexts(u"ABMultiValueLabel"_s, m_labels);
    readTexts(u"ABMultiValueEntryKey"_s, m_partKeys);
    readPartRows();
    readGroups();
    prepareStatements();
}

void ContactReader::readTexts(const QString &table, Texts &texts)
{
    if (!m_database.hasColumn(table, u"value"_s))
        return;
    // Their ROWIDs are the numbers by which they are referred to.
    m_database.query(u"ROWID, value"_s, table, [&](const Statement &row) {
        texts.insert(row.integer(0), StoredText::cleaned(row.text(1)).simplified());
    });
}

void ContactReader::readPartRows()
{
    const QString table = u"ABMultiValueEntry"_s;
    if (!m_database.hasTable(table))
        return;
    m_database.query(
        u"ROWID, parent_id"_s,
        table,
        [this](const Statement &row) { m_partRows.emplace_back(row.integer(1), row.integer(0)); },
        RowDatabase::Order::Any);
    std::sort(m_partRows.begin(), m_partRows.end());
    m_partRows.erase(std::unique(m_partRows.begin(), m_partRows.end()), m_partRows.end());
}

void ContactReader::readGroups()
{
    constexpr int kPerson = 0; // type of a member; 1 is a group in a group
    const QString groups = u"ABGroup"_s;
    const QString members = u"ABGroupMembers"_s;
    if (!m_database.hasColumn(groups, u"Name"_s) || !m_database.hasColumn(members, u"member_id"_s))
        return;
    Texts names;
    m_database.query(u"ROWID, Name"_s, groups, [&names](const Statement &row) {
        names.insert(row.integer(0), StoredText::cleaned(row.text(1)).simplified());
    });
    m_database.query(
        u"group_id, member_id, member_type"_s, members, [this, &names](const Statement &row) {
            const QString name = names.value(row.integer(0));
            if (row.integer(2) == kPerson && !name.isEmpty())
                m_groups[row.integer(1)].append(name);
        });
}

void ContactReader::prepareStatements()
{
    QStringList columns;
    for (const QLatin1StringView column : kColumns)
        columns.append(m_database.column(u"ABPerson"_s, column));
    m_person =
        m_database.prepare(u"SELECT %1 FROM ABPerson WHERE ROWID = ?1"_s.arg(columns.join(u',')));
    m_value = m_database.hasTable(u"ABMultiValue"_s)
        ? m_database.prepare(u"SELECT %1, value FROM ABMultiValue WHERE ROWID = ?1"_s.arg(
            m_database.column(u"ABMultiValue"_s, u"label"_s)))
        : nullptr;
    m_part = m_partRows.empty()
        ? nullptr
        : m_database.prepare(u"SELECT key, value FROM ABMultiValueEntry WHERE ROWID = ?1"_s);
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
    if (!m_person || !step(*m_person, card))
        return false;
    const auto stored = [this](Column column) { return text(*m_person, column); };
    const auto fill = [&](QString &field, Column column) {
        if (field.isEmpty())
            field = stored(column);
    };
    // The parts of a name are those of one card.
    if (contact.name.isEmpty()) {
        contact.name = { stored(Prefix),         stored(First),        stored(Middle),
                         stored(Last),           stored(Suffix),       stored(FirstPhonetic),
                         stored(MiddlePhonetic), stored(LastPhonetic), stored(PreviousFamilyName) };
    }
    fill(contact.nickname, Nickname);
    fill(contact.jobTitle, JobTitle);
    fill(contact.department, Department);
    fill(contact.organization, Organization);
    fill(contact.spokenOrganization, OrganizationPhonetic);
    if (!contact.birthday.isValid())
        contact.birthday = dayIn(stored(Birthday), "contacts.birthdayNoDate");
    fill(contact.note, Note);
    fill(contact.guid, Guid);
    constexpr int kOrganization = 1;
    contact.isOrganization = contact.isOrganization || m_person->integer(Kind) == kOrganization;
    if (!contact.created.isValid())
        contact.created = PhoneTime::since2001(m_person->number(CreationDate));
    if (!contact.modified.isValid())
        contact.modified = PhoneTime::since2001(m_person->number(ModificationDate));
    m_person->reset();
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
    for (auto value = first; value != last && m_value; ++value) {
        if (!step(*m_value, value->row)) {
            leaveOut(Notice("contacts.entryUnreadable"));
            continue;
        }
        addValue(*value, isFirst, contact);
        m_value->reset();
    }
}

void ContactReader::addValue(const AddressBook::Value &stored, bool isFirst, Contact &contact)
{
    Contact::Value value;
    value.kind = stored.kind;
    value.label = m_labels.value(m_value->integer(0));
    value.parts = readParts(stored);
    QString text = this->text(*m_value, 1);
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
    for (; at != m_partRows.cend() && at->first == value.row && m_part; ++at) {
        if (parts.size() >= kMaxOfAKind || !step(*m_part, at->second)) {
            leaveOut(Notice("contacts.partUnreadable"));
            continue;
        }
        const QString stored = m_partKeys.value(m_part->integer(0));
        const QString key = StoredValue::partKey(stored);
        QString text = this->text(*m_part, 1);
        m_part->reset();
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
QString ContactReader::text(const Statement &row, int column)
{
    const QByteArrayView bytes = row.bytes(column);
    m_isCut = m_isCut || bytes.size() > kMaxTextBytes;
    const QString text =
        StoredText::cleaned(QString::fromUtf8(bytes.first(std::min(bytes.size(), kMaxTextBytes))));
    const auto isBlank = [](QChar c) { return c.isSpace(); };
    return std::all_of(text.cbegin(), text.cend(), isBlank) ? QString() : text;
}

bool ContactReader::step(Statement &statement, qint64 row)
{
    statement.reset();
    statement.bind(1, row);
    switch (statement.step()) {
    case Statement::Step::Row:
        return true;
    case Statement::Step::Failed:
        m_source.addProblem(
            { DataType::Contacts,
              AddressBook::place(),
              Notice("contacts.damaged", { statement.error() }) + Notice("contacts.mayBeMissing"),
              true });
        return false;
    case Statement::Step::Done:
        break;
    }
    return false;
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
    m_source.addProblem({ DataType::Contacts, person.nameForReport(), all, true });
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
