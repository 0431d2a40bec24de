#include "PhoneBackup/whatsapp/WhatsappNames.h"

#include "PhoneBackup/packed/FieldReader.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/Table.h"
#include "PhoneBackup/whatsapp/WhatsappDatabase.h"

#include <algorithm>
#include <array>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// "+49 30 …", "4930…" or an identifier: what a column holds as somebody's number.
QString numberIn(const QString &text)
{
    const Jid jid(text);
    if (!jid.number().isEmpty())
        return jid.number();
    if (text.contains(u'@'))
        return {};
    QString digits;
    for (const QChar c : text) {
        if (c >= u'0' && c <= u'9')
            digits.append(c);
    }
    return digits.isEmpty() ? QString() : u'+' + digits;
}

// A person's identifier that may lack what follows its digits.
QString keyIn(const QString &text)
{
    return Jid(text.contains(u'@') ? text : text + "@s.whatsapp.net"_L1).key();
}

} // namespace

// Where a database says which number is behind which private identifier.
struct WhatsappNames::NumberColumns
{
    QString table;
    QString privateId;
    QString number;
    QString order; // the highest counts; may be empty
};

WhatsappNames::WhatsappNames(Source &source,
                             const WhatsappHome &home,
                             WhatsappDatabase *chats,
                             int dataType)
    : m_addressBook(source.addressBook())
{
    const Notice loss("source.peopleMayBeMissing");
    const auto open = [&](const QString &name) {
        return WhatsappDatabase::open(source, home, name, loss, dataType);
    };
    const auto numbers = open(u"LID.sqlite"_s);
    const auto contacts = open(u"ContactsV2.sqlite"_s);
    const auto oldContacts = open(u"Contacts.sqlite"_s);
    QList<RowDatabase *> databases { numbers.get(), chats, contacts.get(), oldContacts.get() };
    databases.removeAll(nullptr);
    readNumbers(databases);
    for (RowDatabase *database :
         QList<RowDatabase *> { numbers.get(), contacts.get(), oldContacts.get(), chats }) {
        if (database)
            readContacts(*database);
    }
    if (chats)
        readChosenNames(*chats);
}

void WhatsappNames::readNumbers(const QList<RowDatabase *> &databases)
{
    // What comes first counts; within a table that is the newest row.
    const std::array tables {
        NumberColumns { u"ZWAPHONENUMBERLIDPAIR"_s, u"ZLID"_s, u"ZPHONENUMBER"_s, u"ZTIMESTAMP"_s },
        NumberColumns { u"ZWAZACCOUNT"_s, u"ZIDENTIFIER"_s, u"ZPHONENUMBER"_s, {} },
        NumberColumns { u"ZWAADDRESSBOOKCONTACT"_s, u"ZLID"_s, u"ZWHATSAPPID"_s, {} },
        NumberColumns { u"ZWAADDRESSBOOKCONTACT"_s, u"ZLID"_s, u"ZPHONENUMBER"_s, {} },
    };
    for (const NumberColumns &columns : tables) {
        for (RowDatabase *database : databases)
            readNumbers(*database, columns);
    }
}

void WhatsappNames::readNumbers(RowDatabase &database, const NumberColumns &columns)
{
    if (!database.hasColumn(columns.table, columns.privateId)
        || !database.hasColumn(columns.table, columns.number))
        return;
    QHash<QString, std::pair<double, QString>> newest;
    Table table(database, columns.table);
    const auto [id, phone, order] = table.columns(columns.privateId, columns.number, columns.order);
    table.forEach([&, id = id, phone = phone, order = order](const Table::Row &row) {
        const QString user = Jid(row.text(id)).user();
        const QString number = numberIn(row.text(phone));
        const double when = row.number(order).value_or(0);
        if (user.isEmpty() || number.isEmpty())
            return;
        const auto known = newest.constFind(user);
        if (known == newest.constEnd() || when >= known->first)
            newest.insert(user, { when, number });
    });
    for (auto it = newest.cbegin(); it != newest.cend(); ++it) {
        if (!m_numbers.contains(it.key()))
            m_numbers.insert(it.key(), it->second);
    }
}

void WhatsappNames::readContacts(RowDatabase &database)
{
    for (const QString &tableName :
         { u"ZWAADDRESSBOOKCONTACT"_s, u"ZWASTATUS"_s, u"ZWAFAVORITE"_s, u"ZWACONTACT"_s }) {
        Table table(database, tableName);
        QString nameColumn;
        for (const QString &column :
             { u"ZFULLNAME"_s, u"ZDISPLAYNAME"_s, u"ZCONTACTNAME"_s, u"ZBUSINESSNAME"_s }) {
            if (nameColumn.isEmpty() && table.hasColumn(column))
                nameColumn = column;
        }
        if (nameColumn.isEmpty() || !table.hasColumn(u"ZWHATSAPPID"_s))
            continue;
        const auto [phoneId, fullName, otherId] =
            table.columns(u"ZWHATSAPPID"_s, nameColumn, u"ZLID"_s);
        table.forEach([this, phoneId = phoneId, fullName = fullName, otherId = otherId](
                          const Table::Row &row) {
            const QString name = cleaned(row.text(fullName));
            if (name.isEmpty())
                return;
            const QString id = row.text(phoneId).trimmed();
            if (!id.isEmpty() && !m_contacts.contains(keyIn(id)))
                m_contacts.insert(keyIn(id), name);
            const QString privateId = Jid(row.text(otherId)).user();
            if (!privateId.isEmpty())
                m_contacts.insert(privateId + "@lid"_L1, name);
        });
    }
}

void WhatsappNames::readChosenNames(RowDatabase &database)
{
    Table table(database, u"ZWAPROFILEPUSHNAME"_s);
    const auto [jid, chosen] = table.columns(u"ZJID"_s, u"ZPUSHNAME"_s);
    table.forEach([this, jid = jid, chosen = chosen](const Table::Row &row) {
        const QString name = cleaned(row.text(chosen));
        if (!name.isEmpty())
            m_chosen.insert(Jid(row.text(jid)).key(), name);
    });
}

QString WhatsappNames::number(const Jid &jid) const
{
    return jid.kind() == Jid::Kind::PrivateId ? m_numbers.value(jid.user()) : jid.number();
}

QString WhatsappNames::name(const Jid &jid, const QString &known) const
{
    if (jid.kind() == Jid::Kind::App)
        return u"WhatsApp"_s;
    const QString digits = number(jid);
    const QString key = digits.isEmpty() ? QString() : keyIn(digits.sliced(1));
    for (const QString &name : { digits.isEmpty() ? QString() : m_addressBook.name(digits),
                                 m_contacts.value(jid.key()),
                                 m_contacts.value(key),
                                 known,
                                 m_chosen.value(jid.key()),
                                 m_chosen.value(key) }) {
        if (!name.isEmpty())
            return cleaned(name);
    }
    return {};
}

QString WhatsappNames::key(const Jid &jid) const
{
    const QString known = number(jid);
    return known.isEmpty() ? jid.key() : known;
}

void WhatsappNames::addOwner(const Jid &jid)
{
    m_owner.insert(key(jid));
}

bool WhatsappNames::isOwner(const Jid &jid) const
{
    return jid.isPerson() && m_owner.contains(key(jid));
}

WhatsappPerson WhatsappNames::person(const Jid &jid, const QString &known) const
{
    using Who = WhatsappPerson::Who;
    return { isOwner(jid) ? Who::Owner : Who::Other, jid, name(jid, known), number(jid) };
}

void WhatsappNames::learn(const Jid &jid, const Jid &phone)
{
    if (jid.kind() == Jid::Kind::PrivateId && !phone.number().isEmpty()
        && !m_numbers.contains(jid.user()))
        m_numbers.insert(jid.user(), phone.number());
}

QString WhatsappNames::cleaned(const QString &name)
{
    const auto steersDirection = [](QChar c) {
        return c == QChar(0x200E) || c == QChar(0x200F) || c == QChar(0x2068) || c == QChar(0x2069)
            || (c >= QChar(0x202A) && c <= QChar(0x202E));
    };
    QString text = StoredText::cleaned(name);
    text.removeIf(steersDirection);
    return text.simplified();
}

QString WhatsappNames::chosen(const QString &pushName)
{
    const auto bytes =
        QByteArray::fromBase64Encoding(pushName.toUtf8(), QByteArray::AbortOnBase64DecodingErrors);
    const bool isEncoded = bytes && FieldReader::isComplete(*bytes);
    return isEncoded ? QString() : cleaned(pushName);
}

} // namespace PhoneBackup
