#include "Archive/records/WhatsappFields.h"

using namespace PhoneBackup;

namespace Archive {

// NOLINTBEGIN(misc-use-anonymous-namespace): FieldWriter finds these by the namespace of its own,
// and would not look into one without a name.

static void fields(FieldWriter &field, const WhatsappPerson &person)
{
    field("owner", person.isOwner());
    field("id", person.jid.key());
    field("name", person.name);
    field("number", person.number);
}

static void fields(FieldWriter &field, const WhatsappFile &file)
{
    field("row", file.row, 0);
    field("state", file.state);
    field("file", File { file.file });
    field("preview", File { file.preview });
    field("path", file.path);
    field("title", file.title);
    field("mimeType", file.mimeType);
    field("bytes", file.bytes, 0);
    field("seconds", file.seconds);
    field("size", file.pixels);
    field("recorded", file.isRecorded);
}

static void fields(FieldWriter &field, const WhatsappQuote &quote)
{
    field("id", quote.id);
    field("author", quote.author);
    field("kind", quote.kind);
    field("text", quote.text);
}

static void fields(FieldWriter &field, const WhatsappReaction &reaction)
{
    field("by", reaction.by);
    field("emoji", reaction.emoji);
    field("date", reaction.date);
}

static void fields(FieldWriter &field, const WhatsappReactionCount &count)
{
    field("emoji", count.emoji);
    field("count", count.count);
}

static void fields(FieldWriter &field, const WhatsappCard &card)
{
    field("name", card.name);
    field("numbers", card.numbers);
    field("vCard", card.vCard);
}

static void fields(FieldWriter &field, const WhatsappPlace &place)
{
    field("name", place.name);
    field("address", place.address);
    field("latitude", place.latitude);
    field("longitude", place.longitude);
}

static void fields(FieldWriter &field, const WhatsappLink &link)
{
    field("address", link.address);
    field("matched", link.matched);
    field("title", link.title);
    field("summary", link.summary);
    field("picture", File { link.picture });
}

static void fields(FieldWriter &field, const WhatsappPoll::Vote &vote)
{
    field("by", vote.by);
    field("options", vote.options);
}

static void fields(FieldWriter &field, const WhatsappPoll &poll)
{
    field("question", poll.question);
    field("options", poll.options);
    field("votes", poll.votes);
}

static void fields(FieldWriter &field, const WhatsappChatCall &call)
{
    field("video", call.isVideo);
    field("connected", call.isConnected);
    field("seconds", call.seconds);
    field("people", call.people);
}

static void fields(FieldWriter &field, const WhatsappEvent::Mention &mention)
{
    field("at", mention.at);
    field("length", mention.length);
    field("person", mention.person);
}

static void fields(FieldWriter &field, const WhatsappEvent &event)
{
    field("kind", event.kind);
    field("code", event.storedCode);
    field("by", event.by);
    field("text", event.text);
    field("mentions", event.mentions);
}

static void putDetails(FieldWriter &field, const WhatsappDetails &details)
{
    field("file", details.file);
    field("answers", details.quote);
    field("reactions", details.reactions);
    field("reactionCounts", details.reactionCounts);
    field("cards", details.cards);
    field("place", details.place);
    field("links", details.links);
    field("poll", details.poll);
    field("call", details.call);
    field("event", details.event);
    field("invitedTo", details.invitedTo);
    field("timerSeconds", details.timerSeconds);
    field("forwards", details.forwards, 0);
    field("forwardedFrom", details.forwardedFrom.key());
    field("deletedBy", details.deletedBy.key());
}

// NOLINTEND(misc-use-anonymous-namespace)

void fields(FieldWriter &field, const WhatsappMember &member)
{
    fields(field, member.person);
    field("admin", member.isAdmin);
    field("left", member.hasLeft);
}

void fields(FieldWriter &field, const WhatsappChat &chat)
{
    field("id", chat.jid.key());
    field("row", chat.row, 0);
    field("kind", chat.kind);
    field("name", chat.name);
    field("partner", chat.partner);
    field("creator", chat.creator.key());
    field("created", chat.creationDate);
    field("removed", chat.isRemoved);
    field("archived", chat.isArchived);
    field("hidden", chat.isHidden);
    field("lastDate", Moment { chat.lastDateMs });
    field("count", qint64(chat.messages.size()));
}

void fields(FieldWriter &field, const WhatsappMessage &message)
{
    field("id", message.id);
    field("row", message.row, 0);
    field("date", message.date);
    if (message.phoneDate != message.date)
        field("phoneDate", message.phoneDate);
    field("kind", message.kind);
    field("type", message.storedType, 0);
    field("sender", message.sender);
    field("fromOwner", message.isFromOwner);
    field("state", message.state);
    field("failed", message.isFailed);
    field("starred", message.isStarred);
    field("forwarded", message.isForwarded);
    field("broadcast", message.isBroadcast);
    field("once", message.isOnce);
    field("deliveredTo", message.deliveredTo, 0);
    field("readBy", message.readBy, 0);
    field("playedBy", message.playedBy, 0);
    field("text", message.text);
    if (message.more)
        putDetails(field, *message.more);
}

} // namespace Archive
