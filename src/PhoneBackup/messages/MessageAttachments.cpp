#include "PhoneBackup/messages/MessageAttachments.h"

#include "Files/PictureFormat.h"
#include "PhoneBackup/messages/AttachmentFiles.h"
#include "PhoneBackup/messages/SmsDatabase.h"
#include "PhoneBackup/source/AudioDuration.h"
#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/Table.h"
#include "PhoneBackup/source/VCardText.h"

#include <algorithm>
#include <array>
#include <optional>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

using Kind = MessageAttachment::Kind;

constexpr qint64 kMagicBytes = 16;

enum Column { // of the query for an attachment
    kGuid,
    kPath,
    kName,
    kMimeType,
    kUti,
    kCreated,
    kHidden,
    kBytes,
    kSticker,
    kDescription,
};

std::optional<Kind> kindByName(const QString &name)
{
    const QByteArray utf8 = name.toUtf8();
    switch (mediaKind(utf8)) {
    case MediaKind::Picture:
        return Kind::Picture;
    case MediaKind::Video:
        return Kind::Video;
    case MediaKind::Audio:
        return Kind::Audio;
    case MediaKind::Book:
    case MediaKind::Auxiliary:
        return Kind::Other;
    case MediaKind::Unknown:
        break;
    }
    const QString lower = name.toLower();
    if (lower.endsWith(".heics"_L1)) // a sticker that moves
        return Kind::Picture;
    if (lower.endsWith(".loc.vcf"_L1))
        return Kind::Location;
    return lower.endsWith(".vcf"_L1) ? std::optional(Kind::Contact) : std::nullopt;
}

std::optional<Kind> kindByType(const QString &mimeType, const QString &uti)
{
    static constexpr std::array<std::pair<QLatin1StringView, Kind>, 15> kTypes { {
        { "image/"_L1, Kind::Picture },
        { "video/"_L1, Kind::Video },
        { "audio/"_L1, Kind::Audio },
        { "text/vcard"_L1, Kind::Contact },
        { "text/x-vcard"_L1, Kind::Contact },
        { "text/x-vlocation"_L1, Kind::Location },
        { "public.jpeg"_L1, Kind::Picture },
        { "public.png"_L1, Kind::Picture },
        { "public.heic"_L1, Kind::Picture },
        { "public.tiff"_L1, Kind::Picture },
        { "com.compuserve.gif"_L1, Kind::Picture },
        { "public.mpeg-4"_L1, Kind::Video },
        { "com.apple.quicktime-movie"_L1, Kind::Video },
        { "com.apple.coreaudio-format"_L1, Kind::Audio },
        { "public.vcard"_L1, Kind::Contact },
    } };
    for (const QString &text : { mimeType, uti }) {
        for (const auto &[beginning, kind] : kTypes) {
            if (text.startsWith(beginning, Qt::CaseInsensitive))
                return kind;
        }
    }
    return std::nullopt;
}

Kind kindByContent(const QByteArray &bytes)
{
    if (bytes.startsWith("caff") || bytes.startsWith("#!AMR") || bytes.startsWith("ID3"))
        return Kind::Audio;
    if (bytes.startsWith("BEGIN:VCARD"))
        return Kind::Contact;
    const QByteArrayView brand = PictureFormat::brand(bytes);
    if (!brand.isEmpty() && !PictureFormat::isPictureBrand(brand))
        return brand == "M4A " ? Kind::Audio : Kind::Video;
    const QByteArrayView format = PictureFormat::of(bytes);
    const bool isTextLikely = format == "bmp"; // known by two letters
    return format.isEmpty() || isTextLikely ? Kind::Other : Kind::Picture;
}

} // namespace

MessageAttachment::Kind MessageAttachment::kindOfType(const QString &mimeType)
{
    return kindByType(mimeType, {}).value_or(Kind::Other);
}

bool MessageAttachment::isOfBalloon() const
{
    return name.endsWith(".pluginPayloadAttachment"_L1)
        || path.endsWith(".pluginPayloadAttachment"_L1);
}

bool MessageAttachment::isRecording(bool isSpoken) const
{
    if (kind == Kind::Other)
        return isSpoken && name.isEmpty();
    return kind == Kind::Audio
        && (isSpoken || name.endsWith(".caf"_L1, Qt::CaseInsensitive)
            || name.endsWith(".amr"_L1, Qt::CaseInsensitive));
}

MessageAttachments::MessageAttachments(Source &source, SmsDatabase &database)
    : m_source(source)
    , m_database(database)
{
    const bool isFirst = !database.hasTable(u"attachment"_s);
    m_table = isFirst ? u"madrid_attachment"_s : u"attachment"_s;
    const bool isMissing = isFirst ? database.hasTable(u"chat_message_join"_s)
                                   : !database.hasTable(u"message_attachment_join"_s);
    if (isMissing && database.hasTable(u"message"_s))
        database.addLoss(Notice("messages.noAttachments"));
    if (!database.hasTable(m_table))
        return;
    if (isFirst)
        readLinks(m_table, u"message_id"_s, {});
    else
        readLinks(u"message_attachment_join"_s, u"message_id"_s, u"attachment_id"_s);

    QStringList wanted;
    for (const QString &name : { isFirst ? u"attachment_guid"_s : u"guid"_s,
                                 u"filename"_s,
                                 u"transfer_name"_s,
                                 u"mime_type"_s,
                                 isFirst ? u"uti_type"_s : u"uti"_s,
                                 u"created_date"_s,
                                 u"hide_attachment"_s,
                                 u"total_bytes"_s,
                                 u"is_sticker"_s,
                                 u"emoji_image_short_description"_s })
        wanted.append(database.column(m_table, name));
    m_query = database.prepare(
        u"SELECT %1 FROM %2 WHERE ROWID = ?1"_s.arg(wanted.join(u", "_s), m_table));
}

void MessageAttachments::readLinks(const QString &table,
                                   const QString &message,
                                   const QString &attachment)
{
    Table links(m_database, table);
    if (!links.hasColumn(message) || !(attachment.isEmpty() || links.hasColumn(attachment)))
        return;
    const auto [ofMessage, file] = links.columns(message, attachment);
    links.forEach([&, ofMessage = ofMessage, file = file](const Table::Row &row) {
        m_links.push_back(
            { row.integer(ofMessage), attachment.isEmpty() ? row.id() : row.integer(file) });
    });
    const auto before = [](const Link &a, const Link &b) { return a.message < b.message; };
    std::stable_sort(m_links.begin(), m_links.end(), before);
}

MessageAttachments::~MessageAttachments() = default;

QList<MessageAttachment> MessageAttachments::of(qint64 message)
{
    QList<MessageAttachment> result;
    const auto before = [](const Link &link, qint64 row) { return link.message < row; };
    auto it = std::lower_bound(m_links.cbegin(), m_links.cend(), message, before);
    for (; it != m_links.cend() && it->message == message; ++it) {
        const qint64 row = it->attachment;
        const auto isSame = [row](const MessageAttachment &other) { return other.row == row; };
        if (std::any_of(result.cbegin(), result.cend(), isSame))
            continue;
        const MessageAttachment attachment = read(row);
        if (attachment.row != 0)
            result.append(attachment);
    }
    return result;
}

QList<qint64> MessageAttachments::rows()
{
    QList<qint64> rows;
    if (m_query) {
        const Table table(m_database, m_table);
        table.forEach([&rows](const Table::Row &row) { rows.append(row.id()); });
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

MessageAttachment MessageAttachments::read(qint64 row)
{
    MessageAttachment attachment;
    if (!m_query)
        return attachment;
    m_query->reset();
    m_query->bind(1, row);
    switch (m_query->step()) {
    case Statement::Step::Row:
        break;
    case Statement::Step::Done:
        return attachment;
    case Statement::Step::Failed:
        m_database.addFailure(*m_query);
        return attachment;
    }
    attachment.row = row;
    attachment.guid = m_query->text(kGuid);
    attachment.path = m_query->text(kPath);
    attachment.name = m_query->text(kName).trimmed();
    if (attachment.name.isEmpty())
        attachment.name = attachment.path.section(u'/', -1);
    attachment.mimeType = m_query->text(kMimeType).trimmed().toLower();
    attachment.created = m_query->integer(kCreated);
    attachment.isForPeople = m_query->integer(kHidden) == 0 && !attachment.isOfBalloon();
    attachment.sentBytes = m_query->integer(kBytes);
    attachment.isSticker = m_query->integer(kSticker) != 0;
    attachment.description = StoredText::cleaned(m_query->text(kDescription));
    attachment.file = AttachmentFiles(m_source.index()).find(attachment.path);
    attachment.kind = kindOf(attachment, m_query->text(kUti));
    return attachment;
}

MessageAttachment::Kind MessageAttachments::kindOf(const MessageAttachment &attachment,
                                                   const QString &uti) const
{
    std::optional<Kind> kind = kindByName(attachment.name);
    if (!kind)
        kind = kindByName(attachment.path);
    if (!kind)
        kind = kindByType(attachment.mimeType, uti);
    if (kind)
        return *kind == Kind::Contact && attachment.mimeType == "text/x-vlocation"_L1
            ? Kind::Location
            : *kind;
    return attachment.file == FileIndex::kNone
        ? Kind::Other
        : kindByContent(m_source.files().content(attachment.file, kMagicBytes));
}

void MessageAttachments::readContent(MessageAttachment &attachment, bool isSpoken)
{
    BackupFiles &files = m_source.files();
    if (attachment.isRecording(isSpoken))
        attachment.seconds = audioDurationSeconds(files.wholeContent(attachment.file));
    else if (attachment.kind == Kind::Contact)
        attachment.people = vCardTexts(files.wholeContent(attachment.file), "FN");
    else if (attachment.kind == Kind::Location)
        attachment.address = vCardText(files.wholeContent(attachment.file), "URL");
}

} // namespace PhoneBackup
