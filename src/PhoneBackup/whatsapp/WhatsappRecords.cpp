#include "PhoneBackup/whatsapp/WhatsappRecords.h"

#include "PhoneBackup/packed/FieldReader.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/VCardText.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup::WhatsappRecords {

using namespace Qt::StringLiterals;

namespace {

// More than the largest group has members.
constexpr std::size_t kMostReactions = 10'000;
constexpr qsizetype kMostPollOptions = 1000;
// Quotes are cut to a line on the page; longer ones need not be decoded.
constexpr qsizetype kLongestQuoteBytes = 4096;

namespace Metadata { // of a media row
constexpr quint32 kQuotedId = 5;
constexpr quint32 kQuotedMessage = 19;
} // namespace Metadata

// A quoted message, in the form in which messages are sent.
namespace Sent {
constexpr quint32 kText = 1;
constexpr quint32 kPicture = 3;
constexpr quint32 kContact = 4;
constexpr quint32 kPlace = 5;
constexpr quint32 kLongText = 6;
constexpr quint32 kDocument = 7;
constexpr quint32 kAudio = 8;
constexpr quint32 kVideo = 9;
} // namespace Sent

namespace Info { // of a row of receipts
constexpr quint32 kReactions = 7;
constexpr quint32 kPoll = 8;
constexpr quint32 kPollQuestion = 2;
constexpr quint32 kPollOption = 3;
} // namespace Info

namespace Reactions {
constexpr quint32 kOfOthers = 1;
constexpr quint32 kOfOwner = 2;
constexpr quint32 kCounts = 3;
} // namespace Reactions

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

QString firstOf(std::initializer_list<QString> texts)
{
    for (const QString &text : texts) {
        if (!text.isEmpty())
            return text;
    }
    return {};
}

// The text of a quoted message, else a word for what it is.
QString quotedText(QByteArrayView message)
{
    FieldReader reader(message);
    while (reader.next()) {
        if (!reader.isBytes())
            continue;
        const QByteArrayView content = reader.bytes();
        switch (reader.number()) {
        case Sent::kText:
            return textOf(content);
        case Sent::kPicture:
            return firstOf({ textAt(content, { 3 }), tr("Photo") });
        case Sent::kContact:
            return firstOf({ vCardText(FieldReader::find(content, { 16 }), "FN"), tr("Contact") });
        case Sent::kPlace:
            return firstOf({ textAt(content, { 3 }), textAt(content, { 4 }), tr("Location") });
        case Sent::kLongText: // with the address, title and description of a link
            return firstOf(
                { textAt(content, { 1 }), textAt(content, { 6 }), textAt(content, { 2 }) });
        case Sent::kDocument:
            return firstOf({ textAt(content, { 8 }), tr("Document") });
        case Sent::kAudio:
            return tr("Audio");
        case Sent::kVideo:
            return firstOf({ textAt(content, { 7 }), tr("Video") });
        default: // keys, and what newer versions send
            break;
        }
    }
    return {};
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
            reaction.who = Jid(textOf(reader.bytes()));
    }
    return reaction;
}

} // namespace

WhatsappQuote quote(QByteArrayView metadata)
{
    // Very old versions keep a property list there, which is none of these records.
    if (metadata.startsWith("bplist"))
        return {};
    WhatsappQuote quote;
    quote.id = FieldReader::find(metadata, { Metadata::kQuotedId }).toByteArray();
    if (!quote.id.isEmpty())
        quote.text = quotedText(FieldReader::find(metadata, { Metadata::kQuotedMessage }));
    return quote;
}

bool hasMore(QByteArrayView info)
{
    FieldReader reader(info);
    while (reader.next()) {
        if (reader.isBytes()
            && (reader.number() == Info::kReactions || reader.number() == Info::kPoll))
            return true;
    }
    return false;
}

std::vector<WhatsappReaction> reactions(QByteArrayView info)
{
    std::vector<WhatsappReaction> found;
    const auto add = [&found](QByteArrayView record, const ReactionFields &fields) {
        if (found.size() >= kMostReactions)
            return;
        found.push_back(reaction(record, fields));
        found.back().byOwner = fields.who == 0;
    };
    FieldReader::forEach(info, Info::kReactions, [&](QByteArrayView all) {
        FieldReader::forEach(all, Reactions::kOfOthers, [&](QByteArrayView record) {
            add(record, kFieldsOfOthers);
        });
        FieldReader::forEach(
            all, Reactions::kOfOwner, [&](QByteArrayView record) { add(record, kFieldsOfOwner); });
    });
    return found;
}

QStringList reactionCounts(QByteArrayView info)
{
    QStringList counts;
    FieldReader::forEach(info, Info::kReactions, [&](QByteArrayView all) {
        FieldReader::forEach(all, Reactions::kCounts, [&](QByteArrayView list) {
            FieldReader::forEach(list, 1, [&](QByteArrayView record) {
                const QString emoji = textAt(record, { 1 }).simplified();
                const quint64 count = FieldReader::value(record, 2);
                if (!emoji.isEmpty() && count > 0 && std::size_t(counts.size()) < kMostReactions)
                    counts.append(u"%1 %2"_s.arg(emoji, QString::number(count)));
            });
        });
    });
    return counts;
}

QString pollQuestion(QByteArrayView info)
{
    return textAt(info, { Info::kPoll, Info::kPollQuestion });
}

QStringList pollOptions(QByteArrayView info)
{
    QStringList options;
    FieldReader::forEach(
        FieldReader::find(info, { Info::kPoll }), Info::kPollOption, [&](QByteArrayView option) {
            const QString text = textAt(option, { 1 }).simplified();
            if (!text.isEmpty() && options.size() < kMostPollOptions)
                options.append(text);
        });
    return options;
}

} // namespace PhoneBackup::WhatsappRecords
