#include "PhoneBackup/whatsapp/WhatsappReader.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/whatsapp/WhatsappInfos.h"
#include "PhoneBackup/whatsapp/WhatsappMedia.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"
#include "PhoneBackup/whatsapp/WhatsappPacked.h"

#include <algorithm>
#include <optional>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

using Kind = WhatsappMessage::Kind;
using State = WhatsappMessage::State;

const QString kMessages = u"ZWAMESSAGE"_s;

enum StoredType : qint64 {
    kPicture = 1,
    kGroupEvent = 6,
    kTimerChanged = 28,
    kNotice = 10,
    kOncePicture = 38,
    kOnceVideo = 39,
    kOnceAudio = 53,
    kPrivacyChanged = 73,
};

// ZFLAGS; the count of forwards in the metadata is the other sign.
constexpr qint64 kForwarded = 0x80;

State stateOf(const Table::Row &row, Table::Column status)
{
    if (row.isNull(status))
        return State::Unknown;
    switch (row.integer(status)) {
    case 0:
        return State::Waiting;
    case 1:
        return State::Sent;
    case 6:
        return State::Delivered;
    case 8: // voice messages that were played have no number of their own
        return State::Read;
    case 9:
        return State::NotSent;
    default: // on its way
        return State::Unknown;
    }
}

QString oneOf(const QString &first, const QString &second)
{
    return first.isEmpty() ? second : first;
}

// The columns of every message.
struct MessageRows
{
    explicit MessageRows(RowDatabase &database)
        : table(database, kMessages)
        , type(table.column(u"ZMESSAGETYPE"_s))
        , eventCode(table.column(u"ZGROUPEVENTTYPE"_s))
        , fromMe(table.column(u"ZISFROMME"_s))
        , status(table.column(u"ZMESSAGESTATUS"_s))
        , errorStatus(table.column(u"ZMESSAGEERRORSTATUS"_s))
        , date(table.column(u"ZMESSAGEDATE"_s))
        , phoneDate(table.column(u"ZSENTDATE"_s))
        , starred(table.column(u"ZSTARRED"_s))
        , flags(table.column(u"ZFLAGS"_s))
        , delivered(table.column(u"ZCHILDMESSAGESDELIVEREDCOUNT"_s))
        , read(table.column(u"ZCHILDMESSAGESREADCOUNT"_s))
        , played(table.column(u"ZCHILDMESSAGESPLAYEDCOUNT"_s))
        , text(table.column(u"ZTEXT"_s))
        , member(table.column(u"ZGROUPMEMBER"_s))
        , media(table.column(u"ZMEDIAITEM"_s))
        , parent(table.column(u"ZPARENTMESSAGE"_s))
        , pushName(table.column(u"ZPUSHNAME"_s))
        , fromJid(table.column(u"ZFROMJID"_s))
        , info(table.column(u"ZMESSAGEINFO"_s))
        , id(table.column(u"ZSTANZAID"_s))
        , rows(table.lookup())
    {
    }

    Table table;
    Table::Column type, eventCode, fromMe, status, errorStatus, date, phoneDate, starred, flags,
        delivered, read, played, text, member, media, parent, pushName, fromJid, info, id;
    Table::Lookup rows;
};

// What is asked of a message that has another one for its parent, or of whose file alone.
struct ParentRows
{
    explicit ParentRows(RowDatabase &database)
        : table(database, kMessages)
        , type(table.column(u"ZMESSAGETYPE"_s))
        , date(table.column(u"ZMESSAGEDATE"_s))
        , media(table.column(u"ZMEDIAITEM"_s))
        , parent(table.column(u"ZPARENTMESSAGE"_s))
        , chat(table.column(u"ZCHATSESSION"_s))
        , chatJid(table.expression(
              database.hasColumn(u"ZWACHATSESSION"_s, u"ZCONTACTJID"_s)
                  ? u"(SELECT c.ZCONTACTJID FROM ZWACHATSESSION c WHERE c.ROWID = ZCHATSESSION)"_s
                  : u"NULL"_s))
        , rows(table.lookup())
    {
    }

    Table table;
    Table::Column type, date, media, parent, chat, chatJid;
    Table::Lookup rows;
};

struct MemberRows
{
    explicit MemberRows(RowDatabase &database)
        : table(database, u"ZWAGROUPMEMBER"_s)
        , jid(table.column(u"ZMEMBERJID"_s))
        , contactName(table.column(u"ZCONTACTNAME"_s))
        , firstName(table.column(u"ZFIRSTNAME"_s))
        , rows(table.lookup())
    {
    }

    Table table;
    Table::Column jid, contactName, firstName;
    Table::Lookup rows;
};

struct LinkRows
{
    explicit LinkRows(RowDatabase &database)
        : table(database, u"ZWAMESSAGEDATAITEM"_s)
        , matched(table.column(u"ZMATCHEDTEXT"_s))
        , address(table.column(u"ZCONTENT1"_s))
        , title(table.column(u"ZTITLE"_s))
        , summary(table.column(u"ZSUMMARY"_s))
        , picture(table.column(u"ZTHUMBNAILPATH"_s))
        , rows(table.lookup())
        , ofMessages(database, u"ZWAMESSAGEDATAITEM"_s, u"ZMESSAGE"_s)
    {
    }

    Table table;
    Table::Column matched, address, title, summary, picture;
    Table::Lookup rows;
    RowsOfMessages ofMessages;
};

} // namespace

struct WhatsappReader::Tables
{
    explicit Tables(WhatsappDatabase &database)
        : messages(database)
        , parents(database)
        , members(database)
        , infos(database)
    {
    }

    MessageRows messages;
    ParentRows parents;
    MemberRows members;
    WhatsappInfos infos;
    std::optional<LinkRows> links; // once a message has any
    QHash<qint64, WhatsappPerson> authors; // by the row of the member
    const Table::Row *row = nullptr; // of the message that is being read
};

WhatsappReader::WhatsappReader(Source &source,
                               WhatsappDatabase &database,
                               const WhatsappNames &names,
                               WhatsappMedia &media)
    : m_source(source)
    , m_database(database)
    , m_names(names)
    , m_media(media)
{
}

WhatsappReader::~WhatsappReader() = default;

WhatsappReader::Tables &WhatsappReader::tables()
{
    if (!m_tables)
        m_tables = std::make_unique<Tables>(m_database);
    return *m_tables;
}

bool WhatsappReader::read(const WhatsappChat &chat, const Sink &sink)
{
    Tables &all = tables();
    bool failed = false;
    bool any = false;
    for (const qint64 row : chat.messages) {
        all.row = all.messages.rows.find(row);
        failed = failed || all.messages.rows.hasFailed();
        if (!all.row)
            continue;
        WhatsappMessage message;
        if (!readRow(chat, message))
            continue;
        any = true;
        sink(std::move(message));
    }
    return any || !failed;
}

WhatsappMessage WhatsappReader::file(qint64 row)
{
    ParentRows &rows = tables().parents;
    WhatsappMessage message;
    if (const Table::Row *found = rows.rows.find(row)) {
        message.row = row;
        message.storedType = found->integer(rows.type);
        message.kind = whatsappKind(message.storedType);
        message.date = PhoneTime::since2001(found->number(rows.date));
        m_media.read(found->integer(rows.media), row, message);
    }
    return message;
}

// \return whether it is a message for a person.
bool WhatsappReader::readRow(const WhatsappChat &chat, WhatsappMessage &message)
{
    const MessageRows &columns = m_tables->messages;
    const Table::Row &row = *m_tables->row;
    message.row = row.id();
    message.id = row.bytes(columns.id).toByteArray();
    message.date = PhoneTime::since2001(row.number(columns.date));
    message.phoneDate = PhoneTime::since2001(row.number(columns.phoneDate));
    message.storedType = row.integer(columns.type);
    message.kind = whatsappKind(message.storedType);
    message.isOnce = message.storedType == kOncePicture || message.storedType == kOnceVideo
        || message.storedType == kOnceAudio;
    message.isStarred = row.integer(columns.starred) != 0;
    message.text = StoredText::cleaned(row.text(columns.text));
    setState(message);

    const bool mayHaveMedia = row.integer(columns.media) != 0 || message.storedType != 0
        || row.bytes(columns.text).isEmpty() || m_media.rows().has(message.row);
    if (mayHaveMedia)
        m_media.read(row.integer(columns.media), message.row, message);
    message.isForwarded =
        (row.integer(columns.flags) & kForwarded) != 0 || message.details().forwards > 0;
    message.isBroadcast = chat.kind == WhatsappChat::Kind::List;
    const qint64 parent = row.integer(columns.parent);
    if (parent != 0 && isPartOfAnother(chat, message, parent))
        return false;
    if (message.kind == Kind::Album && message.text.isEmpty()) {
        const WhatsappFile &file = message.details().file;
        if (file.title.isEmpty() && file.file == FileIndex::kNone)
            return false;
    }

    setSender(chat, message);
    if (message.kind == Kind::Event)
        setEvent(chat, message);
    else if (message.kind == Kind::Link)
        setLinks(message);
    const QByteArrayView info = m_tables->infos.of(message.row, row.integer(columns.info));
    if (!info.isEmpty()) {
        if (message.kind == Kind::Poll)
            message.makeDetails().poll = WhatsappPacked::poll(info);
        setReactions(chat, message, info);
    }
    if (message.more)
        nameEverybody(*message.more);
    return true;
}

// Looks at the message that another one is a copy or a part of. \return whether the other one is
// the small half of a picture in high definition, whose large half is shown.
bool WhatsappReader::isPartOfAnother(const WhatsappChat &chat,
                                     WhatsappMessage &message,
                                     qint64 parent)
{
    ParentRows &rows = m_tables->parents;
    const Table::Row *above = rows.rows.find(parent);
    if (!above)
        return false;
    const Jid jid(above->text(rows.chatJid));
    message.isBroadcast = message.isBroadcast || jid.kind() == Jid::Kind::List;
    // A parent that has one itself, or is its own, may not be shown either.
    return above->integer(rows.chat) == chat.row && message.storedType == kPicture
        && above->integer(rows.type) == kPicture && above->integer(rows.parent) == 0
        && m_source.messageFilter().accepts(PhoneTime::since2001(above->number(rows.date)))
        && m_media.hasFile(above->integer(rows.media), parent);
}

void WhatsappReader::setState(WhatsappMessage &message) const
{
    const MessageRows &columns = m_tables->messages;
    const Table::Row &row = *m_tables->row;
    message.isFromOwner = row.integer(columns.fromMe) != 0;
    message.state = stateOf(row, columns.status);
    message.deliveredTo = int(row.integer(columns.delivered));
    message.readBy = int(row.integer(columns.read));
    message.playedBy = int(row.integer(columns.played));
    // Where no message has a state, they are not kept up: then waiting tells nothing.
    const bool isUnsent = message.state == State::NotSent
        || (message.state == State::Waiting && m_keepsStatus)
        || row.integer(columns.errorStatus) != 0;
    const bool isSaidByApp = message.storedType == kGroupEvent || message.storedType == kNotice;
    message.isFailed = message.isFromOwner && isUnsent && !isSaidByApp;
}

void WhatsappReader::setSender(const WhatsappChat &chat, WhatsappMessage &message)
{
    if (message.isFromOwner)
        message.sender.who = WhatsappPerson::Who::Owner;
    else if (message.kind != Kind::Event)
        message.sender = chat.isWithPerson() ? chat.partner : author();
}

WhatsappPerson WhatsappReader::creator(const WhatsappChat &chat) const
{
    const WhatsappPerson person = m_names.person(chat.creator);
    const bool isKnown = person.isOwner() || !person.nameOrNumber().isEmpty();
    return isKnown ? person : WhatsappPerson();
}

void WhatsappReader::setEvent(const WhatsappChat &chat, WhatsappMessage &message)
{
    const MessageRows &columns = m_tables->messages;
    const Table::Row &row = *m_tables->row;
    using EventKind = WhatsappEvent::Kind;
    using Who = WhatsappPerson::Who;
    WhatsappEvent event;
    event.storedCode = row.integer(columns.eventCode);
    switch (message.storedType) {
    case kGroupEvent:
        event.kind = whatsappGroupEvent(event.storedCode);
        break;
    case kNotice:
        event.kind = whatsappNotice(event.storedCode);
        break;
    case kTimerChanged:
        event.kind = EventKind::TimerChanged;
        break;
    case kPrivacyChanged:
        event.kind = EventKind::PrivacyChanged;
        break;
    default:
        event.kind = EventKind::ChannelNotice;
        break;
    }
    setEventText(event, message.text);
    if (message.storedType == kGroupEvent) {
        if (row.integer(columns.member) != 0)
            event.by = author();
        if (message.isFromOwner)
            event.by.who = Who::Owner;
        else if (event.kind == EventKind::GroupCreated && event.by.jid.kind() == Jid::Kind::None)
            event.by = creator(chat);
        if (event.by.who == Who::Nobody && chat.isWithPerson()) {
            event.by = chat.partner;
            event.by.who = Who::Other;
        }
    }
    message.makeDetails().event = std::move(event);
}

void WhatsappReader::setLinks(WhatsappMessage &message)
{
    std::optional<LinkRows> &links = m_tables->links;
    if (!links)
        links.emplace(m_database);
    const QList<qint64> numbers = links->ofMessages.of(message.row);
    if (numbers.isEmpty())
        return;
    // The metadata have told what the first page is called, but not where it is.
    std::vector<WhatsappLink> &pages = message.makeDetails().links;
    const WhatsappLink known = pages.empty() ? WhatsappLink() : pages.front();
    pages.clear();
    for (const qint64 number : numbers) {
        if (const Table::Row *row = links->rows.find(number)) {
            pages.push_back({ StoredText::cleaned(row->text(links->address)),
                              StoredText::cleaned(row->text(links->matched)),
                              StoredText::cleaned(row->text(links->title)),
                              StoredText::cleaned(row->text(links->summary)),
                              m_media.find(row->text(links->picture)) });
        }
    }
    if (pages.empty())
        pages.emplace_back();
    pages.front().title = oneOf(pages.front().title, known.title);
    pages.front().summary = oneOf(pages.front().summary, known.summary);
}

// The last reaction of each person counts, and none when that one was withdrawn.
void WhatsappReader::setReactions(const WhatsappChat &chat,
                                  WhatsappMessage &message,
                                  QByteArrayView info)
{
    std::vector<WhatsappReaction> reactions = WhatsappPacked::reactions(info);
    const MessageFilter &filter = m_source.messageFilter();
    reactions.erase(std::remove_if(reactions.begin(),
                                   reactions.end(),
                                   [&filter](const WhatsappReaction &reaction) {
                                       return reaction.date.isValid()
                                           && !filter.accepts(reaction.date);
                                   }),
                    reactions.end());
    QHash<QString, std::size_t> last;
    QStringList keys;
    for (std::size_t i = 0; i < reactions.size(); ++i) {
        WhatsappPerson &by = reactions[i].by;
        if (!by.isOwner())
            by = chat.isWithPerson() && !by.jid.isPerson() ? chat.partner : m_names.person(by.jid);
        if (!by.isOwner() && chat.isWithPerson()) {
            by.name = chat.partner.name;
            by.number = chat.partner.number;
        }
        keys.append(by.isOwner() ? QString() : m_names.key(by.jid));
        const auto known = last.constFind(keys.last());
        if (known == last.constEnd() || !(reactions[i].date < reactions[*known].date))
            last.insert(keys.last(), i);
    }
    std::vector<WhatsappReactionCount> counts = WhatsappPacked::reactionCounts(info);
    if (reactions.empty() && counts.empty())
        return;
    WhatsappDetails &details = message.makeDetails();
    details.reactionCounts = std::move(counts);
    for (std::size_t i = 0; i < reactions.size(); ++i) {
        if (last.value(keys[qsizetype(i)]) == i && !reactions[i].emoji.isEmpty())
            details.reactions.push_back(std::move(reactions[i]));
    }
}

// Finds out who the people are that packed values name by their identifiers.
void WhatsappReader::nameEverybody(WhatsappDetails &details) const
{
    name(details.quote.author);
    if (details.poll) {
        for (WhatsappPoll::Vote &vote : details.poll->votes)
            name(vote.by);
    }
    if (details.call) {
        for (WhatsappPerson &person : details.call->people)
            name(person);
    }
    if (details.event) {
        for (WhatsappEvent::Mention &mention : details.event->mentions)
            mention.person = m_names.person(mention.person.jid);
    }
}

void WhatsappReader::name(WhatsappPerson &person) const
{
    if (person.who == WhatsappPerson::Who::Other)
        person = m_names.person(person.jid);
}

// Who wrote the message of a group.
WhatsappPerson WhatsappReader::author()
{
    const MessageRows &columns = m_tables->messages;
    const Table::Row &row = *m_tables->row;
    const qint64 number = row.integer(columns.member);
    WhatsappPerson by;
    if (number != 0) {
        by = member(number);
    } else if (const Jid sender(row.text(columns.fromJid)); sender.isPerson()) {
        by = m_names.person(sender);
    }
    if (by.name.isEmpty())
        by.name = WhatsappNames::chosen(row.text(columns.pushName));
    if (by.who == WhatsappPerson::Who::Nobody && !by.name.isEmpty())
        by.who = WhatsappPerson::Who::Other;
    return by;
}

const WhatsappPerson &WhatsappReader::member(qint64 row)
{
    QHash<qint64, WhatsappPerson> &authors = m_tables->authors;
    const auto known = authors.constFind(row);
    if (known != authors.constEnd())
        return *known;
    WhatsappPerson author;
    author.who = WhatsappPerson::Who::Other;
    MemberRows &members = m_tables->members;
    if (const Table::Row *found = members.rows.find(row)) {
        const QString listed = oneOf(WhatsappNames::cleaned(found->text(members.contactName)),
                                     WhatsappNames::cleaned(found->text(members.firstName)));
        author = m_names.person(Jid(found->text(members.jid)), listed);
    }
    return *authors.insert(row, author);
}

} // namespace PhoneBackup
