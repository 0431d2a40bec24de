#include "PhoneBackup/whatsapp/WhatsappPictures.h"

#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kFolder = "Message/Media/Profile/";

} // namespace

WhatsappPictures::WhatsappPictures(Source &source,
                                   const WhatsappHome &home,
                                   WhatsappDatabase &database)
    : m_source(source)
    , m_home(home)
{
    Table table(database, u"ZWAPROFILEPICTUREITEM"_s);
    const auto [id, stored, date] = table.columns(u"ZJID"_s, u"ZPATH"_s, u"ZREQUESTDATE"_s);
    table.forEach([&](const Table::Row &row) {
        const QString path = row.text(stored);
        if (!path.startsWith("Media/"_L1)) // bookkeeping
            return;
        Picture &picture = m_pictures[Jid(row.text(id)).key()];
        const double requested = row.number(date).value_or(0);
        if (picture.path.isEmpty() || requested >= picture.requested)
            picture = { path, requested };
    });
}

FileIndex::Row WhatsappPictures::of(const Jid &jid) const
{
    const QString path = m_pictures.value(jid.key()).path;
    // The large one, then the small one; both are JPEG.
    for (const QLatin1StringView suffix : { ".jpg"_L1, ".thumb"_L1 }) {
        const FileIndex::Row row = path.isEmpty()
            ? FileIndex::kNone
            : m_source.index().find(m_home.domain, u"Message/"_s + path + suffix);
        if (row != FileIndex::kNone)
            return row;
    }
    return newestFile(jid);
}

// Without a row of the database: files are named "<user>-<time>.<suffix>".
FileIndex::Row WhatsappPictures::newestFile(const Jid &jid) const
{
    if (jid.user().isEmpty())
        return FileIndex::kNone;
    const QByteArray prefix = kFolder.toByteArray() + jid.user().toUtf8() + '-';
    const FileIndex &index = m_source.index();
    const FileIndex::Range range = index.walk(m_home.domain, prefix);
    FileIndex::Row newest = FileIndex::kNone;
    qint64 newestTime = -1;
    for (FileIndex::Row row = range.first; row < range.last; ++row) {
        const QByteArrayView rest = index.path(row).sliced(prefix.size());
        bool isNumber = false;
        const qint64 time = rest.first(std::max<qsizetype>(rest.indexOf('.'), 0))
                                .toByteArray()
                                .toLongLong(&isNumber);
        // Of one time the large one comes first.
        if (isNumber && time > newestTime && index.kind(row) == FileIndex::Kind::File) {
            newest = row;
            newestTime = time;
        }
    }
    return newest;
}

} // namespace PhoneBackup
