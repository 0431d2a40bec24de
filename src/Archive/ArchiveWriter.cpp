#include "Archive/ArchiveWriter.h"

#include "Archive/chats/MessageChats.h"
#include "Archive/chats/WhatsappChats.h"
#include "Archive/data/DataFiles.h"
#include "Archive/lists/CallPages.h"
#include "Archive/lists/PlannerPages.h"
#include "Archive/lists/SafariPages.h"
#include "Archive/lists/ShelfPages.h"
#include "Archive/media/Site.h"
#include "Archive/notes/NotePages.h"
#include "Archive/people/PeoplePages.h"
#include "Archive/photos/PhotoPages.h"
#include "Archive/records/RecordReader.h"
#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/Source.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

// In the global namespace, as the macro demands.
// NOLINTNEXTLINE(misc-use-anonymous-namespace)
static void initializeAssets()
{
    Q_INIT_RESOURCE(archive_assets);
}

namespace Archive {

using namespace PhoneBackup;

namespace {

constexpr qint64 kRecordsBetweenNews = 256;

// A folder of this name that an archive is not in stays as it is.
QString freeFolder(const QString &output)
{
    const QString name = u"Archive"_s;
    const QDir folder(output);
    for (int i = 1;; ++i) {
        const QString candidate = i == 1 ? name : u"%1 (%2)"_s.arg(name).arg(i);
        const QFileInfo there(folder.filePath(candidate));
        if ((!there.exists() && !there.isSymLink())
            || (there.isDir() && !there.isSymLink()
                && (QFileInfo::exists(folder.filePath(candidate + u"/archive.js"_s))
                    || QFileInfo::exists(folder.filePath(candidate + u"/data"_s)))))
            return candidate;
    }
}

QByteArray asset(const char *name)
{
    QFile file(u":/archive/"_s + QLatin1StringView(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QList<Section> sectionsOf(const QList<int> &types)
{
    static const QHash<QByteArray, QList<int>> needed {
        { "chats", { DataType::Messages, DataType::Whatsapp } },
        { "photos", { DataType::Photos, DataType::Videos } },
        { "people", { DataType::Contacts } },
        { "calls", { DataType::Calls } },
        { "notes", { DataType::Notes } },
        { "calendar", { DataType::Calendar } },
        { "reminders", { DataType::Reminders } },
        { "voicemail", { DataType::Voicemail } },
        { "memos", { DataType::VoiceMemos } },
        { "albums", { DataType::SharedAlbums } },
        { "bookmarks", { DataType::Safari } },
        { "history", { DataType::Safari } },
        { "books", { DataType::Books } },
        { "music", { DataType::Music } },
        { "documents", { DataType::AppDocuments } },
    };
    QList<Section> sections;
    for (const Section &section : allSections()) {
        const QList<int> of = needed.value(section.folder);
        if (std::any_of(of.begin(), of.end(), [&](int code) { return types.contains(code); }))
            sections.append(section);
    }
    return sections;
}

// Gives records to all who want them, and news to whoever waits.
class Tee final : public RecordTaker
{
public:
    explicit Tee(std::function<void(qint64)> news)
        : m_news(std::move(news))
    {
    }

    std::vector<RecordTaker *> takers;

    void takeRecord(const Record &record) override
    {
        for (RecordTaker *taker : takers)
            taker->takeRecord(record);
        if (++m_count % kRecordsBetweenNews == 0)
            m_news(m_count);
    }

private:
    std::function<void(qint64)> m_news;
    qint64 m_count = 0;
};

} // namespace

ArchiveWriter::ArchiveWriter(Source &source,
                             const ExportedFiles &files,
                             const Plan &plan,
                             PictureMaker maker,
                             KeepGoing keepGoing,
                             Progress progress)
    : m_source(source)
    , m_files(files)
    , m_plan(plan)
    , m_maker(std::move(maker))
    , m_keepGoing(std::move(keepGoing))
    , m_progress(std::move(progress))
{
    initializeAssets();
    m_frame.phone = plan.phone;
    m_frame.sections = sectionsOf(plan.types);
    m_frame.archiveFolder = freeFolder(plan.output);
}

bool ArchiveWriter::write()
{
    OutputTree tree(m_plan.output + u'/' + m_frame.archiveFolder);
    const auto goesOn = [&] { return tree.error() == 0 && m_keepGoing(); };
    LocalClock clock;
    SearchIndex search(tree, clock);
    Thumbnails thumbnails(m_source.files(), tree, m_maker, goesOn);
    Site site { m_source, tree, m_files, thumbnails, search, clock, m_frame, m_tiles };
    Persons persons(m_source, thumbnails);
    ChatPages chats(site);
    MessageChats messages(chats, persons);
    WhatsappChats whatsapp(site, chats, persons);
    CallPages calls(site, persons);
    PlannerPages planner(site);
    SafariPages safari(site);
    ShelfPages shelf(site, persons);
    NotePages notes(site);
    PhotoPages photos(site, hasType(DataType::Photos), hasType(DataType::Videos));
    PeoplePages people(site, persons);
    DataFiles data(tree, m_files);

    if (m_plan.pages) {
        tree.write(u"archive.css"_s, asset("archive.css"));
        tree.write(u"archive.js"_s, asset("archive.js"));
    }
    // People come last: their cards lead to everything else.
    QList<RecordKind> kinds = recordKinds();
    std::rotate(kinds.begin(), kinds.begin() + 1, kinds.end());
    for (const RecordKind &kind : std::as_const(kinds)) {
        if (!goesOn())
            break;
        if (std::none_of(kind.dataTypes.begin(), kind.dataTypes.end(), [this](int code) {
                return hasType(code);
            }))
            continue;
        if (m_plan.pages && QByteArrayView(kind.name) == "people") {
            chats.finish();
            calls.finish();
            shelf.finish();
        }
        Tee tee([&](qint64 count) { m_progress(kind.name, count); });
        m_progress(kind.name, 0);
        if (m_plan.data) {
            data.begin(kind.name);
            tee.takers.push_back(&data);
        }
        if (m_plan.pages)
            tee.takers.insert(tee.takers.end(),
                              { &messages,
                                &whatsapp,
                                &calls,
                                &planner,
                                &safari,
                                &shelf,
                                &notes,
                                &photos,
                                &people });
        kind.read(m_source, tee);
        if (m_plan.data)
            data.end();
    }
    if (m_plan.pages) {
        chats.finish();
        calls.finish();
        shelf.finish();
        planner.finish();
        safari.finish();
        notes.finish();
        photos.finish();
        people.finish();
        search.finish();
        const Page page { u"Search"_s, {}, 1, "search", { "places.js" } };
        site.write(
            u"search/index.html"_s,
            page,
            "<div class=\"narrow\"><h1>Search</h1><div id=\"results\"><noscript><p>The search "
            "needs scripts, which this browser has switched off.</p></noscript></div></div>\n");
    }
    const bool isWhole = goesOn();
    if (m_plan.pages)
        writeEmpty(site, isWhole);
    const bool isOnDisk = tree.sync();
    m_error = tree.error();
    m_failedPath = m_frame.archiveFolder + u'/' + tree.failedPath();
    return isWhole && isOnDisk;
}

// All pages lead to all sections, be there something in them or not.
void ArchiveWriter::writeEmpty(Site &site, bool isWhole)
{
    for (const Section &section : std::as_const(m_frame.sections)) {
        if (m_tiles.contains(section.folder))
            continue;
        const QString title = QString::fromLatin1(section.title);
        QByteArray body = "<div class=\"narrow\"><h1>" + title.toLatin1() + "</h1><p>";
        body += isWhole ? "There is nothing here.</p></div>\n"
                        : "The export ended before it came to this.</p></div>\n";
        site.write(QString::fromLatin1(section.folder) + u"/index.html"_s,
                   { title, section.folder, 1 },
                   body);
    }
    m_frame.sections.removeIf(
        [this](const Section &section) { return !m_tiles.contains(section.folder); });
}

} // namespace Archive
