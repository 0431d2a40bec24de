#include "BackupFixture.h"
#include "auto/sample/SqliteRows.h"
#include "table/BkSafariBookmarkItem.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kSafari = 17;
const QString kHome = u"HomeDomain"_s;
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

} // namespace

class tst_Safari : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void saysWhatABackupCannotHold();
    void readsRealData();
};

void tst_Safari::initTestCase()
{
    qputenv("TZ", "America/New_York");
    ::tzset();
}

// One of the two is damaged: it is a loss, and the other is whole.
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
