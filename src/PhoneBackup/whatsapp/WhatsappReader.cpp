#include "PhoneBackup/whatsapp/WhatsappReader.h"

#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"
#include "PhoneBackup/whatsapp/WhatsappRecords.h"
#include "PhoneItems/whatsapp/WhatsappContent.h"
#include "PhoneItems/whatsapp/WhatsappWords.h"
#include "platform/Translation_p.h"

#include <QRegularExpression>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using namespace WhatsappCode;

namespace {

enum Column { // of the query for every message
    kType,
    kEventCode,
    kFromMe,
    kStatus,
    kErrorStatus,
    kDate,
    kText,
    kMember,
    kMedia,
    kParent,
    kPushName,
    kFromJid,
    kInfo,
    kIdentifier,
};

enum StoredType : qint64 {
    kTextType = 0,
    kPictureType = 1,
    kLocationType = 5,
    kEventType = 6,
    kNoticeType = 10,
    kDeletedType = 14,
    kPollType = 46,
    kAlbumType = 66,
};

constexpr qint64 kGroupCreated = 12; // among the codes of events

QString oneOf(const QString &first, const QString &second, const QString &third = {})
{
    if (!first.isEmpty())
        return first;
    return second.isEmpty() ? third : second;
}

void addLine(QString &text, const QString &line)
{
    text += text.isEmpty() ? line : u'\n' + line;
}

int codeByMime(const QString &mime)
{
    if (mime.startsWith("image/"_L1, Qt::CaseInsensitive))
        return Picture;
    if (mime.startsWith("video/"_L1, Qt::CaseInsensitive))
        return Video;
    return mime.startsWith("audio/"_L1, Qt::CaseInsensitive) ? Audio : Text;
}

} // namespace

//! The message that another one is a copy or a part of.
struct WhatsappReader::Parent
{
    qint64 chat = 0;
    bool toList = false;
    bool isShownPicture = false; // with its file
};

WhatsappReader::WhatsappReader(Source &source,
                               WhatsappDatabase &database,
                               const WhatsappNames &names,
                               WhatsappMedia &media,
                               const WhatsappChatList::Facts &facts)
    : m_source(source)
    , m_database(database)
    , m_names(names)
    , m_media(media)
    , m_facts(facts)
{
}

WhatsappReader::~WhatsappReader() = default;

void WhatsappReader::prepare()
{
    m_prepared = true;
    const QString messages = u"ZWAMESSAGE"_s;
    m_rows = m_database.prepareRow({ u"ZMESSAGETYPE"_s,
                                     u"ZGROUPEVENTTYPE"_s,
                                     u"ZISFROMME"_s,
                                     u"ZMESSAGESTATUS"_s,
                                     u"ZMESSAGEERRORSTATUS"_s,
                                     u"ZMESSAGEDATE"_s,
                                     u"ZTEXT"_s,
                                     u"ZGROUPMEMBER"_s,
                                     u"ZMEDIAITEM"_s,
                                     u"ZPARENTMESSAGE"_s,
                                     u"ZPUSHNAME"_s,
                                     u"ZFROMJID"_s,
                                     u"ZMESSAGEINFO"_s,
                                     u"ZSTANZAID"_s },
                                   messages);
    m_files =
        m_database.prepareRow({ u"ZMESSAGETYPE"_s, u"ZMESSAGEDATE"_s, u"ZMEDIAITEM"_s }, messages);
    m_members = m_database.prepareRow({ u"ZMEMBERJID"_s, u"ZCONTACTNAME"_s, u"ZFIRSTNAME"_s },
                                      u"ZWAGROUPMEMBER"_s);
    const QString jid = m_database.column(u"ZWACHATSESSION"_s, u"ZCONTACTJID"_s);
    m_parents = m_database.prepare(
        u"SELECT m.ZCHATSESSION, %1, (SELECT %2 FROM ZWACHATSESSION WHERE Z_PK = m.ZCHATSESSION), "
        "%3, %4, %5 FROM ZWAMESSAGE m WHERE m.Z_PK = ?1"_s.arg(
            m_database.column(messages, u"ZMEDIAITEM"_s),
            jid,
            m_database.column(messages, u"ZMESSAGETYPE"_s),
            m_database.column(messages, u"ZMESSAGEDATE"_s),
            m_database.column(messages, u"ZPARENTMESSAGE"_s)));
    m_links = m_database.prepareRow({ u"ZMATCHEDTEXT"_s, u"ZCONTENT1"_s }, u"ZWAMESSAGEDATAITEM"_s);
    m_infos.emplace(m_database);
}

bool WhatsappReader::read(const WhatsappChat &chat, WhatsappContent &content)
{
    if (!m_prepared)
        prepare();
    if (!m_rows)
        return false;
    m_relations.clear();
    m_tellsCreation = false;
    const bool mayTellCreation = chat.creator.isPerson();
    if (mayTellCreation)
        setCreation(chat, content.addMessage());
    bool failed = false;
    for (const qint64 row : chat.messages) {
        m_row = row;
        m_rows->reset();
        m_rows->bind(1, row);
        const Statement::Step step = m_rows->step();
        if (step == Statement::Step::Failed && !failed) {
            failed = true;
            m_database.addLoss(tr("It is damaged: %1.").arg(m_rows->error()));
        }
        if (step == Statement::Step::Row && !readRow(chat, content.addMessage()))
            content.removeLast();
    }
    m_rows->reset();
    const bool isCreationAlone = content.messages().size() == 1;
    if (mayTellCreation
        && (m_tellsCreation || isCreationAlone || content.messages().first()->content().isEmpty()))
        content.removeFirst();
    m_relations.apply(content, !chat.isPrivate);
    return !failed || !content.messages().isEmpty();
}

WhatsappSentFile WhatsappReader::file(qint64 message)
{
    if (!m_prepared)
        prepare();
    WhatsappSentFile file;
    if (!m_files)
        return file;
    m_files->reset();
    m_files->bind(1, message);
    if (step(*m_files)) {
        file.storedType = m_files->integer(0);
        file.date = PhoneTime::since2001(m_files->number(1));
        file.item = m_media.item(message, m_files->integer(2));
    }
    m_files->reset();
    return file;
}

// \return whether there is a row; one that cannot be read is told.
bool WhatsappReader::step(Statement &statement)
{
    const Statement::Step step = statement.step();
    if (step == Statement::Step::Failed)
        m_database.addLoss(tr("It is damaged: %1.").arg(statement.error()));
    return step == Statement::Step::Row;
}

// \return whether it is shown.
bool WhatsappReader::readRow(const WhatsappChat &chat, WhatsappMessage &message)
{
    const QDateTime date = PhoneTime::since2001(m_rows->number(kDate));
    if (date.isValid())
        message.dateMs = date.toMSecsSinceEpoch();
    message.fromMe = m_rows->integer(kFromMe) != 0;
    message.sentDone = !message.fromMe || isSentDone();
    message.broadcast = chat.isList;
    const bool mayHaveMedia = m_rows->integer(kMedia) != 0 || m_rows->integer(kType) != kTextType
        || m_rows->bytes(kText).isEmpty() || m_media.rows().has(m_row);
    m_item = mayHaveMedia ? m_media.item(m_row, m_rows->integer(kMedia)) : WhatsappMediaItem();

    const qint64 parentRow = m_rows->integer(kParent);
    if (parentRow != 0) {
        const Parent above = parent(parentRow);
        message.broadcast = message.broadcast || above.toList;
        // The other half of a picture in high definition.
        if (above.chat == chat.row && m_rows->integer(kType) == kPictureType
            && above.isShownPicture)
            return false;
    }
    if (!setContent(chat, message))
        return false;
    message.idHash = WhatsappRelations::hashOf(m_rows->bytes(kIdentifier));
    if (!m_item.quote.id.isEmpty() && message.code != GroupEvent && !message.isDeleted)
        m_relations.addAnswer(message, m_item.quote);
    readReactions(chat, message);
    return true;
}

// Who made the group, at the head of the chat; no text when that is not to be shown.
void WhatsappReader::setCreation(const WhatsappChat &chat, WhatsappMessage &message) const
{
    message.files = &m_source.files();
    message.code = GroupEvent;
    if (!m_source.messageFilter().accepts(chat.creationDate))
        return;
    WhatsappWords::Event event;
    event.code = kGroupCreated;
    event.byOwner = isOwner(chat.creator);
    event.who = nameOf(chat.creator);
    if (event.byOwner || !event.who.isEmpty())
        message.text = WhatsappWords::groupEvent(event);
    if (chat.creationDate.isValid())
        message.dateMs = chat.creationDate.toMSecsSinceEpoch();
}

void WhatsappReader::readReactions(const WhatsappChat &chat, WhatsappMessage &message)
{
    const QByteArrayView info = m_infos->of(m_row, m_rows->integer(kInfo));
    if (info.isEmpty())
        return;
    std::vector<WhatsappRelations::Reaction> reactions;
    for (const WhatsappReaction &found : WhatsappRecords::reactions(info)) {
        const Jid &who = chat.isPrivate && !found.who.isPerson() ? chat.jid : found.who;
        const bool byOwner = found.byOwner || isOwner(who);
        QString name = byOwner ? tr("You") : chat.isPrivate ? chat.contact : nameOf(who);
        if (name.isEmpty())
            name = tr("Somebody");
        if (!found.date.isValid() || m_source.messageFilter().accepts(found.date))
            reactions.push_back({ &message,
                                  byOwner,
                                  byOwner ? QString() : person(who),
                                  name,
                                  found.emoji,
                                  found.date });
    }
    m_relations.addReactions(std::move(reactions));
    const QStringList counts = WhatsappRecords::reactionCounts(info);
    if (!counts.isEmpty())
        addLine(message.text, tr("[Reactions: %1]").arg(counts.join(u", "_s)));
}

bool WhatsappReader::setContent(const WhatsappChat &chat, WhatsappMessage &message)
{
    const qint64 type = m_rows->integer(kType);
    message.files = &m_source.files();
    const QString text = StoredText::cleaned(m_rows->text(kText));
    if (m_item.row != 0 && type != kLocationType)
        message.mediaFile = m_media.find(m_item.path);
    message.storedType = type;
    message.title = m_item.title;
    message.code = Text;
    message.text = text;

    const auto either = [&](const QString &words) {
        message.text = oneOf(text, m_item.title, words);
    };
    switch (type) {
    case kTextType:
        break;
    case kPictureType:
        message.code = Picture;
        message.text = caption(text);
        break;
    case 2:
    case 11:
        message.code = Video;
        message.text = caption(text);
        break;
    case 3:
        message.code = Audio;
        message.text.clear();
        break;
    case 4:
        message.code = ContactCard;
        message.text = oneOf(WhatsappWords::contactCards(m_item), text, tr("Contact"));
        break;
    case kLocationType:
        message.code = Location;
        message.text = WhatsappWords::location(m_item, text);
        break;
    case kEventType:
    case kNoticeType:
        setEvent(chat, message, type == kNoticeType);
        return true;
    case 7:
        message.text = text.isEmpty() ? oneOf(linkText(), m_item.title) : text;
        break;
    case 8:
        message.text = documentName(text);
        break;
    case 12:
        message.text = tr("Waiting for this message");
        break;
    case kDeletedType:
        message.isDeleted = true;
        message.text = tr("[Deleted message]");
        break;
    case 15:
        message.text = tr("Sticker");
        break;
    case 25:
    case 31:
    case 34:
    case 58:
        break;
    case 26:
        either(tr("Product"));
        break;
    case 27:
        message.text = oneOf(text, tr("Group invitation"));
        break;
    case 28:
        message.code = GroupEvent;
        message.text = tr("Disappearing messages were changed");
        return true;
    case 38:
    case 39:
    case 53:
        message.code = type == 38 ? Picture : type == 39 ? Video : Audio;
        message.text = oneOf(caption(text), tr("View once"));
        break;
    case kPollType: {
        const QByteArrayView info = m_infos->of(m_row, m_rows->integer(kInfo));
        message.text = oneOf(text, WhatsappRecords::pollQuestion(info), tr("Poll"));
        for (const QString &option : WhatsappRecords::pollOptions(info))
            addLine(message.text, u"• "_s + option);
        break;
    }
    case 54:
        message.code = Video;
        message.text.clear();
        break;
    case 55:
    case 62:
        message.code = GroupEvent;
        message.text = oneOf(WhatsappWords::readable(text), tr("Channel"));
        return true;
    case 59:
        message.text = tr("Call");
        break;
    case 63:
        either(tr("Event"));
        break;
    case kAlbumType: // its pictures are messages of their own
        message.text = caption(text);
        if (message.text.isEmpty() && message.mediaFile == FileIndex::kNone)
            return false;
        break;
    case 68:
        message.text = tr("Status mention");
        break;
    case 73:
        message.code = GroupEvent;
        message.text = tr("Advanced chat privacy was changed");
        return true;
    case 19:
    case 20:
    case 23:
    case 24:
    case 30:
    case 32:
    case 41:
    case 42:
        message.code = codeByMime(m_item.cardText);
        either(tr("Business message"));
        break;
    default:
        message.code = codeByMime(m_item.cardText);
        either(tr("Unsupported message"));
        break;
    }
    // What stands for a picture or film that the phone never had, or has no longer.
    if (message.mediaFile == FileIndex::kNone && (message.code == Picture || message.code == Video)
        && m_item.row != 0) {
        message.mediaFile = m_media.findPreview(m_item);
        message.isPreview = message.mediaFile != FileIndex::kNone;
        // It looks like a picture.
        if (message.isPreview && message.code == Video)
            addLine(message.text, tr("[Video]"));
    }
    if (!chat.isPrivate && !message.fromMe)
        message.author = author().name;
    return true;
}

// What happened is said by nobody: a bubble would put the words into somebody's mouth.
void WhatsappReader::setEvent(const WhatsappChat &chat, WhatsappMessage &message, bool isNotice)
{
    WhatsappWords::Event event;
    event.code = m_rows->integer(kEventCode);
    event.stored = StoredText::cleaned(m_rows->text(kText));
    event.text = withNames(WhatsappWords::readable(event.stored));
    message.code = GroupEvent;
    message.sentDone = true;
    if (isNotice) {
        message.text = WhatsappWords::notice(event);
        return;
    }
    const Author by = m_rows->integer(kMember) != 0 ? author() : Author();
    event.byOwner = message.fromMe || isOwner(by.jid);
    event.who = by.name;
    if (event.code == kGroupCreated) {
        m_tellsCreation = true;
        if (by.jid.kind() == Jid::Kind::None && !message.fromMe) {
            event.byOwner = isOwner(chat.creator);
            event.who = nameOf(chat.creator);
        }
    }
    if (event.who.isEmpty() && chat.isPrivate)
        event.who = chat.contact;
    message.text = WhatsappWords::groupEvent(event);
}

bool WhatsappReader::isSentDone() const
{
    constexpr qint64 waiting = 0;
    constexpr qint64 notSent = 9;
    if (m_rows->integer(kErrorStatus) != 0)
        return false;
    const std::optional<double> status = m_rows->number(kStatus);
    if (!status)
        return true;
    const qint64 state = m_rows->integer(kStatus);
    return state != notSent && (state != waiting || !m_facts.keepsStatus);
}

QString WhatsappReader::documentName(const QString &text) const
{
    const QString name =
        oneOf(m_item.title, m_item.path.section(u'/', -1), text.isEmpty() ? tr("Document") : text);
    return text.isEmpty() || text == name ? name : name + u'\n' + text;
}

QString WhatsappReader::caption(const QString &text) const
{
    return oneOf(m_item.title, text);
}

QString WhatsappReader::linkText()
{
    if (!m_links)
        return {};
    if (!m_linkRows)
        m_linkRows.emplace(m_database, u"ZWAMESSAGEDATAITEM"_s, u"ZMESSAGE"_s);
    QString text;
    for (const qint64 row : m_linkRows->of(m_row)) {
        m_links->reset();
        m_links->bind(1, row);
        if (text.isEmpty() && step(*m_links))
            text = StoredText::cleaned(oneOf(m_links->text(0), m_links->text(1)));
    }
    m_links->reset();
    return text;
}

// Who wrote the message of a group.
WhatsappReader::Author WhatsappReader::author()
{
    const qint64 row = m_rows->integer(kMember);
    Author by = row != 0 ? member(row) : Author();
    if (row == 0) {
        const Jid sender(m_rows->text(kFromJid));
        if (sender.isPerson())
            by = { sender, m_names.name(sender) };
    }
    if (by.name.isEmpty()) {
        const QString chosen = WhatsappNames::chosen(m_rows->text(kPushName));
        if (row != 0 || by.jid.isPerson())
            by.name = m_names.nameOrNumber(by.jid, chosen);
        else
            by.name = chosen;
    }
    return by;
}

const WhatsappReader::Author &WhatsappReader::member(qint64 row)
{
    const auto known = m_authors.constFind(row);
    if (known != m_authors.constEnd())
        return *known;
    Author author;
    if (m_members) {
        m_members->reset();
        m_members->bind(1, row);
        if (step(*m_members)) {
            author.jid = Jid(m_members->text(0));
            const QString listed = oneOf(WhatsappNames::cleaned(m_members->text(1)),
                                         WhatsappNames::cleaned(m_members->text(2)));
            author.name = m_names.name(author.jid, listed);
        }
        m_members->reset();
    }
    return *m_authors.insert(row, author);
}

// Equal for the same person, whichever identifier names them.
QString WhatsappReader::person(const Jid &jid) const
{
    const QString number = m_names.number(jid);
    return number.isEmpty() ? jid.key() : number;
}

bool WhatsappReader::isOwner(const Jid &jid) const
{
    return jid.isPerson() && !m_facts.ownKey.isEmpty()
        && person(jid) == person(Jid(m_facts.ownKey));
}

// Empty when neither a name nor a number is known.
QString WhatsappReader::nameOf(const Jid &jid) const
{
    const QString name = m_names.name(jid);
    return name.isEmpty() ? m_names.number(jid) : name;
}

// Identifiers in what the app says of people are replaced by their names.
QString WhatsappReader::withNames(const QString &text) const
{
    if (!text.contains(u'@'))
        return text;
    static const QRegularExpression identifier(
        u"(?<![0-9A-Za-z._-])[0-9][0-9.:_-]*@(?:s\\.whatsapp\\.net|lid|g\\.us|broadcast|newsletter)"
        "(?![0-9A-Za-z_-]|\\.[0-9A-Za-z])"_s);
    QString result;
    qsizetype from = 0;
    bool onlyPeople = true;
    static const QRegularExpression separator(u"^[\\s,;]*$"_s);
    auto matches = identifier.globalMatch(text);
    while (matches.hasNext()) {
        const auto match = matches.next();
        const QString between = text.sliced(from, match.capturedStart() - from);
        onlyPeople = onlyPeople && separator.match(between).hasMatch();
        const Jid jid(match.captured());
        const QString name = isOwner(jid) ? tr("you") : m_names.nameOrNumber(jid);
        result += onlyPeople && !result.isEmpty() ? u", "_s + name : between + name;
        from = match.capturedEnd();
    }
    const QString rest = text.sliced(from);
    return onlyPeople && separator.match(rest).hasMatch() ? result : result + rest;
}

WhatsappReader::Parent WhatsappReader::parent(qint64 row)
{
    Parent parent;
    if (!m_parents)
        return parent;
    m_parents->reset();
    m_parents->bind(1, row);
    if (step(*m_parents)) {
        parent.chat = m_parents->integer(0);
        parent.toList = Jid(m_parents->text(2)).kind() == Jid::Kind::List;
        // One that has a parent itself, or is its own, may not be shown either.
        parent.isShownPicture = m_parents->integer(3) == kPictureType && m_parents->integer(5) == 0
            && m_source.messageFilter().accepts(PhoneTime::since2001(m_parents->number(4)))
            && m_media.find(m_media.item(row, m_parents->integer(1)).path) != FileIndex::kNone;
    }
    m_parents->reset();
    return parent;
}

} // namespace PhoneBackup
