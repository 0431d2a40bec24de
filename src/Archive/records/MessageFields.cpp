#include "Archive/records/MessageFields.h"

using namespace PhoneBackup;

namespace Archive {

namespace {

QString addressOf(const QString *address)
{
    return address ? *address : QString();
}

} // namespace

// NOLINTBEGIN(misc-use-anonymous-namespace): FieldWriter finds these by the namespace of its own,
// and would not look into one without a name.

static void fields(FieldWriter &field, const TextSpan &span)
{
    field("at", span.position);
    field("length", span.length);
    field("address", span.address);
}

static void fields(FieldWriter &field, const MessageAttachment &file)
{
    field("id", file.guid);
    field("row", file.row, 0);
    field("kind", file.kind);
    field("state", file.state());
    field("file", File { file.file });
    field("path", file.path);
    field("name", file.name);
    field("mimeType", file.mimeType);
    field("description", file.description);
    field("created", PhoneTime::since2001(file.created));
    field("sentBytes", file.sentBytes, 0);
    field("hidden", !file.isForPeople);
    field("sticker", file.isSticker);
    field("size", file.pixels);
    field("seconds", file.seconds, MessageAttachment::kUnknownSeconds);
    field("people", file.people);
    field("address", file.address);
}

static void fields(FieldWriter &field, const MessagePart &part)
{
    field("kind", part.kind);
    field("text", part.text);
    field("links", part.links);
    field("mentions", part.mentions);
    field("file", part.file);
}

static void fields(FieldWriter &field, const Poll::Option &option)
{
    field("id", option.id);
    field("text", option.text);
}

static void fields(FieldWriter &field, const Poll &poll)
{
    field("title", poll.title);
    field("updates", poll.updatedGuid);
    field("options", poll.options);
}

static void fields(FieldWriter &field, const Balloon &balloon)
{
    field("kind", balloon.kind);
    field("address", balloon.address);
    field("title", balloon.title);
    field("summary", balloon.summary);
    field("site", balloon.site);
    field("place", balloon.place);
    field("picture", File { balloon.pictureFile });
    field("bundleId", balloon.bundleId);
    field("app", balloon.app);
    field("captions", balloon.captions);
    field("poll", balloon.poll);
}

static void fields(FieldWriter &field, const Reaction &reaction)
{
    field("kind", reaction.kind);
    field("withdrawn", reaction.isWithdrawn);
    field("replaced", !reaction.isLast);
    field("part", reaction.part, Reaction::kWholeMessage);
    field("of", reaction.targetGuid);
    field("emoji", reaction.emoji);
    field("vote", reaction.vote);
    field("options", reaction.options);
}

static void fields(FieldWriter &field, const GroupEvent &event)
{
    field("kind", event.kind);
    field("type", event.type, 0);
    field("title", event.title);
    field("other", addressOf(event.other));
}

static void fields(FieldWriter &field, const Answer &answer)
{
    field("id", answer.targetGuid);
    field("part", answer.part, 0);
}

static void fields(FieldWriter &field, const EditHistory::Version &version)
{
    field("date", Moment { version.dateMs });
    field("text", version.text);
}

static void fields(FieldWriter &field, const EditHistory::Part &part)
{
    field("part", part.number);
    field("versions", part.versions);
}

static void fields(FieldWriter &field, const EditHistory::Translation &translation)
{
    field("part", translation.number);
    field("text", translation.text);
    field("language", translation.language);
    field("from", translation.from);
}

static void fields(FieldWriter &field, const EditHistory &history)
{
    field("parts", history.parts);
    field("unsentParts", history.unsentParts);
    field("translations", history.translations);
    field("damaged", history.isDamaged);
}

static void fields(FieldWriter &field, const DeletedPart &part)
{
    field("part", part.number);
    field("text", part.text);
    field("deletedOn", Moment { part.deletedMs });
}

static void putExtras(FieldWriter &field, const MessageList &list, const MessageExtras &extras)
{
    field("serviceName", extras.serviceName);
    field("subject", extras.subject);
    field("parts", extras.parts);
    field("links", extras.links);
    field("mentions", extras.mentions);
    field("balloon", extras.balloon);
    field("reaction", extras.reaction);
    field("event", extras.event);
    std::vector<MessageOf> reactions;
    reactions.reserve(extras.reactions.size());
    for (const qsizetype place : extras.reactions)
        reactions.push_back({ list, list.messages()[std::size_t(place)] });
    field("reactions", reactions);
    field("answers", extras.answer);
    field("pollUpdate", extras.isPollUpdate);
    field("voice", extras.isVoice);
    field("expired", extras.isExpired);
    field("played", Moment { extras.playedMs });
    field("transcription", extras.transcription);
    field("effect", extras.effect);
    field("scheduled", extras.isScheduled);
    field("deletedOn", Moment { extras.deletedMs });
    field("textLost", extras.isTextLost);
    field("edited", extras.isEdited);
    field("editedOn", Moment { extras.editedMs });
    field("unsent", extras.isUnsent);
    field("unsentOn", Moment { extras.unsentMs });
    field("history", extras.history);
    field("deletedParts", extras.deletedParts);
}

// NOLINTEND(misc-use-anonymous-namespace)

void fields(FieldWriter &field, const MessageOf &of)
{
    const Message &message = of.message;
    const MessageExtras *extras = message.extras;
    if (extras && !extras->guid.isEmpty())
        field("id", extras->guid);
    else if (!message.id.isNull())
        field("id", message.id.text());
    field("row", message.row, 0);
    field("date", Moment { message.dateMs });
    field("fromOwner", message.isFromMe);
    field("sender", addressOf(message.sender));
    field("service", message.service);
    field("delivery", message.delivery);
    field("delivered", Moment { message.deliveredMs });
    field("read", Moment { message.readMs });
    field("deleted", message.isDeleted);
    field("text", message.text);
    if (extras)
        putExtras(field, of.list, *extras);
}

void fields(FieldWriter &field, const Conversation &conversation)
{
    field("id", conversation.identifier);
    field("title", conversation.title);
    field("names", conversation.names);
    field("addresses", conversation.addresses);
    field("ownAddresses", conversation.ownAddresses);
    field("service", conversation.service);
    field("pictureId", conversation.pictureGuid);
    field("group", conversation.isGroup);
    field("deleted", conversation.isDeleted);
    field("nowhere", conversation.isNowhere);
    field("lastDate", Moment { conversation.lastDateMs });
    field("count", qint64(conversation.messages.size()));
}

} // namespace Archive
