#include "PhoneItems/notes/AttachmentWords.h"

#include "PhoneBackup/source/MediaKind.h"
#include "platform/Translation_p.h"

#include <algorithm>
#include <array>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace Qt::StringLiterals;
using PhoneBackup::NoteAttachment;
using Kind = NoteAttachment::Kind;

namespace {

// The words for a file of which no more is known than its type.
QString fileLabel(const QString &type, const QString &name)
{
    const auto named = [&name](const QString &with, const QString &without) {
        return name.isEmpty() ? without : QString(with).arg(name);
    };
    switch (PhoneBackup::mediaKind(name.toUtf8())) {
    case PhoneBackup::MediaKind::Picture:
        return tr("[Picture: %1]").arg(name);
    case PhoneBackup::MediaKind::Video:
        return tr("[Video: %1]").arg(name);
    case PhoneBackup::MediaKind::Audio:
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

QString linkLabel(const NoteAttachment &attachment)
{
    const QString link = attachment.title.isEmpty() || attachment.url.isEmpty()
        ? attachment.title + attachment.url
        : attachment.title + u": "_s + attachment.url;
    return link.isEmpty() ? tr("[Link]") : tr("[Link: %1]").arg(link);
}

} // namespace

QString label(const NoteAttachment &attachment)
{
    const QString &name = attachment.fileName.isEmpty() ? attachment.title : attachment.fileName;
    const auto named = [&name](const QString &with, const QString &without) {
        return name.isEmpty() ? without : QString(with).arg(name);
    };
    switch (attachment.kind) {
    case Kind::Hashtag:
    case Kind::Mention:
    case Kind::NoteLink:
    case Kind::Calculation:
    case Kind::Word:
        return attachment.text.isEmpty() ? fileLabel(attachment.type, name) : attachment.text;
    case Kind::Link:
        return linkLabel(attachment);
    case Kind::Table:
        return named(tr("[Table: %1]"), tr("[Table]"));
    case Kind::Drawing:
        return named(tr("[Drawing: %1]"), tr("[Drawing]"));
    case Kind::Scan:
    case Kind::Gallery:
        return named(tr("[Scan: %1]"), tr("[Scan]"));
    case Kind::Pdf:
        return named(tr("[PDF: %1]"), tr("[PDF]"));
    case Kind::EmbeddedPicture:
        return name.isEmpty() ? tr("[Picture]") : u'[' + name + u']';
    case Kind::EmbeddedFile:
        return tr("[Attachment]");
    case Kind::File:
        break;
    }
    return fileLabel(attachment.type, name);
}

QString renderingName(const NoteAttachment &attachment, const QString &extension)
{
    QString stem = attachment.title;
    if (stem.isEmpty()) {
        stem = attachment.kind == Kind::Scan ? tr("Scan")
            : attachment.kind == Kind::Pdf   ? tr("Document")
                                             : tr("Drawing");
    }
    const QString end = extension.isEmpty() ? QString() : u'.' + extension;
    return stem.endsWith(end, Qt::CaseInsensitive) ? stem : stem + end;
}

} // namespace PhoneItems
