#include "sample/AddressBookSample.h"

#include "sample/BackupWriter.h"
#include "sample/Database.h"

#include <QUuid>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

// The phone's own default of a guid is a function that only the phone has.
constexpr const char *kTables = R"(
CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));
CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, First TEXT, Last TEXT, Middle TEXT,
  FirstPhonetic TEXT, MiddlePhonetic TEXT, LastPhonetic TEXT, Organization TEXT, Department TEXT, Note TEXT,
  Kind INTEGER, Birthday TEXT, JobTitle TEXT, Nickname TEXT, Prefix TEXT, Suffix TEXT, FirstSort TEXT, LastSort TEXT,
  CreationDate INTEGER, ModificationDate INTEGER, CompositeNameFallback TEXT, ExternalIdentifier TEXT,
  ExternalModificationTag TEXT, ExternalUUID TEXT, StoreID INTEGER, DisplayName TEXT, ExternalRepresentation BLOB,
  FirstSortSection TEXT, LastSortSection TEXT, FirstSortLanguageIndex INTEGER DEFAULT 2147483647,
  LastSortLanguageIndex INTEGER DEFAULT 2147483647, PersonLink INTEGER DEFAULT -1, ImageURI TEXT,
  IsPreferredName INTEGER DEFAULT 1, guid TEXT NOT NULL, PhonemeData TEXT,
  AlternateBirthday TEXT, MapsData TEXT, FirstPronunciation TEXT, MiddlePronunciation TEXT, LastPronunciation TEXT,
  OrganizationPhonetic TEXT, OrganizationPronunciation TEXT, PreviousFamilyName TEXT, PreferredLikenessSource TEXT,
  PreferredPersonaIdentifier TEXT, PreferredChannel TEXT, DowntimeWhitelist TEXT, ImageType TEXT, ImageHash BLOB,
  MemojiMetadata BLOB, UNIQUE(guid));
CREATE TABLE ABMultiValue (UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER, identifier INTEGER,
  label INTEGER, value TEXT, guid TEXT NOT NULL, UNIQUE(guid));
CREATE TABLE ABMultiValueLabel (value TEXT, UNIQUE(value));
CREATE TABLE ABMultiValueEntry (parent_id INTEGER, key INTEGER, value TEXT, UNIQUE(parent_id, key));
CREATE TABLE ABMultiValueEntryKey (value TEXT, UNIQUE(value));
CREATE TABLE ABPhoneLastFour (multivalue_id INTEGER PRIMARY KEY, value TEXT);
CREATE TABLE ABStore (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT, Type INTEGER,
  ConstraintsPath TEXT, ExternalModificationTag TEXT, ExternalSyncTag TEXT, StoreInternalIdentifier TEXT,
  AccountID INTEGER DEFAULT -1, Enabled INTEGER DEFAULT 1, SyncData BLOB, MeIdentifier INTEGER DEFAULT -1,
  Capabilities INTEGER DEFAULT 0, guid TEXT NOT NULL, LastSyncDate TEXT,
  UNIQUE(StoreInternalIdentifier), UNIQUE(guid));
CREATE TABLE ABAccount (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, AccountIdentifier TEXT, Flags INTEGER,
  DefaultSourceID INTEGER, guid TEXT NOT NULL, UNIQUE(guid));
CREATE TABLE ABGroup (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT, StoreID INTEGER,
  ExternalModificationTag TEXT, ExternalRepresentation BLOB, ExternalUUID TEXT,
  guid TEXT NOT NULL, UNIQUE(guid));
CREATE TABLE ABGroupMembers (UID INTEGER PRIMARY KEY, group_id INTEGER, member_type INTEGER, member_id INTEGER,
  UNIQUE(group_id, member_type, member_id));
CREATE TABLE ABPersonLink (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, PreferredImagePersonID INTEGER DEFAULT -1,
  PreferredNamePersonID INTEGER DEFAULT -1, guid TEXT NOT NULL, UNIQUE(guid));
CREATE INDEX ABMultiValueEntry_parent_id_index ON ABMultiValueEntry(parent_id);
INSERT INTO _SqliteDatabaseProperties VALUES ('_ClientVersion', '84');
INSERT INTO ABMultiValueLabel(rowid, value) VALUES (1,'_$!<Mobile>!$_'),(2,'_$!<Home>!$_'),(4,'Boat');
INSERT INTO ABStore(ROWID,Type,StoreInternalIdentifier,guid) VALUES (0,0,'local','3C1E7B52-0D4F-4E8A-9B6C-7D8E9F0A1B2C');
)";

constexpr int kPhone = 3;
constexpr int kEmail = 4;
constexpr int kMobile = 1;
constexpr int kHome = 2;
constexpr int kOrganization = 1;

// Two address books with the same people are the same, byte by byte.
QString guid(const char *table, qint64 row)
{
    const QUuid space(u"6f0c9a52-58b4-4a0e-9d0b-0f6a5e1f7c31"_s);
    return QUuid::createUuidV5(space, QString::fromLatin1(table) + QString::number(row))
        .toString(QUuid::WithoutBraces)
        .toUpper();
}

QVariant orNull(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

} // namespace

void addAddressBook(BackupWriter &writer, const QList<Person> &contacts)
{
    Database database(QString(), kTables);
    Statement insertPerson = database.prepare(
        "INSERT INTO ABPerson(ROWID,First,Last,Organization,Kind,CreationDate,ModificationDate,"
        "StoreID,guid) VALUES (?,?,?,?,?,700000000,700000000,0,?)");
    Statement insertValue = database.prepare(
        "INSERT INTO ABMultiValue(UID,record_id,property,identifier,label,value,guid) "
        "VALUES (?,?,?,0,?,?,?)");
    qint64 values = 0;
    for (qsizetype i = 0; i < contacts.size(); ++i) {
        const Person &contact = contacts[i];
        const qint64 row = i + 1;
        insertPerson.run({ row,
                           orNull(contact.first),
                           orNull(contact.last),
                           orNull(contact.organization),
                           contact.first.isEmpty() ? kOrganization : 0,
                           guid("person", row) });
        const auto addValue = [&](int property, int label, const QString &value) {
            if (value.isEmpty())
                return;
            ++values;
            insertValue.run({ values, row, property, label, value, guid("value", values) });
        };
        addValue(kPhone, kMobile, contact.numberAsTyped);
        addValue(kEmail, kHome, contact.email);
    }
    writer.addFile(
        u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s, database.image());
}

} // namespace Sample
