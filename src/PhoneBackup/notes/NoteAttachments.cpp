#include "PhoneBackup/notes/NoteAttachments.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using Kind = NoteAttachment::Kind;

namespace {

constexpr int kMostLevels = 32; // of attachments in attachments

// "com.apple.notes.inlinetextattachment." and what it is.
Kind wordOf(const QString &type)
{
    if (type.endsWith("hashtag"_L1))
        return Kind::Hashtag;
    if (type.endsWith("mention"_L1))
        return Kind::Mention;
    if (type.endsWith("link"_L1))
        return Kind::NoteLink;
    return type.contains(".calculate"_L1) ? Kind::Calculation : Kind::Word;
}

} // namespace

// The names are those of the app for notes; some came with a later release in place of others.
Kind NoteAttachments::kindOf(const QString &type)
{
    if (type.contains("inlinetext"_L1))
        return wordOf(type);
    if (type == "public.url"_L1)
        return Kind::Link;
    if (type == "com.apple.notes.table"_L1)
        return Kind::Table;
    if (type.contains("paper.doc.pdf"_L1))
        return Kind::Pdf;
    if (type.contains("paper.doc"_L1))
        return Kind::Scan;
    if (type.contains("drawing"_L1) || type.contains("paper"_L1))
        return Kind::Drawing;
    if (type.contains("gallery"_L1))
        return Kind::Gallery;
    return Kind::File;
}

bool StoredAttachment::isKeptAsRendering() const
{
    return record.kind == Kind::Drawing || record.kind == Kind::Scan || record.kind == Kind::Pdf;
}

void NoteAttachments::add(const StoredAttachment &attachment)
{
    if (m_byKey.contains(attachment.record.id))
        return;
    m_byKey.insert(attachment.record.id, m_attachments.size());
    m_byIdentifier.insert(attachment.record.identifier, m_attachments.size());
    m_attachments.append(attachment);
}

void NoteAttachments::addMedium(qint64 key, const Medium &medium, qint64 attachment)
{
    m_media.insert(key, medium);
    if (attachment != 0)
        m_mediumOfAttachment.insert(attachment, key);
}

void NoteAttachments::place(const QString &identifier, qint64 note)
{
    const auto known = m_byIdentifier.constFind(identifier);
    if (known == m_byIdentifier.constEnd())
        return;
    StoredAttachment &attachment = m_attachments[*known];
    if (attachment.note == 0 && attachment.record.parent == 0)
        attachment.note = note;
}

const StoredAttachment *NoteAttachments::find(const QString &identifier) const
{
    const auto known = m_byIdentifier.constFind(identifier);
    return known == m_byIdentifier.constEnd() ? nullptr : &m_attachments[*known];
}

NoteAttachment NoteAttachments::record(const StoredAttachment &attachment) const
{
    NoteAttachment record = attachment.record;
    const Medium medium = mediumOf(attachment);
    record.fileName = medium.name;
    if (record.bytes < 0)
        record.bytes = medium.bytes;
    return record;
}

NoteAttachments::Medium NoteAttachments::mediumOf(const StoredAttachment &attachment) const
{
    const qint64 key = attachment.medium != 0 ? attachment.medium
                                              : m_mediumOfAttachment.value(attachment.record.id);
    return m_media.value(key);
}

// Pages of a scan belong to the note of the scan.
qint64 NoteAttachments::noteOf(const StoredAttachment &attachment) const
{
    qint64 note = attachment.note;
    qint64 parent = attachment.record.parent;
    for (int level = 0; level < kMostLevels && note == 0; ++level) {
        const auto known = m_byKey.constFind(parent);
        if (known == m_byKey.constEnd())
            break;
        note = m_attachments[*known].note;
        parent = m_attachments[*known].record.parent;
    }
    return note;
}

} // namespace PhoneBackup
