#include "PhoneBackup/messages/MessageParts.h"

#include "PhoneBackup/messages/MessageAttachments.h"
#include "PhoneBackup/messages/MessageList.h"
#include "PhoneBackup/source/StoredText.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>

namespace PhoneBackup {

namespace {

constexpr QChar kFilePlace(0xFFFC);

constexpr qsizetype kNone = -1;
constexpr qint64 kPlaced = 0; // the row of an attachment that has found its place

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

// Those of \a spans that lie in \a stretch, which begins at \a start of the text they belong to, as
// they lie in it when it is cleaned.
QList<TextSpan>
spansIn(const QList<AttributedText::Span> &spans, QStringView stretch, qsizetype start)
{
    QList<TextSpan> result;
    qsizetype read = 0; // of the stretch
    qsizetype written = 0; // of the cleaned one
    const auto cleanedUpTo = [&](qsizetype place) {
        written += StoredText::cleaned(stretch.sliced(read, place - read).toString()).size();
        read = place;
        return written;
    };
    const auto isBefore = [](const AttributedText::Span &span, qsizetype place) {
        return span.position < place;
    };
    auto it = std::lower_bound(spans.cbegin(), spans.cend(), start, isBefore);
    for (; it != spans.cend() && it->position < start + stretch.size(); ++it) {
        const AttributedText::Span &span = *it;
        const qsizetype from = span.position - start;
        if (from < read || span.length > stretch.size() - from)
            continue;
        const qsizetype position = cleanedUpTo(from);
        const qsizetype length = cleanedUpTo(from + span.length) - position;
        if (length > 0 && !span.address.isEmpty())
            result.append({ position, length, span.address });
    }
    return result;
}

MessagePart textPart(const MessageBody &body, qsizetype start, qsizetype end)
{
    const QStringView stretch = QStringView(body.text).sliced(start, end - start);
    MessagePart part;
    part.text = StoredText::cleaned(stretch.toString());
    part.links = spansIn(body.links, stretch, start);
    part.mentions = spansIn(body.mentions, stretch, start);
    return part;
}

} // namespace

void MessageParts::set(Message &message,
                       const MessageBody &body,
                       QList<MessageAttachment> files,
                       const Hints &hints)
{
    if (!files.isEmpty() || (hints.tellsMissing && body.text.contains(kFilePlace))) {
        setParts(message, body, files, hints);
        return;
    }
    message.text = StoredText::cleaned(body.text);
    if (!body.links.isEmpty())
        m_list.extrasOf(message).links = spansIn(body.links, body.text, 0);
    if (!body.mentions.isEmpty())
        m_list.extrasOf(message).mentions = spansIn(body.mentions, body.text, 0);
}

void MessageParts::setParts(Message &message,
                            const MessageBody &body,
                            QList<MessageAttachment> &files,
                            const Hints &hints)
{
    std::vector<MessagePart> &parts = m_list.extrasOf(message).parts;
    QHash<QString, QSize> pixels;
    for (const AttributedText::File &file : body.places) {
        if (file.pixels.isValid())
            pixels.insert(file.guid, file.pixels);
    }
    for (MessageAttachment &file : files)
        file.pixels = pixels.value(file.guid);
    const auto addText = [&](qsizetype start, qsizetype end) {
        MessagePart part = textPart(body, start, end);
        if (!part.text.isEmpty())
            parts.push_back(std::move(part));
    };
    qsizetype start = 0;
    const QList<qsizetype> inText = attachmentsInText(body.text, files, body.places);
    qsizetype place = -1;
    for (const qsizetype attachment : inText) {
        place = body.text.indexOf(kFilePlace, place + 1);
        if (attachment == kNone && !hints.tellsMissing)
            continue; // it stands for something else
        addText(start, place);
        start = place + 1;
        if (attachment != kNone) {
            addFile(message, files.at(attachment), hints);
            files[attachment].row = kPlaced;
        } else {
            parts.emplace_back().kind = MessagePart::Kind::LostFile;
        }
    }
    addText(start, body.text.size());
    for (const MessageAttachment &file : std::as_const(files)) {
        if (file.row != kPlaced)
            addFile(message, file, hints);
    }
}

void MessageParts::addText(Message &message, const QString &text)
{
    MessagePart part;
    part.text = StoredText::cleaned(text);
    if (QStringView(part.text).trimmed().isEmpty())
        return;
    partsOf(message).push_back(std::move(part));
}

void MessageParts::addFile(Message &message, const MessageAttachment &file, const Hints &hints)
{
    MessagePart part;
    part.kind = MessagePart::Kind::File;
    part.file = std::make_unique<MessageAttachment>(file);
    if (file.isForPeople)
        m_attachments.readContent(*part.file, hints.isVoice);
    partsOf(message).push_back(std::move(part));
}

// The text that was everything becomes the first of several parts.
std::vector<MessagePart> &MessageParts::partsOf(Message &message)
{
    MessageExtras &extras = m_list.extrasOf(message);
    if (!message.text.isEmpty()) {
        MessagePart &first = extras.parts.emplace_back();
        first.text = std::exchange(message.text, {});
        first.links = std::exchange(extras.links, {});
        first.mentions = std::exchange(extras.mentions, {});
    }
    return extras.parts;
}

} // namespace PhoneBackup
