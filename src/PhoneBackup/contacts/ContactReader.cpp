#include "PhoneBackup/contacts/ContactReader.h"

#include "PhoneBackup/source/ContactKind.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneItems/contacts/ContactDetails.h"
#include "PhoneItems/contacts/ContactWords.h"
#include "platform/Translation_p.h"

#include <algorithm>
#include <limits>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxOfAKind = 1000; // each is a column of its own in tables
constexpr qsizetype kMaxTextBytes = 4 << 20;

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

void ContactReader::prepareStatements()
{
    QStringList columns;
    for (const QString &column : { u"Prefix"_s,
                                   u"First"_s,
                                   u"Middle"_s,
                                   u"Last"_s,
                                   u"Suffix"_s,
                                   u"FirstPhonetic"_s,
                                   u"LastPhonetic"_s,
                                   u"Nickname"_s,
                                   u"JobTitle"_s,
                                   u"Department"_s,
                                   u"Organization"_s,
                                   u"Birthday"_s,
                                   u"Note"_s,
                                   u"MiddlePhonetic"_s })
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

bool ContactReader::read(const AddressBook::Person &person, ContactDetails &details)
{
    details.clear();
    m_leftOut.clear();
    m_isCut = false;
    m_valueCounts.clear();
    m_seenValues.clear();
    bool isRead = false;
    for (const qint64 card : person.cards)
        isRead = readFields(card, details) || isRead;
    if (!isRead)
        return false;
    for (const qint64 card : person.cards)
        readValues(card, card == person.cards.front(), details);
    details.setPhotoSource([this, &person] { return m_photos.best(person); });
    tellWhatIsLeftOut(person);
    return true;
}

bool ContactReader::readFields(qint64 card, ContactDetails &details)
{
    if (!m_person || !step(*m_person, card))
        return false;
    QStringList names;
    for (int field = 0; field < ContactDetails::kNameCount; ++field)
        names.append(text(*m_person, field));
    // The item model has no place of its own for it.
    const QString middleSpoken = text(*m_person, ContactDetails::kFieldCount);
    if (!middleSpoken.isEmpty()) {
        QString &given = names[ContactDetails::GivenNameYomi];
        given = given.isEmpty() ? middleSpoken : given + u' ' + middleSpoken;
    }
    // The parts of a name are those of one card.
    bool isNamed = false;
    for (int field = 0; field < ContactDetails::kNameCount; ++field)
        isNamed = isNamed || !details.field(field).isEmpty();
    for (int field = 0; field < ContactDetails::kNameCount && !isNamed; ++field)
        details.field(field) = names.at(field);
    for (int field = ContactDetails::kNameCount; field < ContactDetails::kFieldCount; ++field) {
        if (!details.field(field).isEmpty())
            continue;
        const QString stored = text(*m_person, field);
        if (field == ContactDetails::Birthday)
            addBirthday(stored, details);
        else
            details.field(field) = stored;
    }
    m_person->reset();
    return true;
}

void ContactReader::addBirthday(const QString &stored, ContactDetails &details)
{
    const QString day = ContactWords::day(stored);
    if (day.isEmpty() && !stored.isEmpty())
        leaveOut(tr("The birthday “%1” is no date.").arg(stored.left(40)));
    details.field(ContactDetails::Birthday) = day;
}

void ContactReader::readValues(qint64 card, bool isFirst, ContactDetails &details)
{
    const auto [first, last] = m_book.values(card);
    for (auto value = first; value != last && m_value; ++value) {
        if (!step(*m_value, value->row)) {
            leaveOut(tr("An entry could not be read."));
            continue;
        }
        addValue(*value, isFirst, details);
        m_value->reset();
    }
}

void ContactReader::addValue(const AddressBook::Value &value, bool isFirst, ContactDetails &details)
{
    const QString label = ContactWords::label(m_labels.value(m_value->integer(0)));
    QString text = this->text(*m_value, 1);
    QMap<QString, QString> parts = readParts(value);
    const QString onlyPart = ContactWords::partOfPlainValue(value.kind);
    if (parts.isEmpty() && !text.isEmpty() && !onlyPart.isEmpty())
        parts.insert(onlyPart, text);
    if (parts.isEmpty() && value.kind == ContactKind::kDate && !text.isEmpty()) {
        const QString day = ContactWords::day(text);
        if (day.isEmpty())
            leaveOut(tr("“%1” is no date.").arg(text.left(40)));
        text = day;
    }
    if ((parts.isEmpty() && text.isEmpty()) || !isNew(value.kind, text, parts, isFirst)
        || ++m_valueCounts[value.kind] > kMaxOfAKind)
        return;
    if (parts.isEmpty())
        details.addProperty(value.kind, label, text);
    else
        details.addProperty(value.kind, label, parts);
}

QMap<QString, QString> ContactReader::readParts(const AddressBook::Value &value)
{
    QMap<QString, QString> parts;
    auto at = std::lower_bound(m_partRows.cbegin(),
                               m_partRows.cend(),
                               std::pair(value.row, std::numeric_limits<qint64>::min()));
    for (; at != m_partRows.cend() && at->first == value.row && m_part; ++at) {
        if (parts.size() >= kMaxOfAKind || !step(*m_part, at->second)) {
            leaveOut(tr("Part of an address or account could not be read."));
            continue;
        }
        const QString stored = m_partKeys.value(m_part->integer(0));
        const QString key = ContactWords::partKey(stored);
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
bool ContactReader::isNew(int kind,
                          const QString &value,
                          const QMap<QString, QString> &parts,
                          bool isFirst)
{
    QString key = QString::number(kind) + u'\n' + value;
    for (auto part = parts.cbegin(); part != parts.cend(); ++part)
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
        m_source.addProblem({ kContacts,
                              AddressBook::place(),
                              tr("It is damaged: %1.").arg(statement.error()) + u' '
                                  + tr("Contacts may be missing."),
                              true });
        return false;
    case Statement::Step::Done:
        break;
    }
    return false;
}

void ContactReader::leaveOut(const QString &what)
{
    if (!m_leftOut.contains(what) && m_leftOut.size() < 5)
        m_leftOut.append(what);
}

void ContactReader::tellWhatIsLeftOut(const AddressBook::Person &person)
{
    for (const auto &[kind, count] : m_valueCounts) {
        if (count > kMaxOfAKind)
            leaveOut(
                tr("Of %1 entries of one kind only %2 are exported.").arg(count).arg(kMaxOfAKind));
    }
    if (m_isCut)
        leaveOut(tr("A text is too long; its end is left out."));
    if (m_leftOut.isEmpty())
        return;
    m_source.addProblem({ kContacts, person.nameForReport(), m_leftOut.join(u' '), true });
}

} // namespace PhoneBackup
