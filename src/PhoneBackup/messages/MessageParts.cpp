#include "PhoneBackup/messages/MessageParts.h"

#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneItems/messages/AttachmentLabel.h"
#include "PhoneItems/messages/ConversationContent.h"
#include "PhoneItems/messages/MessageWords.h"
#include "platform/Translation_p.h"

#include <QHash>
#include <QSet>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

namespace {

constexpr QChar kFilePlace(0xFFFC);

constexpr qsizetype kNone = -1;
constexpr qint64 kShown = 0; // the row of an attachment that has found its place

// Which of \a attachments stands at each place of a file in \a text, kNone for none: the one that
// \a named says, else the next that is named nowhere.
QList<qsizetype> attachmentsInText(const QString &text,
                                   const QList<MessageAttachment> &attachments,
                                   const QList<AttributedText::File> &named)
{
    QHash<QString, qsizetype> byGuid;
    for (qsizetype i = 0; i < attachments.size(); ++i)
        byGuid.insert(attachments.at(i).guid, i);
    QHash<qsizetype, qsizetype> namedAt;
    QSet<qsizetype> taken;
    for (const AttributedText::File &file : named) {
        const qsizetype attachment = byGuid.value(file.guid, kNone);
        if (attachment == kNone || taken.contains(attachment))
            continue;
        namedAt.insert(file.position, attachment);
        taken.insert(attachment);
    }
    QList<qsizetype> result;
    qsizetype next = 0;
    for (qsizetype place = text.indexOf(kFilePlace); place >= 0;
         place = text.indexOf(kFilePlace, place + 1)) {
        qsizetype attachment = namedAt.value(place, kNone);
        while (attachment == kNone && next < attachments.size()) {
            if (!taken.contains(next))
                attachment = next;
            ++next;
        }
        result.append(attachment);
    }
    return result;
}

// Adds \a word to \a text, with blanks between it and what is written before and \a after.
void addWord(QString &text, const QString &word, QChar after)
{
    if (!text.isEmpty() && !text.back().isSpace())
        text += u' ';
    text += word;
    if (!after.isNull() && !after.isSpace() && after != kFilePlace)
        text += u' ';
}

} // namespace

void MessageParts::set(Message &message,
                       const QString &text,
                       QList<MessageAttachment> attachments,
                       const Hints &hints)
{
    if (attachments.isEmpty() && !(hints.tellsMissing && text.contains(kFilePlace))) {
        message.text = StoredText::cleaned(text);
        return;
    }
    QString part;
    qsizetype start = 0;
    for (const qsizetype attachment : attachmentsInText(text, attachments, hints.places)) {
        const qsizetype place = text.indexOf(kFilePlace, start);
        part += QStringView(text).sliced(start, place - start);
        start = place + 1;
        if (attachment != kNone) {
            addText(message, part);
            part.clear();
            addFile(message, attachments.at(attachment), hints);
            attachments[attachment].row = kShown;
        } else if (hints.tellsMissing) {
            addWord(
                part, MessageWords::attachment(), start < text.size() ? text.at(start) : QChar());
        }
    }
    part += QStringView(text).sliced(start);
    addText(message, part);
    for (const MessageAttachment &attachment : std::as_const(attachments)) {
        if (attachment.row != kShown)
            addFile(message, attachment, hints);
    }
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
    m_content.addFile(message,
                      attachmentType(attachment),
                      m_source.files(),
                      attachment.file,
                      attachment.name,
                      attachment.path.isEmpty());
}

} // namespace PhoneBackup
