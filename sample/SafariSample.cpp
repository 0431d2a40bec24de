#include "sample/SafariSample.h"

#include "sample/BackupWriter.h"
#include "sample/Database.h"
#include "sample/InventedText.h"
#include "sample/PropertyList.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kBookmarkTables = R"(
CREATE TABLE bookmarks (id INTEGER PRIMARY KEY AUTOINCREMENT, special_id INTEGER DEFAULT 0, parent INTEGER, type INTEGER,
  title TEXT, url TEXT COLLATE NOCASE, num_children INTEGER DEFAULT 0, editable INTEGER DEFAULT 1,
  deletable INTEGER DEFAULT 1, hidden INTEGER DEFAULT 0, hidden_ancestor_count INTEGER DEFAULT 0,
  order_index INTEGER NOT NULL, external_uuid TEXT UNIQUE, read INTEGER DEFAULT NULL, last_modified REAL DEFAULT NULL,
  server_id TEXT, sync_key TEXT, sync_data BLOB, added INTEGER DEFAULT 1, deleted INTEGER DEFAULT 0,
  extra_attributes BLOB DEFAULT NULL, local_attributes BLOB DEFAULT NULL, fetched_icon BOOL DEFAULT 0,
  icon BLOB DEFAULT NULL, dav_generation INTEGER DEFAULT 0, locally_added BOOL DEFAULT 0,
  archive_status INTEGER DEFAULT 0, syncable BOOL DEFAULT 1, web_filter_status INTEGER DEFAULT 0,
  modified_attributes UNSIGNED BIG INT DEFAULT 0);
INSERT INTO bookmarks(id,special_id,parent,type,title,order_index,editable,deletable) VALUES
  (0,0,NULL,1,'Root',0,0,0), (1,1,0,1,'BookmarksBar',0,0,0), (2,2,0,1,'BookmarksMenu',1,0,0),
  (3,3,0,1,'com.apple.ReadingList',2,0,0);
INSERT INTO bookmarks(id,parent,type,title,order_index) VALUES (4,0,1,'Boats',3), (5,4,1,'Knots & Rigging',0),
  (6,0,1,'recipes',4);
)";

constexpr const char *kHistoryTables = R"(
CREATE TABLE history_items (id INTEGER PRIMARY KEY AUTOINCREMENT, url TEXT NOT NULL UNIQUE, domain_expansion TEXT NULL,
  visit_count INTEGER NOT NULL, daily_visit_counts BLOB NOT NULL, weekly_visit_counts BLOB NULL,
  autocomplete_triggers BLOB NULL, should_recompute_derived_visit_counts INTEGER NOT NULL,
  visit_count_score INTEGER NOT NULL DEFAULT 0, status_code INTEGER NOT NULL DEFAULT 0);
CREATE TABLE history_visits (id INTEGER PRIMARY KEY AUTOINCREMENT,
  history_item INTEGER NOT NULL REFERENCES history_items(id) ON DELETE CASCADE, visit_time REAL NOT NULL,
  title TEXT NULL, load_successful BOOLEAN NOT NULL DEFAULT 1, http_non_get BOOLEAN NOT NULL DEFAULT 0,
  synthesized BOOLEAN NOT NULL DEFAULT 0, redirect_source INTEGER NULL UNIQUE, redirect_destination INTEGER NULL UNIQUE,
  origin INTEGER NOT NULL DEFAULT 0, generation INTEGER NOT NULL DEFAULT 0, attributes INTEGER NOT NULL DEFAULT 0,
  score INTEGER NOT NULL DEFAULT 0);
CREATE TABLE history_tombstones (id INTEGER PRIMARY KEY AUTOINCREMENT, start_time REAL NOT NULL, end_time REAL NOT NULL,
  url TEXT, generation INTEGER NOT NULL DEFAULT 0);
CREATE INDEX history_visits__last_visit ON history_visits (history_item, visit_time DESC, synthesized ASC);
)";

const QString kDomain = u"HomeDomain"_s;

struct Link
{
    int folder;
    QString title;
    QString url;
    bool isDeleted = false;
};

// Some with characters that a page has to treat with care.
const QList<Link> &links()
{
    static const QList<Link> all {
        { 1, u"Tide tables"_s, u"https://tides.example.org/today?port=north&unit=m"_s },
        { 1, u"Weather for sailors"_s, u"https://weather.example.org/sea"_s },
        { 2, u"<Harbour> \"live\" & more"_s, u"https://harbour.example.org/?q=a'b\"c"_s },
        { 4, u"Second-hand boats"_s, u"http://boats.example.com/used/"_s },
        { 4, u"Sold: the blue dinghy"_s, u"http://boats.example.com/used/4711"_s, true },
        { 5, u"Bowline, step by step"_s, u"https://knots.example.org/bowline#step-3"_s },
        { 5, {}, u"https://knots.example.org/splices?session="_s + u"4e0a91c7d2"_s.repeated(16) },
        { 6, u"Fischsuppe für sechs"_s, u"https://rezepte.example.net/fischsuppe"_s },
        { 6, u"魚のスープ"_s, u"https://rezepte.example.net/%E9%AD%9A"_s },
        { 0, u"A loose bookmark"_s, u"https://loose.example.org/"_s },
        { 0, u"Print this page"_s, u"javascript:window.print()"_s },
    };
    return all;
}

const QList<Link> &readingList()
{
    static const QList<Link> all {
        { 3, u"How lighthouses work"_s, u"https://magazine.example.org/lighthouses"_s },
        { 3, u"Ten harbours to see once"_s, u"https://magazine.example.org/ten-harbours"_s },
        { 3, u"A year on a barge"_s, u"https://barge.example.net/year"_s },
    };
    return all;
}

void addBookmarks(BackupWriter &writer, const Options &options)
{
    if (options.bookmarks == 0)
        return;
    const QString path = u"Library/Safari/Bookmarks.db"_s;
    Random random(options.seed, "bookmarks");
    Database database(writer.contentPath(kDomain, path), kBookmarkTables);
    Statement insert = database.prepare(
        "INSERT INTO bookmarks(parent,type,title,url,order_index,external_uuid,read,last_modified,"
        "deleted,extra_attributes) VALUES (?,0,?,?,?,?,?,?,?,?)");
    const QList<Link> fixed = links() + readingList();
    for (int i = 0; i < options.bookmarks; ++i) {
        const Link link = i < fixed.size()
            ? fixed[i]
            : Link { 4 + i % 3,
                     inventedSentence(random),
                     u"https://boats.example.com/%1/%2"_s.arg(i).arg(random.below(1000000)) };
        const bool isToBeRead = link.folder == 3;
        const QDateTime added = sampleStart().addSecs(qint64(5000) * i);
        insert.run(
            { link.folder,
              link.title,
              link.url,
              10 + i,
              random.uuid(),
              isToBeRead ? QVariant(i % 2) : QVariant(),
              static_cast<double>(added.toSecsSinceEpoch()),
              link.isDeleted ? 1 : 0,
              isToBeRead ? QVariant(binaryPropertyList(QVariantMap {
                  { u"com.apple.ReadingList"_s, QVariantMap { { u"DateAdded"_s, added } } } }))
                         : QVariant() });
    }
    database.execute("UPDATE bookmarks SET num_children = (SELECT count(*) FROM bookmarks AS child "
                     "WHERE child.parent = bookmarks.id) WHERE type = 1");
    if (!database.finish())
        writer.fail(path, database.error());
    writer.addWritten(kDomain, path);
}

void addHistory(BackupWriter &writer, const Options &options)
{
    if (options.history == 0)
        return;
    const QString path = u"Library/Safari/History.db"_s;
    Random random(options.seed, "history");
    Database database(writer.contentPath(kDomain, path), kHistoryTables);
    Statement page = database.prepare("INSERT INTO history_items VALUES (?,?,?,?,x'00',NULL,NULL,0,"
                                      "100,200)");
    Statement visit = database.prepare(
        "INSERT INTO history_visits(history_item,visit_time,title) VALUES (?,?,?)");
    constexpr int spanSeconds = 30 * 86400;
    for (int i = 1; i <= options.history; ++i) {
        const QString site =
            QStringList { u"tides"_s, u"boats"_s, u"weather"_s, u"magazine"_s }[random.below(4)];
        const int visits = random.between(1, 4);
        page.run({ i,
                   u"https://%1.example.org/%2/%3"_s.arg(site).arg(i).arg(random.below(1000000000)),
                   site,
                   visits });
        const QString title = inventedSentence(random);
        const double first = cocoaSeconds(sampleBackupDate()) - random.below(spanSeconds);
        for (int v = 0; v < visits; ++v) {
            // What only led on has no title.
            const bool isRedirect = i % 11 == 0;
            visit.run({ i,
                        first - 3600.5 * v,
                        isRedirect ? QVariant() : QVariant(v == 0 ? title : title + u'…') });
        }
    }
    if (!database.finish())
        writer.fail(path, database.error());
    writer.addWritten(kDomain, path);
}

} // namespace

void addBrowserData(BackupWriter &writer, const Options &options)
{
    addBookmarks(writer, options);
    addHistory(writer, options);
}

} // namespace Sample
