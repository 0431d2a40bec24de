#include "BackupFixture.h"
#include "auto/sample/SqliteRows.h"
#include "table/BkSafariBookmarkItem.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kSafari = 17;
const QString kHome = u"HomeDomain"_s;
const QString kBrowser = u"AppDomain-com.apple.mobilesafari"_s;
const QString kBookmarks = u"Library/Safari/Bookmarks.db"_s;
const QString kHistory = u"Library/Safari/History.db"_s;
const QString kOldHistory = u"Library/Safari/History.plist"_s;

const QByteArray kBookmarkTable =
    "CREATE TABLE bookmarks (id INTEGER PRIMARY KEY, special_id INTEGER DEFAULT 0, parent, type, "
    "title, url, order_index DEFAULT 0, read, deleted DEFAULT 0);"
    "INSERT INTO bookmarks(id,special_id,parent,type,title) VALUES (0,0,NULL,1,'Root'),"
    "(1,1,0,1,'BookmarksBar'),(2,2,0,1,'BookmarksMenu'),(3,3,0,1,'com.apple.ReadingList'),"
    "(4,4,0,1,'Filter'),(5,0,1,1,'Work'),(6,0,5,1,'Deep');"
    "INSERT INTO bookmarks(parent,type,title,url,order_index,read,deleted) VALUES ";
const QByteArray kHistoryTables =
    "CREATE TABLE history_items (id INTEGER PRIMARY KEY, url);"
    "CREATE TABLE history_visits (id INTEGER PRIMARY KEY, history_item, visit_time, title);";

QByteArray history(const QByteArray &pages, const QByteArray &visits)
{
    return BackupFixture::database((kHistoryTables + "INSERT INTO history_items VALUES " + pages
                                    + ";INSERT INTO history_visits(history_item, visit_time, title)"
                                      " VALUES "
                                    + visits + ';')
                                       .constData());
}

QByteArray oldHistory(const QVariantList &pages)
{
    return Sample::binaryPropertyList(
        QVariantMap { { u"WebHistoryFileVersion"_s, 1 }, { u"WebHistoryDates"_s, pages } });
}

//! "group: title -> url", with " [deleted]" behind those that are.
QStringList links(BackupFixture &fixture)
{
    PhoneItems::Backup *backup = fixture.open();
    const BkData *data = backup ? backup->getBkData(kSafari) : nullptr;
    QStringList lines;
    for (int i = 0; data && i < data->count(1); ++i) {
        const auto *link = dynamic_cast<const BkSafariBookmarkItem *>(data->at(i, true));
        lines.append(!link ? u"no link"_s
                           : u"%1: %2 -> %3%4"_s.arg(link->bookmarkGroup(),
                                                     link->value(0),
                                                     link->value(1),
                                                     link->flag(0) ? u" [deleted]"_s : QString()));
    }
    return lines;
}

//! The problems but for what backups of this kind never hold.
QStringList faults(const BackupFixture &fixture)
{
    QStringList found = fixture.problems();
    found.removeAll(u"17 "_s);
    return found;
}

} // namespace

class tst_Safari : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void groupsBookmarks_data();
    void groupsBookmarks();
    void keepsTheStoredOrder();
    void survivesAnyTree_data();
    void survivesAnyTree();
    void writesPages_data();
    void writesPages();
    void readsOldPropertyLists_data();
    void readsOldPropertyLists();
    void prefersTheNewestPlace_data();
    void prefersTheNewestPlace();
    void mergesProfiles();
    void readsWhateverTheDatabase_data();
    void readsWhateverTheDatabase();
    void saysWhatABackupCannotHold();
    void readsRealData();
};

void tst_Safari::initTestCase()
{
    qputenv("TZ", "America/New_York");
    ::tzset();
}

void tst_Safari::groupsBookmarks_data()
{
    QTest::addColumn<QByteArray>("row"); // parent, type, title, url, order, read, deleted
    QTest::addColumn<QString>("link"); // empty: left out

    QTest::newRow("favorites") << "1,0,'T','http://a',0,NULL,0"_ba << u"Favorites: T -> http://a"_s;
    QTest::newRow("menu") << "2,0,'T','http://a',0,NULL,0"_ba << u"Bookmarks Menu: T -> http://a"_s;
    QTest::newRow("root") << "0,0,'T','http://a',0,NULL,0"_ba << u": T -> http://a"_s;
    QTest::newRow("folder") << "5,0,'T','http://a',0,NULL,0"_ba << u"Work: T -> http://a"_s;
    QTest::newRow("folder in a folder")
        << "6,0,'T','http://a',0,NULL,0"_ba << u"Deep: T -> http://a"_s;
    QTest::newRow("to be read") << "3,0,'T','http://a',0,0,0"_ba
                                << u"Reading List: T -> http://a"_s;
    QTest::newRow("to be read, hidden in a folder")
        << "5,0,'T','http://a',0,1,0"_ba << u"Reading List: T -> http://a"_s;
    QTest::newRow("list of a filter") << "4,0,'T','http://a',0,NULL,0"_ba << QString();
    QTest::newRow("folder that is not there")
        << "99,0,'T','http://a',0,NULL,0"_ba << u": T -> http://a"_s;
    QTest::newRow("no folder") << "NULL,0,'T','http://a',0,NULL,0"_ba << u": T -> http://a"_s;
    QTest::newRow("in itself") << "7,0,'T','http://a',0,NULL,0"_ba << u": T -> http://a"_s;
    QTest::newRow("deleted") << "5,0,'T','http://a',0,NULL,1"_ba
                             << u"Work: T -> http://a [deleted]"_s;
    QTest::newRow("deleted, without a target") << "5,0,'T',NULL,0,NULL,1"_ba << QString();
    QTest::newRow("without a target") << "5,0,'T','',0,NULL,0"_ba << u"Work: T -> "_s;
    QTest::newRow("without a title")
        << "5,0,NULL,'http://a',0,NULL,0"_ba << u"Work: http://a -> http://a"_s;
    QTest::newRow("nothing at all") << "5,0,NULL,NULL,0,NULL,0"_ba << QString();
    QTest::newRow("quotes and scripts") << "5,0,'<b>''\"','javascript:alert(''1\"'')',0,NULL,0"_ba
                                        << u"Work: <b>'\" -> javascript:alert('1\"')"_s;
    QTest::newRow("lines in a title")
        << "5,0,'a' || char(10) || ' b','u',0,NULL,0"_ba << u"Work: a b -> u"_s;
    QTest::newRow("texts where numbers are due")
        << "'x','y','T','u','z',NULL,'w'"_ba << u": T -> u"_s;
}

void tst_Safari::groupsBookmarks()
{
    QFETCH(QByteArray, row);
    BackupFixture fixture;
    fixture.writer.addFile(
        kHome, kBookmarks, BackupFixture::database((kBookmarkTable + '(' + row + ')').constData()));
    QTEST(links(fixture).join(u'\n'), "link");
    QCOMPARE(faults(fixture), QStringList());
}

void tst_Safari::keepsTheStoredOrder()
{
    BackupFixture fixture;
    fixture.writer.addFile(
        kHome,
        kBookmarks,
        BackupFixture::database((kBookmarkTable
                                 + "(5,0,'c','u',3,NULL,0),(5,0,'a','u',1,NULL,0),"
                                   "(5,0,'b','u',2,NULL,0),(5,0,'b2','u',2,NULL,0)")
                                    .constData()));
    QStringList titles;
    for (const QString &link : links(fixture))
        titles.append(link.section(u' ', 1, 1));
    QCOMPARE(titles.join(u' '), u"a b b2 c"_s);
}

void tst_Safari::survivesAnyTree_data()
{
    QTest::addColumn<QByteArray>("folders"); // id, parent
    QTest::addColumn<int>("of"); // the link's folder
    QTest::addColumn<QString>("group");

    QTest::newRow("a folder in itself") << "(100,100)"_ba << 100 << u"F100"_s;
    QTest::newRow("a circle") << "(100,101),(101,102),(102,100)"_ba << 101 << u"F101"_s;
    QTest::newRow("a folder of nowhere") << "(100,999)"_ba << 100 << u"F100"_s;
    QByteArrayList deep;
    for (int i = 100; i < 10100; ++i)
        deep.append('(' + QByteArray::number(i) + ',' + QByteArray::number(i - 1) + ')');
    QTest::newRow("10,000 levels") << deep.join(',') << 10099 << u"F10099"_s;
}

void tst_Safari::survivesAnyTree()
{
    QFETCH(QByteArray, folders);
    QFETCH(int, of);
    QFETCH(QString, group);
    const QByteArray sql = kBookmarkTable + "(" + QByteArray::number(of)
        + ",0,'T','u',0,NULL,0);"
          "CREATE TEMP TABLE f (id, parent); INSERT INTO f VALUES "
        + folders
        + ";INSERT INTO bookmarks(id,parent,type,title) SELECT id, parent, 1, 'F' || id FROM f;";
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kBookmarks, BackupFixture::database(sql.constData()));
    QCOMPARE(links(fixture), QStringList { group + u": T -> u"_s });
    QCOMPARE(faults(fixture), QStringList());
}

void tst_Safari::writesPages_data()
{
    QTest::addColumn<QByteArray>("pages"); // id, URL
    QTest::addColumn<QByteArray>("visits"); // page, time, title
    QTest::addColumn<QString>("links");

    const QByteArray page = "(1,'http://a')";
    QTest::newRow("one visit") << page << "(1,700000000.5,'T')"_ba
                               << u"History: T (2023-03-08 15:26) -> http://a"_s;
    QTest::newRow("the last visit and its title")
        << page << "(1,700000000,'old'),(1,700000600,'new'),(1,700000300,'other')"_ba
        << u"History: new (2023-03-08 15:36) -> http://a"_s;
    QTest::newRow("the last title")
        << page << "(1,700000000,'T'),(1,700000600,NULL),(1,700000700,'')"_ba
        << u"History: T (2023-03-08 15:38) -> http://a"_s;
    QTest::newRow("no title") << page << "(1,700000000,NULL)"_ba
                              << u"History: http://a (2023-03-08 15:26) -> http://a"_s;
    QTest::newRow("seconds since 1970")
        << page << "(1,1678307200,'T')"_ba << u"History: T (2023-03-08 15:26) -> http://a"_s;
    QTest::newRow("date out of range") << page << "(1,1e300,'T')"_ba << u"History: T -> http://a"_s;
    QTest::newRow("a text where a date is due")
        << page << "(1,'soon','T')"_ba << u"History: T -> http://a"_s;
    QTest::newRow("never visited") << "(1,'http://a'),(2,'http://b')"_ba
                                   << "(1,0,'T')"_ba << u"History: T -> http://a"_s;
    QTest::newRow("visits of no page")
        << page << "(1,0,'T'),(9,1,'X'),(NULL,1,'X'),(-1,1,'X')"_ba << u"History: T -> http://a"_s;
    QTest::newRow("no address") << "(1,''),(2,NULL)"_ba
                                << "(1,0,'T'),(2,0,'T')"_ba << QString();
    QTest::newRow("newest first, with gaps in the numbers")
        << "(5,'http://a'),(70,'http://b')"_ba
        << "(5,700000000,'A'),(70,700000600,'B')"_ba
        << u"History: B (2023-03-08 15:36) -> http://b\n"
           "History: A (2023-03-08 15:26) -> http://a"_s;
}

void tst_Safari::writesPages()
{
    QFETCH(QByteArray, pages);
    QFETCH(QByteArray, visits);
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kHistory, history(pages, visits));
    QTEST(links(fixture).join(u'\n'), "links");
    QCOMPARE(faults(fixture), QStringList());
}

void tst_Safari::readsOldPropertyLists_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("links");
    QTest::addColumn<bool>("isLoss");

    const QVariantMap page { { QString(), u"http://a"_s },
                             { u"title"_s, u"T"_s },
                             { u"lastVisitedDate"_s, u"300000000.5"_s } };
    const QVariantMap plain { { QString(), u"http://b"_s }, { u"lastVisitedDate"_s, u"soon"_s } };
    QTest::newRow("pages") << oldHistory({ plain, page, u"no page"_s, QVariantMap() })
                           << u"History: T (2010-07-05 01:20) -> http://a\n"
                              "History: http://b -> http://b"_s
                           << false;
    QTest::newRow("none") << oldHistory({}) << QString() << false;
    QTest::newRow("no list of pages")
        << Sample::binaryPropertyList(QVariantMap { { u"WebHistoryDates"_s, 7 } }) << QString()
        << true;
    QTest::newRow("no property list") << QByteArray("no list") << QString() << true;
    QTest::newRow("cut") << oldHistory({ page }).chopped(8) << QString() << true;
}

void tst_Safari::readsOldPropertyLists()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isLoss);
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kOldHistory, content);
    QTEST(links(fixture).join(u'\n'), "links");
    QCOMPARE(fixture.problems(),
             isLoss ? QStringList { u"17 HomeDomain/"_s + kOldHistory + u" (loss)"_s }
                    : QStringList());
}

void tst_Safari::prefersTheNewestPlace_data()
{
    QTest::addColumn<QByteArrayList>("files"); // home, app, property list
    QTest::addColumn<QString>("link");

    const QByteArray home = history("(1,'home')", "(1,0,'T')");
    const QByteArray app = history("(1,'app')", "(1,0,'T')");
    const QByteArray none = BackupFixture::database(kHistoryTables.constData());
    const QByteArray list = oldHistory({ QVariantMap { { QString(), u"list"_s } } });
    QTest::newRow("all") << QByteArrayList { home, app, list } << u"home"_s;
    QTest::newRow("the newest is empty") << QByteArrayList { none, app, list } << u"app"_s;
    QTest::newRow("only the oldest") << QByteArrayList { none, {}, list } << u"list"_s;
}

void tst_Safari::prefersTheNewestPlace()
{
    QFETCH(QByteArrayList, files);
    BackupFixture fixture;
    const QList<std::pair<QString, QString>> places { { kHome, kHistory },
                                                      { kBrowser, kHistory },
                                                      { kHome, kOldHistory } };
    for (int i = 0; i < places.size(); ++i) {
        if (!files[i].isEmpty())
            fixture.writer.addFile(places[i].first, places[i].second, files[i]);
    }
    const QStringList found = links(fixture);
    QCOMPARE(found.size(), 1);
    QTEST(found.first().section(u' ', -1), "link");
}

void tst_Safari::mergesProfiles()
{
    BackupFixture fixture;
    fixture.writer.addFile(
        kHome, kHistory, history("(1,'both'),(2,'own')", "(1,700000000,'A'),(2,700000100,'B')"));
    fixture.writer.addFile(kHome,
                           u"Library/Safari/Profiles/5B0C1D2E/History.db"_s,
                           history("(7,'both')", "(7,700000600,'C')"));
    QCOMPARE(links(fixture).join(u'\n'),
             u"History: C (2023-03-08 15:36) -> both\n"
             "History: B (2023-03-08 15:28) -> own"_s);
}

void tst_Safari::readsWhateverTheDatabase_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("content");

    QByteArrayList rows;
    for (int i = 0; i < 400; ++i)
        rows.append("(5,0,'" + QByteArray(60, 'x') + "','u',0,NULL,0)");
    const QByteArray bookmarks =
        BackupFixture::database((kBookmarkTable + rows.join(',')).constData());
    for (const QString &path : { kBookmarks, kHistory }) {
        const auto row = [&](const char *what, const QByteArray &content) {
            QTest::newRow(qPrintable(path.section(u'/', -1) + ", "_L1 + QLatin1StringView(what)))
                << path << content;
        };
        row("no bytes", {});
        row("no database", QByteArray(5000, 'x'));
        row("cut", bookmarks.first(bookmarks.size() / 2));
        row("other tables", BackupFixture::database("CREATE TABLE a (b)"));
        row("other columns",
            BackupFixture::database("CREATE TABLE bookmarks (a); CREATE TABLE history_items (a);"));
    }
}

// One of the two is damaged: it is a loss, and the other is whole.
void tst_Safari::readsWhateverTheDatabase()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    BackupFixture fixture;
    fixture.writer.addFile(kHome, path, content);
    const bool isHistory = path == kHistory;
    fixture.writer.addFile(kHome,
                           isHistory ? kBookmarks : kHistory,
                           isHistory ? BackupFixture::database(
                               (kBookmarkTable + "(5,0,'T','whole',0,NULL,0)").constData())
                                     : history("(1,'whole')", "(1,0,'T')"));
    QCOMPARE(links(fixture).filter(u"-> whole"_s).size(), 1);
    QCOMPARE(faults(fixture), QStringList { u"17 HomeDomain/"_s + path + u" (loss)"_s });
}

void tst_Safari::saysWhatABackupCannotHold()
{
    BackupFixture fixture; // of a newer phone
    fixture.writer.addFile(
        kHome,
        kBookmarks,
        BackupFixture::database((kBookmarkTable + "(5,0,'T','u',0,NULL,0)").constData()));
    QCOMPARE(links(fixture).size(), 1);
    const QList<PhoneBackup::Problem> problems = fixture.open()->problems();
    QVERIFY(problems.isEmpty());
    links(fixture);
    QCOMPARE(fixture.problems(), QStringList { u"17 "_s });
}

void tst_Safari::readsRealData()
{
    const QString given = qEnvironmentVariable("DATAEXPORT_REAL_DATA");
    const QString root = given.isEmpty()
        ? QDir(QStringLiteral(TEST_SOURCE_DIR)).filePath(u"../../shared/real"_s)
        : given;
    const QDir folder(root + u"/safari"_s);
    if (!folder.exists(u"Bookmarks.db"_s))
        QSKIP("no real browser data: set DATAEXPORT_REAL_DATA to where they are");
    for (const QString &name : { u"History.db"_s, u"History-2.db"_s }) {
        BackupFixture fixture;
        fixture.writer.addFile(kHome, kBookmarks, Files::read(folder.filePath(u"Bookmarks.db"_s)));
        fixture.writer.addFile(kHome, kHistory, Files::read(folder.filePath(name)));
        const QStringList found = links(fixture);
        const auto pages = sqliteRows(folder.filePath(name),
                                      "SELECT DISTINCT url FROM history_items i JOIN "
                                      "history_visits v ON v.history_item = i.id");
        const auto marks = sqliteRows(folder.filePath(u"Bookmarks.db"_s),
                                      "SELECT url FROM bookmarks WHERE type=0");
        QCOMPARE(found.size(), pages.size() + marks.size());
        for (const QByteArrayList &row : pages + marks)
            QCOMPARE(found.filter(u" -> "_s + QString::fromUtf8(row[0])).isEmpty(), false);
        QCOMPARE(found.filter(QRegularExpression(u"^Reading List: "_s)).size(), 2);
        QCOMPARE(fixture.problems(), QStringList());
    }
    BackupFixture fixture;
    fixture.writer.addFile(kHome, kOldHistory, Files::read(folder.filePath(u"History.plist"_s)));
    const QStringList found = links(fixture);
    QVERIFY(!found.isEmpty());
    for (const QString &link : found)
        QVERIFY2(link.contains(QRegularExpression(u"^History: .+ \\(20.+\\) -> .+:"_s)),
                 qPrintable(link));
}

QTEST_GUILESS_MAIN(tst_Safari)
#include "tst_Safari.moc"
