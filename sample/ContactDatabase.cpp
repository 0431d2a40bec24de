#include "sample/ContactDatabase.h"

#include "sample/BackupWriter.h"

#include <QUuid>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

// The phone's own default of a guid is a function that only the phone has.
constexpr const char *kBookTables = R"(
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
INSERT INTO ABStore(ROWID,Type,StoreInternalIdentifier,guid) VALUES (0,0,'local','3C1E7B52-0D4F-4E8A-9B6C-7D8E9F0A1B2C');
INSERT INTO ABStore(ROWID,Name,Type,StoreInternalIdentifier,AccountID,guid) VALUES (1,'Card',4,'4D2F8C63-1E50-4F9B-8C7D-8E9F0A1B2C3D',1,'5E3A9D74-2F61-4A0C-9D8E-9F0A1B2C3D4E');
)";

constexpr const char *kImageTables = R"(
CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));
CREATE TABLE ABThumbnailImage (ROWID INTEGER PRIMARY KEY, record_id INTEGER, format INTEGER,
  derived_from_format INTEGER, data BLOB);
CREATE TABLE ABFullSizeImage (ROWID INTEGER PRIMARY KEY, record_id INTEGER, crop_x INTEGER, crop_y INTEGER,
  crop_width INTEGER, data BLOB);
CREATE UNIQUE INDEX ABImageRecordIDFormatIndex ON ABThumbnailImage(record_id, format);
CREATE UNIQUE INDEX ABFullSizeImageRecordIDIndex ON ABFullSizeImage(record_id);
)";

const QString &domain()
{
    static const QString name = u"HomeDomain"_s;
    return name;
}

const QString &bookPath()
{
    static const QString path = u"Library/AddressBook/AddressBook.sqlitedb"_s;
    return path;
}

const QString &imagesPath()
{
    static const QString path = u"Library/AddressBook/AddressBookImages.sqlitedb"_s;
    return path;
}

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

ContactDatabase::ContactDatabase(BackupWriter &writer)
    : m_writer(writer)
    , m_book(writer.contentPath(domain(), bookPath()), kBookTables)
    , m_images(writer.contentPath(domain(), imagesPath()), kImageTables)
    , m_insertCard(m_book.prepare(
          "INSERT INTO ABPerson(ROWID,Prefix,First,Middle,Last,Suffix,FirstPhonetic,"
          "MiddlePhonetic,LastPhonetic,Nickname,Organization,Department,JobTitle,Birthday,Note,"
          "Kind,StoreID,CreationDate,ModificationDate,guid) "
          "VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,700000000,700000000,?)"))
    , m_insertValue(m_book.prepare(
          "INSERT INTO ABMultiValue(UID,record_id,property,identifier,label,value,guid) "
          "VALUES (?,?,?,?,?,?,?)"))
    , m_insertLabel(m_book.prepare("INSERT INTO ABMultiValueLabel(rowid,value) VALUES (?,?)"))
    , m_insertKey(m_book.prepare("INSERT INTO ABMultiValueEntryKey(rowid,value) VALUES (?,?)"))
    , m_insertPart(m_book.prepare("INSERT INTO ABMultiValueEntry VALUES (?,?,?)"))
    , m_insertWhole(m_images.prepare("INSERT INTO ABFullSizeImage(record_id,crop_x,crop_y,"
                                     "crop_width,data) VALUES (?,0,0,320,?)"))
    , m_insertThumbnail(m_images.prepare("INSERT INTO ABThumbnailImage(record_id,format,"
                                         "derived_from_format,data) VALUES (?,?,2,?)"))
{
}

qint64 ContactDatabase::addCard(const Card &card)
{
    ++m_cards;
    QList<QVariant> row { m_cards };
    for (const QString &text : { card.prefix,
                                 card.first,
                                 card.middle,
                                 card.last,
                                 card.suffix,
                                 card.firstSpoken,
                                 card.middleSpoken,
                                 card.lastSpoken,
                                 card.nickname,
                                 card.organization,
                                 card.department,
                                 card.jobTitle,
                                 card.birthday,
                                 card.note })
        row.append(orNull(text));
    row.append({ card.isOrganization ? 1 : 0, card.store, guid("person", m_cards) });
    m_insertCard.run(row);
    return m_cards;
}

void ContactDatabase::addValue(qint64 card, int kind, const QString &label, const QString &value)
{
    insertValue(card, kind, label, value);
}

void ContactDatabase::addParts(qint64 card, int kind, const QString &label, const Parts &parts)
{
    const qint64 value = insertValue(card, kind, label, {});
    for (const auto &[key, text] : parts)
        m_insertPart.run({ value, number(m_keys, m_insertKey, key), text });
}

qint64
ContactDatabase::insertValue(qint64 card, int kind, const QString &label, const QVariant &value)
{
    QVariant labelNumber;
    if (!label.isEmpty()) {
        const QString text = label.startsWith(u'=') ? label.sliced(1) : u"_$!<%1>!$_"_s.arg(label);
        labelNumber = number(m_labels, m_insertLabel, text);
    }
    ++m_values;
    const int place = m_places[{ card, kind }]++;
    m_insertValue.run({ m_values,
                        card,
                        kind,
                        kind == kSound ? -1 - place : place,
                        labelNumber,
                        value,
                        guid("value", m_values) });
    return m_values;
}

// Some numbers are missing, as those of labels that were deleted.
qint64 ContactDatabase::number(QMap<QString, qint64> &known, Statement &insert, const QString &text)
{
    constexpr qint64 kGap = 3;
    qint64 &row = known[text];
    if (row == 0) {
        row = known.size() < kGap ? known.size() : known.size() + 1;
        insert.run({ row, text });
    }
    return row;
}

void ContactDatabase::link(const QList<qint64> &cards, qint64 nameCard, qint64 imageCard)
{
    ++m_links;
    m_book.prepare("INSERT INTO ABPersonLink VALUES (?,?,?,?)")
        .run({ m_links, imageCard, nameCard, guid("link", m_links) });
    Statement update =
        m_book.prepare("UPDATE ABPerson SET PersonLink = ?, IsPreferredName = ? WHERE ROWID = ?");
    for (const qint64 card : cards)
        update.run({ m_links, card == nameCard ? 1 : 0, card });
}

void ContactDatabase::addGroup(const QString &name, const QList<qint64> &cards)
{
    ++m_groups;
    m_book.prepare("INSERT INTO ABGroup(ROWID,Name,StoreID,guid) VALUES (?,?,0,?)")
        .run({ m_groups, name, guid("group", m_groups) });
    Statement insert =
        m_book.prepare("INSERT INTO ABGroupMembers(group_id,member_type,member_id) VALUES (?,0,?)");
    for (const qint64 card : cards)
        insert.run({ m_groups, card });
}

void ContactDatabase::addPhoto(qint64 card,
                               const QByteArray &whole,
                               const QMap<int, QByteArray> &parts)
{
    if (!whole.isEmpty())
        m_insertWhole.run({ card, whole });
    for (auto part = parts.cbegin(); part != parts.cend(); ++part)
        m_insertThumbnail.run({ card, part.key(), part.value() });
}

void ContactDatabase::finish()
{
    if (!m_book.finish())
        m_writer.fail(bookPath(), m_book.error());
    if (!m_images.finish())
        m_writer.fail(imagesPath(), m_images.error());
    m_writer.addWritten(domain(), bookPath());
    m_writer.addWritten(domain(), imagesPath());
}

} // namespace Sample
