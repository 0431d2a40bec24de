#include "PhoneItems/whatsapp/WhatsappLines.h"

#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/whatsapp/WhatsappStore.h"
#include "PhoneItems/whatsapp/WhatsappContent.h"
#include "PhoneItems/whatsapp/WhatsappWords.h"

namespace PhoneItems {

using namespace Qt::StringLiterals;
using namespace PhoneBackup;

namespace {

using Kind = WhatsappMessage::Kind;
namespace Type = BkWhatsappType;

Type::Code codeByMime(const QString &mime)
{
    if (mime.startsWith("image/"_L1, Qt::CaseInsensitive))
        return Type::Picture;
    if (mime.startsWith("video/"_L1, Qt::CaseInsensitive))
        return Type::Video;
    return mime.startsWith("audio/"_L1, Qt::CaseInsensitive) ? Type::Audio : Type::Text;
}

Type::Code codeOf(const WhatsappMessage &message)
{
    switch (message.kind) {
    case Kind::Picture:
        return Type::Picture;
    case Kind::Video:
    case Kind::Gif:
    case Kind::VideoNote:
        return Type::Video;
    case Kind::Audio:
        return Type::Audio;
    case Kind::ContactCard:
        return Type::ContactCard;
    case Kind::Place:
        return Type::Location;
    case Kind::Event:
        return Type::GroupEvent;
    case Kind::Business:
    case Kind::Unsupported:
        return codeByMime(message.details().file.mimeType);
    default:
        return Type::Text;
    }
}

void addLine(QString &text, const QString &line)
{
    text += text.isEmpty() ? line : u'\n' + line;
}

} // namespace

WhatsappLines::WhatsappLines(Source &source, const WhatsappChat &chat, WhatsappContent &content)
    : m_source(source)
    , m_chat(chat)
    , m_content(content)
{
}

bool WhatsappLines::read()
{
    const bool mayTellCreation = m_chat.creator.isPerson();
    if (mayTellCreation)
        addCreation();
    const bool read = m_chat.store->reader().read(
        m_chat, [this](WhatsappMessage &&message) { add(std::move(message)); });
    const QList<BkWhatsappMsg *> &lines = m_content.messages();
    if (mayTellCreation
        && (m_tellsCreation || lines.size() == 1 || lines.first()->content().isEmpty()))
        m_content.removeFirst();
    m_relations.apply(m_content, !m_chat.isWithPerson());
    return read;
}

// Who made the group, at the head of the chat; no text when that is not to be shown.
void WhatsappLines::addCreation()
{
    WhatsappLine &line = m_content.addLine();
    line.files = &m_source.files();
    line.code = Type::GroupEvent;
    if (!m_source.messageFilter().accepts(m_chat.creationDate))
        return;
    WhatsappEvent event;
    event.kind = WhatsappEvent::Kind::GroupCreated;
    event.by = m_chat.store->reader().creator(m_chat);
    if (event.by.who != WhatsappPerson::Who::Nobody)
        line.text = WhatsappWords::event(event);
    if (m_chat.creationDate.isValid())
        line.dateMs = m_chat.creationDate.toMSecsSinceEpoch();
}

void WhatsappLines::add(WhatsappMessage &&message)
{
    WhatsappLine &line = m_content.addLine();
    line.files = &m_source.files();
    line.kind = message.kind;
    line.code = codeOf(message);
    if (message.date.isValid())
        line.dateMs = message.date.toMSecsSinceEpoch();
    line.fromMe = message.isFromOwner;
    line.sentDone = !message.isFailed;
    line.broadcast = message.isBroadcast;
    line.idHash = WhatsappRelations::hashOf(message.id);
    if (message.kind == Kind::Text)
        line.text = std::move(message.text);
    else
        line.text = WhatsappWords::text(message);
    // What happened is said by nobody: a bubble would put the words into somebody's mouth.
    const bool isEvent = message.kind == Kind::Event;
    if (!isEvent && !m_chat.isWithPerson() && !message.isFromOwner
        && message.sender.who != WhatsappPerson::Who::Nobody)
        line.author = WhatsappWords::name(message.sender);
    if (!message.more)
        return;
    const WhatsappDetails &details = *message.more;
    m_tellsCreation = m_tellsCreation
        || (details.event && details.event->kind == WhatsappEvent::Kind::GroupCreated);
    setFile(line, message);
    if (!details.quote.id.isEmpty() && !isEvent && !line.isDeleted())
        m_relations.addAnswer(line, details.quote.id, WhatsappWords::quoted(details.quote));
    for (const WhatsappReaction &reaction : details.reactions) {
        m_relations.addReaction({ &line,
                                  reaction.by.isOwner(),
                                  WhatsappWords::reactor(reaction.by, !m_chat.isWithPerson()),
                                  reaction.emoji,
                                  reaction.date });
    }
    if (!details.reactionCounts.empty())
        addLine(line.text, WhatsappWords::reactionCounts(details.reactionCounts));
}

void WhatsappLines::setFile(WhatsappLine &line, const WhatsappMessage &message) const
{
    const WhatsappFile &file = message.details().file;
    line.title = file.title;
    if (message.kind != Kind::Place)
        line.mediaFile = file.file;
    // What stands for a picture or film that the phone never had, or has no longer.
    if (line.mediaFile == FileIndex::kNone
        && (line.code == Type::Picture || line.code == Type::Video)) {
        line.mediaFile = file.preview;
        line.isPreview = line.mediaFile != FileIndex::kNone;
        // It looks like a picture.
        if (line.isPreview && line.code == Type::Video)
            addLine(line.text, WhatsappWords::previewOfVideo());
    }
}

} // namespace PhoneItems
