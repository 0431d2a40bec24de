#include "PhoneBackup/whatsapp/WhatsappPacked.h"

#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/packed/FieldReader.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/VCardText.h"

namespace PhoneBackup::WhatsappPacked {

namespace {

// The numbers of the fields below are nobody's publication: they were found by comparing rows with
// what the app shows. Quotes and the owner's reactions were seen in real databases.

// More than the largest group has members.
constexpr std::size_t kMostReactions = 10'000;
constexpr qsizetype kMostPollOptions = 1000;
constexpr std::size_t kMostPeopleInCall = 1000;
// Quotes are cut to a line on the page; longer ones need not be decoded.
constexpr qsizetype kLongestQuoteBytes = 4096;
constexpr quint64 kConnected = 0; // among the outcomes of calls

enum Metadata : quint32 { // of a media row
    kSummary = 3, // of a page that is linked to
    kQuotedId = 5,
    kQuotedAuthor = 6,
    kForwards = 17,
    kSentMessage = 19, // the quoted one; without an identifier that of the linked page
    kForwardedFrom = 21,
    kInvitation = 28,
    kInvitedTo = 4, // below kInvitation
    kTimer = 36,
    kCalls = 87,
    kCall = 1, // below kCalls
};

// A message in the form in which messages are sent.
enum Sent : quint32 {
    kText = 1,
    kPicture = 3,
    kContact = 4,
    kPlace = 5,
    kLongText = 6,
    kDocument = 7,
    kAudio = 8,
    kVideo = 9,
};

enum Call : quint32 { kIsVideo = 1, kOutcome = 2, kSeconds = 3, kPerson = 5 };

enum Info : quint32 { // of a row of receipts
    kReactions = 7,
    kPoll = 8,
};

enum Poll : quint32 { kQuestion = 2, kOption = 3, kVoteOfOther = 5, kVoteOfOwner = 6 };
enum Vote : quint32 { kChosen = 1, kVoter = 4 };

enum Reactions : quint32 { kOfOthers = 1, kOfOwner = 2, kCounts = 3 };

// The numbers of the fields of one reaction.
struct ReactionFields
{
    quint32 who; // 0: the owner
    quint32 emoji;
    quint32 time;
};
constexpr ReactionFields kFieldsOfOthers { 2, 3, 4 };
constexpr ReactionFields kFieldsOfOwner { 0, 2, 3 };

QString textOf(QByteArrayView bytes)
{
    return StoredText::cleaned(
               QString::fromUtf8(bytes.first(std::min(bytes.size(), kLongestQuoteBytes))))
        .trimmed();
}

QString textAt(QByteArrayView message, std::initializer_list<quint32> path)
{
    return textOf(FieldReader::find(message, path));
}

// The first of \a fields that has a text.
QString firstOf(QByteArrayView message, std::initializer_list<quint32> fields)
{
    for (const quint32 field : fields) {
        const QString text = textAt(message, { field });
        if (!text.isEmpty())
            return text;
    }
    return {};
}

WhatsappPerson personOf(QByteArrayView jid)
{
    WhatsappPerson person;
    person.jid = Jid(textOf(jid));
    if (person.jid.kind() != Jid::Kind::None)
        person.who = WhatsappPerson::Who::Other;
    return person;
}

// What a quoted message was and said: the first field that is neither a key nor newer than this.
void readQuoted(QByteArrayView message, WhatsappQuote &quote)
{
    using Kind = WhatsappQuote::Kind;
    const auto set = [&quote](Kind kind, const QString &text) {
        quote.kind = kind;
        quote.text = text;
    };
    FieldReader reader(message);
    while (quote.kind == Kind::Unknown && reader.next()) {
        if (!reader.isBytes())
            continue;
        const QByteArrayView content = reader.bytes();
        switch (reader.number()) {
        case kText:
            set(Kind::Text, textOf(content));
            break;
        case kPicture:
            set(Kind::Picture, firstOf(content, { 3 }));
            break;
        case kContact:
            set(Kind::ContactCard, vCardText(FieldReader::find(content, { 16 }), "FN"));
            break;
        case kPlace: // its name, its address
            set(Kind::Place, firstOf(content, { 3, 4 }));
            break;
        case kLongText: // with the title and address of a link
            set(Kind::Text, firstOf(content, { 1, 6, 2 }));
            break;
        case kDocument:
            set(Kind::Document, firstOf(content, { 8 }));
            break;
        case kAudio:
            set(Kind::Audio, {});
            break;
        case kVideo:
            set(Kind::Video, firstOf(content, { 7 }));
            break;
        default:
            break;
        }
    }
}

WhatsappChatCall callOf(QByteArrayView record)
{
    WhatsappChatCall call;
    call.isVideo = FieldReader::value(record, kIsVideo) != 0;
    call.isConnected = FieldReader::value(record, kOutcome) == kConnected;
    call.seconds = double(FieldReader::value(record, kSeconds));
    FieldReader::forEach(record, kPerson, [&call](QByteArrayView person) {
        if (call.people.size() < kMostPeopleInCall)
            call.people.push_back(personOf(FieldReader::find(person, { 1 })));
    });
    return call;
}

// Milliseconds since 1970; some versions count seconds.
QDateTime dateOf(quint64 time)
{
    constexpr quint64 firstMilliseconds = 1'000'000'000'000;
    const double seconds = double(time) / (time < firstMilliseconds ? 1.0 : 1000.0);
    return PhoneTime::sinceUnix(seconds);
}

WhatsappReaction reaction(QByteArrayView record, const ReactionFields &fields)
{
    WhatsappReaction reaction;
    FieldReader reader(record);
    while (reader.next()) {
        if (reader.number() == fields.emoji && reader.isBytes())
            reaction.emoji = textOf(reader.bytes()).simplified();
        else if (reader.number() == fields.time && !reader.isBytes())
            reaction.date = dateOf(reader.value());
        else if (reader.number() == fields.who && reader.isBytes())
            reaction.by = personOf(reader.bytes());
    }
    if (fields.who == 0)
        reaction.by.who = WhatsappPerson::Who::Owner;
    return reaction;
}

WhatsappPoll::Vote voteOf(QByteArrayView record, bool byOwner)
{
    WhatsappPoll::Vote vote;
    FieldReader reader(record);
    while (reader.next()) {
        if (reader.number() == kVoter && reader.isBytes())
            vote.by = personOf(reader.bytes());
        else if (reader.number() == kChosen && !reader.isBytes()
                 && reader.value() < quint64(kMostPollOptions))
            vote.options.push_back(int(reader.value()));
    }
    if (byOwner)
        vote.by.who = WhatsappPerson::Who::Owner;
    return vote;
}

} // namespace

void readMetadata(QByteArrayView metadata, WhatsappDetails &details)
{
    // Very old versions keep a property list there, which is none of these records.
    if (metadata.startsWith("bplist"))
        return;
    WhatsappQuote &quote = details.quote;
    WhatsappLink link;
    QByteArrayView sent;
    FieldReader reader(metadata);
    while (reader.next()) {
        const QByteArrayView bytes = reader.bytes();
        switch (reader.number()) {
        case kSummary:
            link.summary = textOf(bytes);
            break;
        case kQuotedId:
            if (quote.id.isEmpty())
                quote.id = bytes.toByteArray();
            break;
        case kQuotedAuthor:
            quote.author = personOf(bytes);
            break;
        case kForwards:
            details.forwards = qint64(reader.value());
            break;
        case kSentMessage:
            if (sent.isEmpty())
                sent = bytes;
            break;
        case kForwardedFrom:
            details.forwardedFrom = personOf(bytes).jid;
            break;
        case kInvitation:
            details.invitedTo = textAt(bytes, { kInvitedTo });
            break;
        case kTimer:
            if (!reader.isBytes())
                details.timerSeconds = qint64(reader.value());
            break;
        case kCalls:
            if (const QByteArrayView call = FieldReader::find(bytes, { kCall }); !call.isNull())
                details.call = callOf(call);
            break;
        default:
            break;
        }
    }
    if (!quote.id.isEmpty())
        return readQuoted(sent, quote);
    link.title = textAt(sent, { kPicture, 3 });
    if (!link.title.isEmpty() || !link.summary.isEmpty())
        details.links.push_back(link);
}

bool hasMore(QByteArrayView info)
{
    // Receipts of every message are asked: whether a key's byte is there at all is soon found out.
    constexpr char reactionsKey = kReactions << 3 | 2; // a field of bytes
    constexpr char pollKey = kPoll << 3 | 2;
    if (!info.contains(reactionsKey) && !info.contains(pollKey))
        return false;
    FieldReader reader(info);
    while (reader.next()) {
        if (reader.isBytes() && (reader.number() == kReactions || reader.number() == kPoll))
            return true;
    }
    return false;
}

std::vector<WhatsappReaction> reactions(QByteArrayView info)
{
    std::vector<WhatsappReaction> found;
    const auto add = [&found](const ReactionFields &fields) {
        return [&found, &fields](QByteArrayView record) {
            if (found.size() < kMostReactions)
                found.push_back(reaction(record, fields));
        };
    };
    FieldReader::forEach(info, kReactions, [&](QByteArrayView all) {
        FieldReader::forEach(all, kOfOthers, add(kFieldsOfOthers));
        FieldReader::forEach(all, kOfOwner, add(kFieldsOfOwner));
    });
    return found;
}

std::vector<WhatsappReactionCount> reactionCounts(QByteArrayView info)
{
    std::vector<WhatsappReactionCount> counts;
    const auto add = [&counts](QByteArrayView record) {
        const QString emoji = textAt(record, { 1 }).simplified();
        const auto count = qint64(FieldReader::value(record, 2));
        if (!emoji.isEmpty() && count > 0 && counts.size() < kMostReactions)
            counts.push_back({ emoji, count });
    };
    FieldReader::forEach(info, kReactions, [&](QByteArrayView all) {
        FieldReader::forEach(
            all, kCounts, [&](QByteArrayView list) { FieldReader::forEach(list, 1, add); });
    });
    return counts;
}

std::optional<WhatsappPoll> poll(QByteArrayView info)
{
    const QByteArrayView record = FieldReader::find(info, { kPoll });
    if (record.isNull())
        return std::nullopt;
    WhatsappPoll poll;
    poll.question = textAt(record, { kQuestion });
    FieldReader::forEach(record, kOption, [&poll](QByteArrayView option) {
        if (poll.options.size() < kMostPollOptions)
            poll.options.append(textAt(option, { 1 }).simplified());
    });
    const auto addVote = [&poll](bool byOwner) {
        return [&poll, byOwner](QByteArrayView vote) {
            if (poll.votes.size() < kMostReactions)
                poll.votes.push_back(voteOf(vote, byOwner));
        };
    };
    FieldReader::forEach(record, kVoteOfOther, addVote(false));
    FieldReader::forEach(record, kVoteOfOwner, addVote(true));
    return poll;
}

} // namespace PhoneBackup::WhatsappPacked
