#include "model/MessageParts.h"

#include "model/AttachmentLabel.h"
#include "model/ConversationContent.h"
#include "model/Source.h"
#include "model/StoredText.h"
#include "platform/Translation_p.h"

#include <algorithm>

namespace PhoneBackup {

using DataExport::tr;

namespace {

constexpr QChar kFilePlace(0xFFFC);

// The one of \a attachments that stands at \a place: the next one when nobody says which.
QList<MessageAttachment>::iterator attachmentAt(QList<MessageAttachment> &attachments,
                                                const QList<AttributedText::File> &places,
                                                qsizetype place)
{
    const auto stands = [place](const auto &file) { return file.position == place; };
    const auto named = std::find_if(places.cbegin(), places.cend(), stands);
    if (named == places.cend())
        return attachments.begin();
    const auto isNamed = [&](const auto &other) { return other.guid == named->guid; };
    const auto found = std::find_if(attachments.begin(), attachments.end(), isNamed);
    return found == attachments.end() ? attachments.begin() : found;
}

} // namespace

void MessageParts::set(Message &message,
                       const QString &text,
                       QList<MessageAttachment> attachments,
                       const Hints &hints)
{
    if (attachments.isEmpty()) {
        message.text = StoredText::cleaned(text);
        return;
    }
    qsizetype start = 0;
    for (qsizetype place = text.indexOf(kFilePlace); place >= 0 && !attachments.isEmpty();
         place = text.indexOf(kFilePlace, start)) {
        addText(message, text.sliced(start, place - start));
        start = place + 1;
        const auto attachment = attachmentAt(attachments, hints.places, place);
        addFile(message, *attachment, hints);
        attachments.erase(attachment);
    }
    addText(message, text.sliced(start));
    for (const MessageAttachment &attachment : std::as_const(attachments))
        addFile(message, attachment, hints);
}

void MessageParts::addText(Message &message, const QString &text)
{
    const QString part = StoredText::cleaned(text);
    if (QStringView(part).trimmed().isEmpty())
        return;
    if (message.text.isEmpty() && message.pieces().isEmpty())
        message.text = part;
    else
        m_content.addText(message, part);
    m_content.extrasOf(message).parts.append(part);
}

void MessageParts::addFile(Message &message,
                           const MessageAttachment &attachment,
                           const Hints &hints)
{
    if (!attachment.isForPeople)
        return;
    const bool isPicture = attachment.kind == MessageAttachment::Kind::Picture;
    if (isPicture || attachment.kind == MessageAttachment::Kind::Video)
        m_content.extrasOf(message).parts.append(isPicture ? tr("[Picture]") : tr("[Video]"));
    else // what the page does not show by itself gets a line that says what it is
        addText(message,
                attachmentLabel(attachment, m_source.files(), hints.isVoice, hints.transcription));
    m_content.addFile(
        message, attachmentType(attachment), m_source.files(), attachment.file, attachment.name);
}

} // namespace PhoneBackup
