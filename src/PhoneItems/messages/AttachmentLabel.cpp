#include "PhoneItems/messages/AttachmentLabel.h"

#include "PhoneBackup/folder/BackupFiles.h"
#include "PhoneBackup/messages/MessageAttachments.h"
#include "PhoneBackup/source/AudioDuration.h"
#include "PhoneBackup/source/VCardText.h"
#include "PhoneItems/messages/MessageWords.h"
#include "PhoneItems/shared/DurationText.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

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

QString attachmentLabel(const MessageAttachment &attachment,
                        BackupFiles &files,
                        bool isVoice,
                        const QString &transcription)
{
    const auto label = [&](const QString &withName, const QString &without, const QString &name) {
        return name.isEmpty() ? without : QString(withName).arg(name);
    };
    using Kind = MessageAttachment::Kind;
    const bool isNamelessVoice =
        isVoice && attachment.kind == Kind::Other && attachment.name.isEmpty();
    switch (isNamelessVoice ? Kind::Audio : attachment.kind) {
    case MessageAttachment::Kind::Audio: {
        const bool isSpoken = isVoice || attachment.name.endsWith(".caf"_L1, Qt::CaseInsensitive)
            || attachment.name.endsWith(".amr"_L1, Qt::CaseInsensitive);
        if (!isSpoken)
            return label(tr("[Audio: %1]"), tr("[Audio]"), attachment.name);
        const int seconds = audioDurationSeconds(files.wholeContent(attachment.file));
        if (seconds < 0)
            return MessageWords::voiceMessage(false, transcription);
        const QString line = tr("[Voice message %1]").arg(PhoneItems::durationText(seconds));
        return transcription.isEmpty() ? line : line + u' ' + transcription;
    }
    case MessageAttachment::Kind::Contact: {
        const QString names = vCardTexts(files.wholeContent(attachment.file), "FN").join(u", "_s);
        return label(
            tr("[Contact: %1]"), tr("[Contact]"), names.isEmpty() ? attachment.name : names);
    }
    case MessageAttachment::Kind::Location:
        return label(tr("[Location: %1]"),
                     tr("[Location]"),
                     vCardText(files.wholeContent(attachment.file), "URL"));
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

} // namespace PhoneBackup
