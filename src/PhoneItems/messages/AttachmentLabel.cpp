#include "PhoneItems/messages/AttachmentLabel.h"

#include "PhoneBackup/messages/MessageAttachment.h"
#include "PhoneItems/messages/MessageWords.h"
#include "PhoneItems/shared/DurationText.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using PhoneBackup::MessageAttachment;
using namespace Qt::StringLiterals;

namespace {

// A type that is none of those which the page shows.
QString otherType(const QString &mimeType)
{
    const bool misleads = mimeType.contains("text"_L1) || mimeType.contains("image"_L1)
        || mimeType.contains("video"_L1);
    return mimeType.isEmpty() || misleads ? u"application/octet-stream"_s : mimeType;
}

QString shownType(QLatin1StringView wanted, const MessageAttachment &attachment)
{
    if (attachment.mimeType.startsWith(wanted))
        return attachment.mimeType;
    const QString extension = attachment.name.section(u'.', -1).toLower();
    // The first of the words "text", "image" and "video" in a type decides what it is.
    return wanted + (extension.contains("text"_L1) ? u"unknown"_s : extension);
}

} // namespace

QString
attachmentLabel(const MessageAttachment &attachment, bool isVoice, const QString &transcription)
{
    const auto label = [&](const QString &withName, const QString &without, const QString &name) {
        return name.isEmpty() ? without : QString(withName).arg(name);
    };
    if (attachment.isRecording(isVoice)) {
        if (attachment.seconds == MessageAttachment::kUnknownSeconds)
            return MessageWords::voiceMessage(false, transcription);
        const QString line =
            tr("[Voice message %1]").arg(PhoneItems::durationText(attachment.seconds));
        return transcription.isEmpty() ? line : line + u' ' + transcription;
    }
    switch (attachment.kind) {
    case MessageAttachment::Kind::Audio:
        return label(tr("[Audio: %1]"), tr("[Audio]"), attachment.name);
    case MessageAttachment::Kind::Contact: {
        const QString names = attachment.people.join(u", "_s);
        return label(
            tr("[Contact: %1]"), tr("[Contact]"), names.isEmpty() ? attachment.name : names);
    }
    case MessageAttachment::Kind::Location:
        return label(tr("[Location: %1]"), tr("[Location]"), attachment.address);
    default:
        return label(tr("[File: %1]"), tr("[File]"), attachment.name);
    }
}

QString attachmentType(const MessageAttachment &attachment)
{
    switch (attachment.kind) {
    case MessageAttachment::Kind::Picture:
        return shownType("image/"_L1, attachment);
    case MessageAttachment::Kind::Video:
        return shownType("video/"_L1, attachment);
    default:
        return otherType(attachment.mimeType);
    }
}

} // namespace PhoneItems
