#include "sample/WhatsappDatabase.h"

#include "sample/NoteRecord.h"
#include "sample/People.h"
#include "sample/SampleDates.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr char kTables[] =
    "CREATE TABLE ZWACHATSESSION (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
    "ZARCHIVED INTEGER, ZCONTACTABID INTEGER, ZFLAGS INTEGER, ZHIDDEN INTEGER, "
    "ZIDENTITYVERIFICATIONEPOCH INTEGER, ZIDENTITYVERIFICATIONSTATE INTEGER, ZMESSAGECOUNTER "
    "INTEGER, ZREMOVED INTEGER, ZSESSIONTYPE INTEGER, ZSPOTLIGHTSTATUS INTEGER, ZUNREADCOUNT "
    "INTEGER, ZGROUPINFO INTEGER, ZLASTMESSAGE INTEGER, ZPROPERTIES INTEGER, ZLASTMESSAGEDATE "
    "TIMESTAMP, ZLOCATIONSHARINGENDDATE TIMESTAMP, ZCONTACTIDENTIFIER VARCHAR, ZCONTACTJID "
    "VARCHAR, ZETAG VARCHAR, ZLASTMESSAGETEXT VARCHAR, ZPARTNERNAME VARCHAR, ZSAVEDINPUT "
    "VARCHAR);"
    "CREATE TABLE ZWAMESSAGE (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
    "ZCHILDMESSAGESDELIVEREDCOUNT INTEGER, ZCHILDMESSAGESPLAYEDCOUNT INTEGER, "
    "ZCHILDMESSAGESREADCOUNT INTEGER, ZDATAITEMVERSION INTEGER, ZDOCID INTEGER, "
    "ZENCRETRYCOUNT INTEGER, ZFILTEREDRECIPIENTCOUNT INTEGER, ZFLAGS INTEGER, ZGROUPEVENTTYPE "
    "INTEGER, ZISFROMME INTEGER, ZMESSAGEERRORSTATUS INTEGER, ZMESSAGESTATUS INTEGER, "
    "ZMESSAGETYPE INTEGER, ZSORT INTEGER, ZSPOTLIGHTSTATUS INTEGER, ZSTARRED INTEGER, "
    "ZCHATSESSION INTEGER, ZGROUPMEMBER INTEGER, ZLASTSESSION INTEGER, ZMEDIAITEM INTEGER, "
    "ZMESSAGEINFO INTEGER, ZPARENTMESSAGE INTEGER, ZMESSAGEDATE TIMESTAMP, ZSENTDATE "
    "TIMESTAMP, ZFROMJID VARCHAR, ZMEDIASECTIONID VARCHAR, ZPHASH VARCHAR, ZPUSHNAME VARCHAR, "
    "ZSTANZAID VARCHAR, ZTEXT VARCHAR, ZTOJID VARCHAR);"
    "CREATE TABLE ZWAMEDIAITEM (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
    "ZCLOUDSTATUS INTEGER, ZFILESIZE INTEGER, ZMEDIAORIGIN INTEGER, ZMOVIEDURATION INTEGER, "
    "ZMESSAGE INTEGER, ZASPECTRATIO FLOAT, ZHACCURACY FLOAT, ZLATITUDE FLOAT, ZLONGITUDE "
    "FLOAT, ZMEDIAURLDATE TIMESTAMP, ZAUTHORNAME VARCHAR, ZCOLLECTIONNAME VARCHAR, "
    "ZMEDIALOCALPATH VARCHAR, ZMEDIAURL VARCHAR, ZTHUMBNAILLOCALPATH VARCHAR, ZTITLE VARCHAR, "
    "ZVCARDNAME VARCHAR, ZVCARDSTRING VARCHAR, ZXMPPTHUMBPATH VARCHAR, ZMEDIAKEY BLOB, "
    "ZMETADATA BLOB);"
    "CREATE TABLE ZWAGROUPMEMBER (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
    "ZCONTACTABID INTEGER, ZISACTIVE INTEGER, ZISADMIN INTEGER, ZSENDERKEYSENT INTEGER, "
    "ZCHATSESSION INTEGER, ZRECENTGROUPCHAT INTEGER, ZCONTACTIDENTIFIER VARCHAR, ZCONTACTNAME "
    "VARCHAR, ZFIRSTNAME VARCHAR, ZMEMBERJID VARCHAR);"
    "CREATE TABLE ZWAGROUPINFO (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
    "ZSTATE INTEGER, ZCHATSESSION INTEGER, ZLASTMESSAGEOWNER INTEGER, ZCREATIONDATE "
    "TIMESTAMP, ZSUBJECTTIMESTAMP TIMESTAMP, ZCREATORJID VARCHAR, ZOWNERJID VARCHAR, "
    "ZPICTUREID VARCHAR, ZPICTUREPATH VARCHAR, ZSOURCEJID VARCHAR, ZSUBJECTOWNERJID VARCHAR);"
    "CREATE TABLE ZWAPROFILEPUSHNAME (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
    "ZJID VARCHAR, ZPUSHNAME VARCHAR);"
    "CREATE TABLE ZWAPROFILEPICTUREITEM (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT "
    "INTEGER, ZREQUESTDATE TIMESTAMP, ZJID VARCHAR, ZPATH VARCHAR, ZPICTUREID VARCHAR);"
    "CREATE TABLE ZWAMESSAGEINFO (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
    "ZMESSAGE INTEGER, ZRECEIPTINFO BLOB);"
    "CREATE TABLE ZWAMESSAGEDATAITEM (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
    "ZINDEX INTEGER, ZOWNSTHUMBNAIL INTEGER, ZTYPE INTEGER, ZMESSAGE INTEGER, ZDATE "
    "TIMESTAMP, ZCHATJID VARCHAR, ZCONTENT1 VARCHAR, ZCONTENT2 VARCHAR, ZMATCHEDTEXT VARCHAR, "
    "ZSECTIONID VARCHAR, ZSENDERJID VARCHAR, ZSUMMARY VARCHAR, ZTHUMBNAILPATH VARCHAR, ZTITLE "
    "VARCHAR);"
    "CREATE TABLE ZWAVCARDMENTION (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
    "ZISFROMME INTEGER, ZTRUSTEDWHENINDEXED INTEGER, ZMEDIAITEM INTEGER, ZDATE TIMESTAMP, "
    "ZSENDERJID VARCHAR, ZWHATSAPPID VARCHAR);"
    "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, "
    "Z_MAX INTEGER);"
    "CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), Z_PLIST "
    "BLOB);"
    "INSERT INTO Z_PRIMARYKEY VALUES "
    "(1,'WABlackListItem',0,0),(2,'WAChatProperties',0,0),(3,'WAChatPushConfig',0,0), (4,'WAC "
    "hatSession',0,2),(5,'WAGroupInfo',0,1),(6,'WAGroupMember',0,2),(7,'WAGroupMembersChange' "
    ",0,0), (8,'WAMediaItem',0,2),(9,'WAMessage',0,4),(10,'WAMessageDataItem',0,0),(11,'WAMes "
    "sageInfo',0,0), (12,'WAProfilePictureItem',0,0),(13,'WAProfilePushName',0,1);";

QVariant orNull(const QString &text)
{
    return text.isNull() ? QVariant() : QVariant(text);
}

QVariant orNull(qint64 row)
{
    return row == 0 ? QVariant() : QVariant(row);
}

QString networkId(qint64 message)
{
    return u"3A%1"_s.arg(message, 18, 16, QLatin1Char('0')).toUpper();
}

bool isGroup(const QString &jid)
{
    return jid.endsWith("@g.us"_L1);
}

} // namespace

QByteArray whatsappTables()
{
    return kTables;
}

WhatsappDatabase::WhatsappDatabase(const QString &path)
    : m_database(path, kTables)
    , m_insertMessage(m_database.prepare(
          "INSERT INTO ZWAMESSAGE(Z_PK,Z_ENT,Z_OPT,ZFLAGS,ZCHATSESSION,ZSORT,ZMESSAGEDATE,"
          "ZSENTDATE,ZTEXT,ZMESSAGETYPE,ZGROUPEVENTTYPE,ZISFROMME,ZMESSAGESTATUS,"
          "ZMESSAGEERRORSTATUS,ZGROUPMEMBER,ZMEDIAITEM,ZPARENTMESSAGE,ZSTANZAID,ZFROMJID,ZTOJID) "
          "VALUES (?,9,1,16777216,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"))
    , m_insertMedia(m_database.prepare(
          "INSERT INTO ZWAMEDIAITEM(Z_PK,Z_ENT,Z_OPT,ZMESSAGE,ZMEDIALOCALPATH,ZTITLE,ZLATITUDE,"
          "ZLONGITUDE,ZVCARDNAME,ZVCARDSTRING,ZXMPPTHUMBPATH,ZMETADATA) "
          "VALUES (?,8,1,NULL,?,?,?,?,?,?,?,?)"))
{
}

qint64 WhatsappDatabase::addChat(const WhatsappChatRow &chat)
{
    m_chats.append({ chat.jid, 0, {} });
    const qint64 row = m_chats.size();
    Statement insert = m_database.prepare(
        "INSERT INTO ZWACHATSESSION(Z_PK,Z_ENT,Z_OPT,ZREMOVED,ZARCHIVED,ZHIDDEN,ZSESSIONTYPE,"
        "ZGROUPINFO,ZCONTACTJID,ZPARTNERNAME) VALUES (?,4,1,?,?,0,?,?,?,?)");
    const int type = isGroup(chat.jid) ? 1 : chat.jid.endsWith("@broadcast"_L1) ? 2 : 0;
    insert.run({ row,
                 chat.isRemoved,
                 chat.isArchived,
                 type,
                 isGroup(chat.jid) ? QVariant(row) : QVariant(),
                 chat.jid,
                 orNull(chat.name) });
    if (isGroup(chat.jid)) {
        m_database
            .prepare("INSERT INTO ZWAGROUPINFO(Z_PK,Z_ENT,Z_OPT,ZCHATSESSION,ZCREATORJID,"
                     "ZCREATIONDATE) VALUES (?,5,1,?,?,?)")
            .run({ row,
                   row,
                   orNull(chat.creator),
                   chat.created.isValid() ? QVariant(cocoaSeconds(chat.created)) : QVariant() });
    }
    return row;
}

qint64 WhatsappDatabase::addMember(qint64 chat, const QString &jid)
{
    m_database
        .prepare("INSERT INTO ZWAGROUPMEMBER(Z_PK,Z_ENT,Z_OPT,ZISACTIVE,ZCHATSESSION,ZMEMBERJID) "
                 "VALUES (?,6,1,1,?,?)")
        .run({ ++m_members, chat, jid });
    return m_members;
}

void WhatsappDatabase::addChosenName(const QString &jid, const QString &name)
{
    m_database.prepare("INSERT INTO ZWAPROFILEPUSHNAME VALUES (?,13,1,?,?)")
        .run({ ++m_names, jid, name });
}

qint64 WhatsappDatabase::addMedia(const WhatsappMediaRow &media)
{
    m_insertMedia.run({ ++m_media,
                        orNull(media.path),
                        orNull(media.title),
                        media.latitude,
                        media.longitude,
                        orNull(media.cardName),
                        orNull(media.cardText),
                        orNull(media.preview),
                        media.metadata.isEmpty() ? QVariant() : QVariant(media.metadata) });
    return m_media;
}

qint64 WhatsappDatabase::addMessage(const WhatsappRow &message)
{
    Chat &chat = m_chats[message.chat - 1];
    chat.last = message.date;
    const double date = cocoaSeconds(message.date);
    const bool isEvent = message.type == 6 || message.type == 10;
    m_values.clear();
    m_values = { ++m_messages,
                 message.chat,
                 ++chat.messages,
                 date,
                 isEvent ? QVariant() : QVariant(date + 1),
                 orNull(message.text),
                 message.type,
                 // Ordinary messages that came in carry this one, too.
                 isEvent || message.fromMe ? message.eventCode : 2,
                 message.fromMe,
                 isEvent ? 0 : message.status,
                 message.error,
                 orNull(message.member),
                 orNull(message.media),
                 orNull(message.parent),
                 networkId(m_messages),
                 message.fromMe ? QVariant() : QVariant(chat.jid),
                 message.fromMe ? QVariant(chat.jid)
                     : isEvent && isGroup(chat.jid)
                     ? QVariant(ownersNumber().sliced(1) + "@s.whatsapp.net"_L1)
                     : QVariant() };
    m_insertMessage.run(m_values);
    if (message.media != 0) {
        m_database.prepare("UPDATE ZWAMEDIAITEM SET ZMESSAGE = ? WHERE Z_PK = ?")
            .run({ m_messages, message.media });
    }
    return m_messages;
}

void WhatsappDatabase::addReaction(qint64 message,
                                   const QString &jid,
                                   const QString &emoji,
                                   const QDateTime &date)
{
    const bool isOwners = jid.isEmpty();
    FieldWriter reaction;
    reaction.text(1, networkId(message).replace(u'A', u'B'));
    if (!isOwners)
        reaction.text(2, jid);
    reaction.text(isOwners ? 2 : 3, emoji);
    reaction.number(isOwners ? 3 : 4, quint64(date.toMSecsSinceEpoch()));
    const QByteArray all = FieldWriter().bytes(isOwners ? 2 : 1, reaction.message()).message();
    addInfo(message, FieldWriter().number(4, 2).bytes(7, all).message());
}

void WhatsappDatabase::addOptions(qint64 message, const QStringList &options)
{
    FieldWriter poll;
    for (const QString &option : options)
        poll.bytes(3, FieldWriter().text(1, option).message());
    addInfo(message, FieldWriter().number(4, 2).bytes(8, poll.message()).message());
}

void WhatsappDatabase::addInfo(qint64 message, const QByteArray &info)
{
    m_database.prepare("INSERT INTO ZWAMESSAGEINFO VALUES (?,11,1,?,?)")
        .run({ ++m_infos, message, info });
    m_database.prepare("UPDATE ZWAMESSAGE SET ZMESSAGEINFO = ? WHERE Z_PK = ?")
        .run({ m_infos, message });
}

QByteArray WhatsappDatabase::quoteOf(qint64 message, const QString &jid, const QString &text)
{
    return FieldWriter()
        .text(5, networkId(message))
        .text(6, jid)
        .bytes(19, FieldWriter().text(1, text).message())
        .message();
}

bool WhatsappDatabase::finish()
{
    Statement update = m_database.prepare(
        "UPDATE ZWACHATSESSION SET ZMESSAGECOUNTER = ?, ZLASTMESSAGEDATE = ? WHERE Z_PK = ?");
    for (qsizetype i = 0; i < m_chats.size(); ++i) {
        const Chat &chat = m_chats[i];
        update.run({ chat.messages,
                     chat.last.isValid() ? QVariant(cocoaSeconds(chat.last)) : QVariant(),
                     i + 1 });
    }
    return m_database.finish();
}

} // namespace Sample
