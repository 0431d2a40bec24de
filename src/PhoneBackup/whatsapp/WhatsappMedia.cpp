#include "PhoneBackup/whatsapp/WhatsappMedia.h"

#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kOldDomain = "AppDomain-net.whatsapp.WhatsApp";

} // namespace

WhatsappMedia::WhatsappMedia(Source &source, const WhatsappPlace &place, WhatsappDatabase &database)
    : m_source(source)
    , m_place(place)
    , m_database(database)
    , m_rows(database, u"ZWAMEDIAITEM"_s, u"ZMESSAGE"_s)
    , m_query(database.prepareRow({ u"ZMEDIALOCALPATH"_s,
                                    u"ZTITLE"_s,
                                    u"ZVCARDNAME"_s,
                                    u"ZVCARDSTRING"_s,
                                    u"ZLATITUDE"_s,
                                    u"ZLONGITUDE"_s,
                                    u"ZXMPPTHUMBPATH"_s,
                                    u"ZMETADATA"_s },
                                  u"ZWAMEDIAITEM"_s))
{
}

WhatsappMediaItem WhatsappMedia::item(qint64 message, qint64 row)
{
    WhatsappMediaItem item;
    if (row != 0)
        item = read(row);
    const qint64 back = item.row == 0 ? m_rows.first(message) : 0;
    return back != 0 && back != row ? read(back) : item;
}

WhatsappMediaItem WhatsappMedia::read(qint64 row)
{
    WhatsappMediaItem item;
    if (!m_query)
        return item;
    m_query->reset();
    m_query->bind(1, row);
    const Statement::Step step = m_query->step();
    if (step == Statement::Step::Failed)
        m_database.addLoss(tr("It is damaged: %1.").arg(m_query->error()));
    if (step != Statement::Step::Row)
        return item;
    item.row = row;
    item.path = m_query->text(0);
    item.title = StoredText::cleaned(m_query->text(1)).trimmed();
    item.cardName = m_query->text(2).trimmed();
    item.cardText = m_query->text(3);
    item.latitude = m_query->number(4).value_or(0);
    item.longitude = m_query->number(5).value_or(0);
    item.previewPath = m_query->text(6);
    item.quote = WhatsappRecords::quote(m_query->bytes(7));
    return item;
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
        row = file(m_place.domain, u"Message/"_s);
    if (row == FileIndex::kNone)
        row = file(m_place.domain, {});
    for (const QString &folder : { u"Library/"_s, u"Documents/"_s }) {
        if (row == FileIndex::kNone)
            row = file(kOldDomain, folder);
    }
    return row;
}

FileIndex::Row WhatsappMedia::findPreview(const WhatsappMediaItem &item) const
{
    const FileIndex::Row row = find(item.previewPath);
    if (row != FileIndex::kNone || item.path.isEmpty())
        return row;
    const qsizetype dot = item.path.lastIndexOf(u'.');
    const bool hasSuffix = dot > item.path.lastIndexOf(u'/');
    return find((hasSuffix ? item.path.first(dot) : item.path) + ".thumb"_L1);
}

} // namespace PhoneBackup
