#include "PhoneBackup/notes/NoteAttachments.h"

#include "PhoneBackup/source/MediaKind.h"
#include "platform/Translation_p.h"

#include <algorithm>
#include <array>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMostLevels = 32; // of attachments in attachments

// The words for a file of which no more is known than its type.
QString fileLabel(const QString &type, const QString &name)
{
    const auto named = [&name](const QString &with, const QString &without) {
        return name.isEmpty() ? without : QString(with).arg(name);
    };
    switch (mediaKind(name.toUtf8())) {
    case MediaKind::Picture:
        return tr("[Picture: %1]").arg(name);
    case MediaKind::Video:
        return tr("[Video: %1]").arg(name);
    case MediaKind::Audio:
        return tr("[Audio: %1]").arg(name);
    default:
        break;
    }
    static constexpr std::array<QLatin1StringView, 7> kPictures { "image"_L1, "jpeg"_L1, "png"_L1,
                                                                  "heic"_L1,  "heif"_L1, "tiff"_L1,
                                                                  "gif"_L1 };
    const auto isOf = [&type](QLatin1StringView word) { return type.contains(word); };
    if (std::any_of(kPictures.begin(), kPictures.end(), isOf))
        return named(tr("[Picture: %1]"), tr("[Picture]"));
    if (isOf("movie"_L1) || isOf("video"_L1) || isOf("mpeg-4"_L1))
        return named(tr("[Video: %1]"), tr("[Video]"));
    if (isOf("audio"_L1))
        return named(tr("[Audio: %1]"), tr("[Audio]"));
    return named(tr("[File: %1]"), tr("[File]"));
}

} // namespace

NoteAttachment::Kind NoteAttachment::kind() const
{
    if (type.contains("inlinetext"_L1))
        return Kind::Word;
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

bool NoteAttachment::isKeptAsRendering() const
{
    const Kind is = kind();
    return is == Kind::Drawing || is == Kind::Scan || is == Kind::Pdf;
}

void NoteAttachments::add(const NoteAttachment &attachment)
{
    if (m_byKey.contains(attachment.key))
        return;
    m_byKey.insert(attachment.key, m_attachments.size());
    m_byIdentifier.insert(attachment.identifier, m_attachments.size());
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
    NoteAttachment &attachment = m_attachments[*known];
    if (attachment.note == 0 && attachment.parent == 0)
        attachment.note = note;
}

NoteAttachment NoteAttachments::find(const QString &identifier, const QString &type) const
{
    const auto known = m_byIdentifier.constFind(identifier);
    NoteAttachment attachment =
        known == m_byIdentifier.constEnd() ? NoteAttachment() : m_attachments[*known];
    if (attachment.type.isEmpty())
        attachment.type = type;
    return attachment;
}

NoteAttachments::Medium NoteAttachments::mediumOf(const NoteAttachment &attachment) const
{
    const qint64 key =
        attachment.medium != 0 ? attachment.medium : m_mediumOfAttachment.value(attachment.key);
    return m_media.value(key);
}

// Pages of a scan belong to the note of the scan.
qint64 NoteAttachments::noteOf(const NoteAttachment &attachment) const
{
    qint64 note = attachment.note;
    qint64 parent = attachment.parent;
    for (int level = 0; level < kMostLevels && note == 0; ++level) {
        const auto known = m_byKey.constFind(parent);
        if (known == m_byKey.constEnd())
            break;
        note = m_attachments[*known].note;
        parent = m_attachments[*known].parent;
    }
    return note;
}

QString NoteAttachments::label(const NoteAttachment &attachment) const
{
    const Medium medium = mediumOf(attachment);
    const QString name = medium.name.isEmpty() ? attachment.title : medium.name;
    const auto named = [&name](const QString &with, const QString &without) {
        return name.isEmpty() ? without : QString(with).arg(name);
    };
    switch (attachment.kind()) {
    case NoteAttachment::Kind::Word:
        if (!attachment.alternative.isEmpty())
            return attachment.alternative;
        break;
    case NoteAttachment::Kind::Link: {
        const QString link = attachment.title.isEmpty() || attachment.url.isEmpty()
            ? attachment.title + attachment.url
            : attachment.title + u": "_s + attachment.url;
        return link.isEmpty() ? tr("[Link]") : tr("[Link: %1]").arg(link);
    }
    case NoteAttachment::Kind::Table:
        return named(tr("[Table: %1]"), tr("[Table]"));
    case NoteAttachment::Kind::Drawing:
        return named(tr("[Drawing: %1]"), tr("[Drawing]"));
    case NoteAttachment::Kind::Scan:
    case NoteAttachment::Kind::Gallery:
        return named(tr("[Scan: %1]"), tr("[Scan]"));
    case NoteAttachment::Kind::Pdf:
        return named(tr("[PDF: %1]"), tr("[PDF]"));
    case NoteAttachment::Kind::File:
        break;
    }
    return fileLabel(attachment.type, name);
}

QString NoteAttachments::renderingName(const NoteAttachment &attachment,
                                       const QString &extension) const
{
    QString stem = attachment.title;
    if (stem.isEmpty()) {
        const NoteAttachment::Kind kind = attachment.kind();
        stem = kind == NoteAttachment::Kind::Scan ? tr("Scan")
            : kind == NoteAttachment::Kind::Pdf   ? tr("Document")
                                                  : tr("Drawing");
    }
    const QString end = extension.isEmpty() ? QString() : u'.' + extension;
    return stem.endsWith(end, Qt::CaseInsensitive) ? stem : stem + end;
}

} // namespace PhoneBackup
