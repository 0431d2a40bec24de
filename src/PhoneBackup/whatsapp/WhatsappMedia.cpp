#include "PhoneBackup/whatsapp/WhatsappMedia.h"

#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/VCardText.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"
#include "PhoneBackup/whatsapp/WhatsappPacked.h"

#include <QRegularExpression>

#include <cmath>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kOldDomain = "AppDomain-net.whatsapp.WhatsApp";
constexpr qint64 kRecorded = 1; // among the origins of sound
constexpr double kMostPixels = 1 << 20;

// "=E4=BD=A0" as older cards write a name; anything else as it is.
QString withoutQuoting(const QString &name)
{
    static const QRegularExpression quoted(u"^(=[0-9A-Fa-f]{2})+$"_s);
    if (!quoted.match(name).hasMatch())
        return name;
    return QString::fromUtf8(QByteArray::fromPercentEncoding(name.toLatin1(), '='));
}

// One card or several, with one name or several beside them.
std::vector<WhatsappCard> cardsIn(const QString &text, const QString &name)
{
    std::vector<WhatsappCard> result;
    if (text.isEmpty() && name.isEmpty())
        return result;
    const QStringList cards = text.split(u"_$!<VCard-Separator>!$_"_s, Qt::SkipEmptyParts);
    QStringList names = name.split(u"_$!<Name-Separator>!$_"_s);
    if (names.size() == cards.size() + 1 && !cards.isEmpty())
        names.removeFirst(); // a summary of the others
    for (qsizetype i = 0; i < std::max(cards.size(), names.size()); ++i) {
        WhatsappCard &card = result.emplace_back();
        card.vCard = cards.value(i);
        const QByteArray bytes = card.vCard.toUtf8();
        card.name = WhatsappNames::cleaned(withoutQuoting(names.value(i).trimmed()));
        if (card.name.isEmpty())
            card.name = vCardText(bytes, "FN");
        for (QString number : vCardTexts(bytes, "TEL")) {
            if (number.startsWith("tel:"_L1, Qt::CaseInsensitive))
                number.remove(0, 4);
            card.numbers.append(number);
        }
    }
    return result;
}

// 0, 0 stands for no place.
bool isPlace(double latitude, double longitude)
{
    return std::abs(latitude) <= 90 && std::abs(longitude) <= 180
        && (latitude != 0 || longitude != 0);
}

} // namespace

WhatsappMedia::Columns::Columns(RowDatabase &database)
    : table(database, u"ZWAMEDIAITEM"_s)
    , path(table.column(u"ZMEDIALOCALPATH"_s))
    , title(table.column(u"ZTITLE"_s))
    , cardName(table.column(u"ZVCARDNAME"_s))
    , cardText(table.column(u"ZVCARDSTRING"_s))
    , latitude(table.column(u"ZLATITUDE"_s))
    , longitude(table.column(u"ZLONGITUDE"_s))
    , preview(table.column(u"ZXMPPTHUMBPATH"_s))
    , metadata(table.column(u"ZMETADATA"_s))
    , size(table.column(u"ZFILESIZE"_s))
    , duration(table.column(u"ZMOVIEDURATION"_s))
    , origin(table.column(u"ZMEDIAORIGIN"_s))
    , rows(table.lookup())
{
}

WhatsappMedia::WhatsappMedia(Source &source, const WhatsappHome &home, WhatsappDatabase &database)
    : m_source(source)
    , m_home(home)
    , m_rows(database, u"ZWAMEDIAITEM"_s, u"ZMESSAGE"_s)
    , m_columns(database)
{
}

const Table::Row *WhatsappMedia::row(qint64 media, qint64 messageRow)
{
    if (const Table::Row *row = media != 0 ? m_columns.rows.find(media) : nullptr)
        return row;
    const qint64 back = m_rows.first(messageRow);
    return back != 0 && back != media ? m_columns.rows.find(back) : nullptr;
}

bool WhatsappMedia::hasFile(qint64 media, qint64 messageRow)
{
    const Table::Row *found = row(media, messageRow);
    return found && find(found->text(m_columns.path)) != FileIndex::kNone;
}

void WhatsappMedia::read(qint64 media, qint64 messageRow, WhatsappMessage &message)
{
    using Kind = WhatsappMessage::Kind;
    const Table::Row *found = row(media, messageRow);
    if (!found)
        return;
    WhatsappDetails &details = message.makeDetails();
    WhatsappFile &file = details.file;
    const QString cardName = found->text(m_columns.cardName).trimmed();
    const QString cardText = found->text(m_columns.cardText);
    const double latitude = found->number(m_columns.latitude).value_or(0);
    const double longitude = found->number(m_columns.longitude).value_or(0);
    file.row = found->id();
    file.path = found->text(m_columns.path);
    file.title = StoredText::cleaned(found->text(m_columns.title)).trimmed();
    file.preview = findPreview(found->text(m_columns.preview), file.path);
    WhatsappPacked::readMetadata(found->bytes(m_columns.metadata), details);
    if (message.kind != Kind::Link)
        details.links.clear();

    // What other kinds have in these columns is something else, though it be in the same ones.
    switch (message.kind) {
    case Kind::ContactCard:
        details.cards = cardsIn(cardText, cardName);
        break;
    case Kind::Place:
        details.place = WhatsappPlace { file.title, StoredText::cleaned(cardName), {}, {} };
        if (isPlace(latitude, longitude)) {
            details.place->latitude = latitude;
            details.place->longitude = longitude;
        }
        break;
    case Kind::Deleted:
        details.deletedBy = Jid(cardText);
        break;
    default:
        file.mimeType = cardText;
        if (latitude >= 1 && longitude >= 1 && latitude <= kMostPixels && longitude <= kMostPixels)
            file.pixels = QSize(int(latitude), int(longitude));
        break;
    }
    file.file = find(file.path);
    if (file.file != FileIndex::kNone)
        file.state = WhatsappFile::State::Present;
    else if (!file.path.isEmpty())
        file.state = WhatsappFile::State::Missing;
    else if (isFileKind(message.kind))
        file.state = WhatsappFile::State::NeverDownloaded;
    file.bytes = std::max<qint64>(found->integer(m_columns.size), 0);
    if (message.kind == Kind::Audio || message.kind == Kind::Video
        || message.kind == Kind::VideoNote || message.kind == Kind::Gif)
        file.seconds = found->number(m_columns.duration);
    file.isRecorded = message.kind == Kind::Audio && found->integer(m_columns.origin) == kRecorded;
}

FileIndex::Row WhatsappMedia::find(const QString &path) const
{
    QString relative = path;
    while (relative.startsWith(u'/'))
        relative.remove(0, 1);
    if (relative.isEmpty())
        return FileIndex::kNone;
    const FileIndex &index = m_source.index();
    const auto file = [&](QByteArrayView domain, const QString &folder) {
        const FileIndex::Row row = index.find(domain, folder + relative);
        return row != FileIndex::kNone && index.kind(row) == FileIndex::Kind::File
            ? row
            : FileIndex::kNone;
    };
    FileIndex::Row row = FileIndex::kNone;
    if (!relative.startsWith("Message/"_L1))
        row = file(m_home.domain, u"Message/"_s);
    if (row == FileIndex::kNone)
        row = file(m_home.domain, {});
    for (const QString &folder : { u"Library/"_s, u"Documents/"_s }) {
        if (row == FileIndex::kNone)
            row = file(kOldDomain, folder);
    }
    return row;
}

// The small picture at \a path, else the one that the app keeps beside the file.
FileIndex::Row WhatsappMedia::findPreview(const QString &path, const QString &filePath) const
{
    const FileIndex::Row row = find(path);
    if (row != FileIndex::kNone || filePath.isEmpty())
        return row;
    const qsizetype dot = filePath.lastIndexOf(u'.');
    const bool hasSuffix = dot > filePath.lastIndexOf(u'/');
    return find((hasSuffix ? filePath.first(dot) : filePath) + ".thumb"_L1);
}

} // namespace PhoneBackup
