#include "model/WhatsappReader.h"

#include "model/PhoneTime.h"
#include "model/Source.h"
#include "model/StoredText.h"
#include "model/WhatsappContent.h"
#include "model/WhatsappNames.h"
#include "model/WhatsappWords.h"
#include "model/WireFields.h"
#include "platform/Translation_p.h"

#include <QRegularExpression>

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using DataExport::tr;

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
};

// What a message is to those who show it.
enum Code { Text, Picture, Video, Audio, ContactCard, Location, GroupEvent };

enum StoredType : qint64 {
    kTextType = 0,
    kPictureType = 1,
    kLocationType = 5,
    kEventType = 6,
    kNoticeType = 10,
    kAlbumType = 66,
};

QString oneOf(const QString &first, const QString &second, const QString &third = {})
{
    if (!first.isEmpty())
        return first;
    return second.isEmpty() ? third : second;
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
                                     u"ZMESSAGEINFO"_s },
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
    m_infos = m_database.prepareRow({ u"ZRECEIPTINFO"_s }, u"ZWAMESSAGEINFO"_s);
}

bool WhatsappReader::read(const WhatsappChat &chat, WhatsappContent &content)
{
    if (!m_prepared)
        prepare();
    if (!m_rows)
        return false;
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
    return setContent(chat, message);
}

bool WhatsappReader::setContent(const WhatsappChat &chat, WhatsappMessage &message)
{
    const qint64 type = m_rows->integer(kType);
    message.files = &m_source.files();
    const QString text = StoredText::cleaned(m_rows->text(kText));
    if (m_item.row != 0 && type != kLocationType)
        message.mediaFile = m_media.find(m_item.path);
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
    case 14:
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
    case 46:
        message.text = text.isEmpty() ? oneOf(pollQuestion(), tr("Poll")) : text;
        break;
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
    event.byOwner = message.fromMe || (!m_facts.ownKey.isEmpty() && by.jid.key() == m_facts.ownKey);
    event.who = by.name;
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

QString WhatsappReader::pollQuestion()
{
    constexpr quint64 pollField = 8;
    constexpr quint64 questionField = 2;
    if (!m_infos)
        return {};
    qint64 row = m_rows->integer(kInfo);
    if (row == 0) {
        if (!m_infoRows)
            m_infoRows.emplace(m_database, u"ZWAMESSAGEINFO"_s, u"ZMESSAGE"_s);
        row = m_infoRows->first(m_row);
    }
    m_infos->reset();
    m_infos->bind(1, row);
    QString question;
    if (step(*m_infos)) {
        const QByteArrayView poll = WireFields::bytes(m_infos->bytes(0), pollField);
        question = StoredText::cleaned(QString::fromUtf8(WireFields::bytes(poll, questionField)));
    }
    m_infos->reset();
    return question.trimmed();
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
        const bool isOwner = jid.key() == m_facts.ownKey;
        const QString name = isOwner ? tr("you") : m_names.nameOrNumber(jid);
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
