#include "platform/CCommonUtils.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QTimeZone>
#include <QtTest>

#include <cmath>
#include <ctime>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class tst_CCommonUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_temp = std::make_unique<QTemporaryDir>(); }
    void removesOnlyFoldersInside_data();
    void removesOnlyFoldersInside();
    void removesLinksAsLinks();
    void copiesAndReplaces();
    void aFailedCopyLeavesTheOldFile();
    void findsFreeNames_data();
    void findsFreeNames();
    void countsNames();
    void namesTenThousandEqualFilesQuickly();
    void opensOnlyRegularFiles();
    void readingLeavesTheAccessTime();
    void liftsAndRestoresModes();
    void formatsDates_data();
    void formatsDates();
    void formatsInLocalTime();
    void localMinutesAreThoseOfQDateTime_data();
    void localMinutesAreThoseOfQDateTime();
    void countsFrom2001_data();
    void countsFrom2001();
    void formatsSizes_data();
    void formatsSizes();

private:
    QString inTemp(const QString &name) const { return m_temp->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_temp;
};

void tst_CCommonUtils::removesOnlyFoldersInside_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("removed");
    QTest::addColumn<QStringList>("left");

    const QStringList all { u"file"_s, u"inner/"_s, u"inner/deep/"_s, u"inner/deep/x"_s, u"way"_s };
    QTest::newRow("folder") << u"inner"_s << true << QStringList { u"file"_s, u"way"_s };
    QTest::newRow("nested folder")
        << u"inner/deep"_s << true << QStringList { u"file"_s, u"inner/"_s, u"way"_s };
    QTest::newRow("empty name") << u""_s << false << all;
    QTest::newRow("itself") << u"."_s << false << all;
    QTest::newRow("itself by a detour") << u"inner/.."_s << false << all;
    QTest::newRow("parent") << u".."_s << false << all;
    QTest::newRow("sibling") << u"../other"_s << false << all;
    QTest::newRow("sibling by a detour") << u"inner/../../other"_s << false << all;
    QTest::newRow("absolute") << u"/nonexistent-root-folder"_s << false << all;
    QTest::newRow("no folder") << u"file"_s << false << all;
    QTest::newRow("not there") << u"nothing"_s << false << all;
    QTest::newRow("link to a folder outside") << u"way"_s << false << all;
    QTest::newRow("through a link") << u"way/kept"_s << false << all;
}

void tst_CCommonUtils::removesOnlyFoldersInside()
{
    QFETCH(QString, name);
    QFETCH(bool, removed);
    QVERIFY(Files::write(inTemp(u"dir/file"_s), "1"));
    QVERIFY(Files::write(inTemp(u"dir/inner/deep/x"_s), "2"));
    QVERIFY(Files::write(inTemp(u"other/kept/y"_s), "3"));
    QVERIFY(QFile::link(inTemp(u"other"_s), inTemp(u"dir/way"_s)));

    bool ok = !removed;
    CCommonUtils::rmDir(QDir(inTemp(u"dir"_s)), name, &ok);
    QCOMPARE(ok, removed);
    QTEST(Files::tree(inTemp(u"dir"_s)), "left");
    QVERIFY(QFile::exists(inTemp(u"other/kept/y"_s)));
    CCommonUtils::rmDir(QDir(inTemp(u"dir"_s)), name, nullptr);
}

void tst_CCommonUtils::removesLinksAsLinks()
{
    QVERIFY(Files::write(inTemp(u"other/y"_s), "3"));
    QVERIFY(QDir(m_temp->path()).mkpath(u"dir/inner"_s));
    QVERIFY(QFile::link(inTemp(u"other"_s), inTemp(u"dir/inner/way"_s)));
    bool ok = false;
    CCommonUtils::rmDir(QDir(inTemp(u"dir"_s)), u"inner"_s, &ok);
    QVERIFY(ok);
    QVERIFY(QFile::exists(inTemp(u"other/y"_s)));
    QVERIFY(!QFileInfo::exists(inTemp(u"dir/inner"_s)));
}

void tst_CCommonUtils::copiesAndReplaces()
{
    const QByteArray content(300000, 'x');
    QVERIFY(Files::write(inTemp(u"src"_s), content));
    QVERIFY(Files::write(inTemp(u"to/name"_s), "older and longer"));
    QVERIFY(CCommonUtils::copyFile(inTemp(u"src"_s), QDir(inTemp(u"to"_s)), u"name"_s));
    QCOMPARE(Files::read(inTemp(u"to/name"_s)), content);
    QVERIFY(CCommonUtils::copyFile(inTemp(u"src"_s), QDir(inTemp(u"to"_s)), u"name"_s));
    QCOMPARE(Files::tree(inTemp(u"to"_s)), QStringList { u"name"_s });
}

void tst_CCommonUtils::aFailedCopyLeavesTheOldFile()
{
    QVERIFY(Files::write(inTemp(u"to/name"_s), "old"));
    const QDir to(inTemp(u"to"_s));
    QVERIFY(!CCommonUtils::copyFile(inTemp(u"missing"_s), to, u"name"_s));
    QVERIFY(!CCommonUtils::copyFile(inTemp(u"to"_s), to, u"name"_s));
    QCOMPARE(Files::read(inTemp(u"to/name"_s)), QByteArray("old"));
    QVERIFY(!CCommonUtils::copyFile(inTemp(u"to/name"_s), QDir(inTemp(u"no-folder"_s)), u"a"_s));
    QCOMPARE(Files::tree(m_temp->path()), (QStringList { u"to/"_s, u"to/name"_s }));
}

void tst_CCommonUtils::findsFreeNames_data()
{
    QTest::addColumn<QStringList>("taken");
    QTest::addColumn<QStringList>("allowed");

    QTest::newRow("plain") << QStringList {} << QStringList { u"a.b.txt"_s };
    QTest::newRow("second") << QStringList { u"a.b.txt"_s } << QStringList { u"a.b (2).txt"_s };
    QTest::newRow("third") << QStringList { u"a.b.txt"_s, u"a.b (2).txt"_s }
                           << QStringList { u"a.b (3).txt"_s };
    QTest::newRow("sixth") << QStringList {
        u"a.b.txt"_s, u"a.b (2).txt"_s, u"a.b (3).txt"_s, u"a.b (4).txt"_s, u"a.b (5).txt"_s
    } << QStringList { u"a.b (6).txt"_s };
    QTest::newRow("any gap will do")
        << QStringList { u"a.b.txt"_s, u"a.b (2).txt"_s, u"a.b (4).txt"_s }
        << QStringList { u"a.b (3).txt"_s, u"a.b (5).txt"_s };
    QTest::newRow("a broken link holds its name")
        << QStringList { u"->a.b.txt"_s } << QStringList { u"a.b (2).txt"_s };
    QTest::newRow("a folder holds its name")
        << QStringList { u"a.b.txt/"_s } << QStringList { u"a.b (2).txt"_s };
}

void tst_CCommonUtils::findsFreeNames()
{
    QFETCH(QStringList, taken);
    QFETCH(QStringList, allowed);
    for (const QString &name : taken) {
        if (name.startsWith("->"_L1))
            QVERIFY(QFile::link(u"/nonexistent/target"_s, inTemp(name.mid(2))));
        else if (name.endsWith(u'/'))
            QVERIFY(QDir(m_temp->path()).mkpath(name));
        else
            QVERIFY(Files::write(inTemp(name), "x"));
    }
    const QString found = CCommonUtils::uniqFileName(QDir(m_temp->path()), u"a.b"_s, u".txt"_s);
    QVERIFY2(QDir::isAbsolutePath(found), qPrintable(found));
    QCOMPARE(QFileInfo(found).path(), m_temp->path());
    QVERIFY2(allowed.contains(QFileInfo(found).fileName()), qPrintable(found));
}

void tst_CCommonUtils::countsNames()
{
    const QDir dir(m_temp->path());
    QVERIFY(Files::write(inTemp(u"n (3).csv"_s), "x"));
    int counter = 0;
    QStringList names;
    for (int i = 0; i < 4; ++i)
        names.append(
            QFileInfo(CCommonUtils::uniqFileName(dir, u"n"_s, u".csv"_s, counter)).fileName());
    QCOMPARE(names, (QStringList { u"n.csv"_s, u"n (2).csv"_s, u"n (4).csv"_s, u"n (5).csv"_s }));
    QCOMPARE(counter, 5);

    QVERIFY(Files::write(inTemp(u"n.csv"_s), "x"));
    counter = 0;
    QCOMPARE(CCommonUtils::uniqFileName(dir, u"n"_s, u".csv"_s, counter), inTemp(u"n (2).csv"_s));
    QCOMPARE(counter, 2);
}

void tst_CCommonUtils::namesTenThousandEqualFilesQuickly()
{
    // A walk through all numbers would make 50 million look-ups, which takes a minute; the limit is
    // far from both, and counts processor time, so that a busy machine does not matter.
    const QDir dir(m_temp->path());
    const std::clock_t start = std::clock();
    for (int i = 0; i < 10000; ++i) {
        const QString path = CCommonUtils::uniqFileName(dir, u"IMG"_s, u".JPG"_s);
        QVERIFY(::mknod(QFile::encodeName(path).constData(), S_IFREG | 0600, 0) == 0);
    }
    QVERIFY(std::clock() - start < 20 * CLOCKS_PER_SEC);
    QCOMPARE(dir.entryList(QDir::Files).size(), 10000);
}

void tst_CCommonUtils::opensOnlyRegularFiles()
{
    QVERIFY(Files::write(inTemp(u"file"_s), "content"));
    QVERIFY(::mkfifo(QFile::encodeName(inTemp(u"pipe"_s)).constData(), 0600) == 0);
    QFile file(inTemp(u"file"_s));
    QVERIFY(CCommonUtils::openForReading(file));
    QCOMPARE(file.readAll(), QByteArray("content"));

    for (const QString &name : { u"pipe"_s, u"."_s, u"missing"_s }) {
        QFile other(inTemp(name));
        QString why;
        QVERIFY2(!CCommonUtils::openForReading(other, &why), qPrintable(name));
        QVERIFY2(!why.isEmpty(), qPrintable(name));
    }
}

void tst_CCommonUtils::readingLeavesTheAccessTime()
{
    QVERIFY(Files::write(inTemp(u"file"_s), "content"));
    const QByteArray path = QFile::encodeName(inTemp(u"file"_s));
    // An access time older than the last change is what the usual mount options would renew.
    const timespec times[2] { { 1000000000, 0 }, { 1500000000, 0 } };
    QVERIFY(::utimensat(AT_FDCWD, path.constData(), times, 0) == 0);
    QFile file(inTemp(u"file"_s));
    QVERIFY(CCommonUtils::openForReading(file));
    QCOMPARE(file.readAll(), QByteArray("content"));
    file.close();
    struct stat status
    {
    };
    QVERIFY(::stat(path.constData(), &status) == 0);
    QCOMPARE(qint64(status.st_atim.tv_sec), 1000000000);
}

void tst_CCommonUtils::liftsAndRestoresModes()
{
    const QString hidden = inTemp(u"hidden"_s);
    const QString open = inTemp(u"open"_s);
    QVERIFY(Files::write(hidden, "x") && Files::write(open, "x"));
    const auto mode = [](const QString &path) {
        struct stat status
        {
        };
        return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777U
                                                                         : 0U;
    };
    QVERIFY(::chmod(QFile::encodeName(hidden).constData(), 0040) == 0);
    QVERIFY(::chmod(QFile::encodeName(open).constData(), 0604) == 0);

    CCommonUtils::protectMediaFile(hidden, false);
    CCommonUtils::protectMediaFile(open, false);
    QCOMPARE(mode(hidden), 0440U);
    QCOMPARE(mode(open), 0604U);
    CCommonUtils::protectMediaFile(hidden, true);
    CCommonUtils::protectMediaFile(open, true);
    CCommonUtils::protectMediaFile(inTemp(u"missing"_s), false);
    CCommonUtils::protectMediaFile(inTemp(u"missing"_s), true);
    QCOMPARE(mode(hidden), 0040U);
    QCOMPARE(mode(open), 0604U);
}

void tst_CCommonUtils::formatsDates_data()
{
    QTest::addColumn<QDateTime>("dateTime");
    QTest::addColumn<QString>("day");
    QTest::addColumn<QString>("minute");

    const auto utc = [](int y, int m, int d, int h, int min, int s) {
        return QDateTime(QDate(y, m, d), QTime(h, min, s), Qt::UTC);
    };
    QTest::newRow("noon") << utc(2024, 2, 29, 12, 5, 59) << u"2024-02-29"_s
                          << u"2024-02-29 12:05"_s;
    QTest::newRow("last second of the day")
        << utc(1999, 12, 31, 23, 59, 59) << u"1999-12-31"_s << u"1999-12-31 23:59"_s;
    QTest::newRow("before 1970") << utc(1931, 5, 4, 0, 0, 0) << u"1931-05-04"_s
                                 << u"1931-05-04 00:00"_s;
    QTest::newRow("another zone counts from UTC")
        << QDateTime(QDate(2024, 1, 1), QTime(1, 30), Qt::OffsetFromUTC, 2 * 3600)
        << u"2023-12-31"_s << u"2023-12-31 23:30"_s;
    QTest::newRow("invalid") << QDateTime() << QString() << QString();
}

void tst_CCommonUtils::formatsDates()
{
    QFETCH(QDateTime, dateTime);
    QTEST(CCommonUtils::dateToString(dateTime, true), "day");
    QTEST(CCommonUtils::datetimeToMinute(dateTime, false), "minute");
}

void tst_CCommonUtils::formatsInLocalTime()
{
    const QByteArray before = qgetenv("TZ");
    qputenv("TZ", "America/New_York");
    tzset();
    // The rules of the moment: winter and summer differ by an hour.
    const QDateTime winter(QDate(2024, 1, 15), QTime(3, 0), Qt::UTC);
    const QDateTime summer(QDate(2024, 7, 15), QTime(3, 0), Qt::UTC);
    const QStringList local { CCommonUtils::datetimeToMinute(winter, true),
                              CCommonUtils::datetimeToMinute(summer, true),
                              CCommonUtils::dateToString(summer, false),
                              CCommonUtils::dateToString(summer, true) };
    if (before.isNull())
        qunsetenv("TZ");
    else
        qputenv("TZ", before);
    tzset();
    QCOMPARE(local,
             (QStringList {
                 u"2024-01-14 22:00"_s, u"2024-07-14 23:00"_s, u"2024-07-14"_s, u"2024-07-15"_s }));
}

void tst_CCommonUtils::localMinutesAreThoseOfQDateTime_data()
{
    QTest::addColumn<QByteArray>("zone");

    for (const char *zone : { "UTC",
                              "Europe/Berlin",
                              "America/St_Johns",
                              "Asia/Kathmandu",
                              "Australia/Lord_Howe",
                              "Pacific/Apia",
                              "EST5EDT,M3.2.0,M11.1.0" })
        QTest::newRow(zone) << QByteArray(zone);
}

// Moments from 1890 to 2200 around the hours of every season, in an odd step so that they fall on
// all minutes. The zone is only named in the environment: nothing else tells that it changed.
void tst_CCommonUtils::localMinutesAreThoseOfQDateTime()
{
    QFETCH(QByteArray, zone);

    const QByteArray before = qgetenv("TZ");
    qputenv("TZ", zone);
    QStringList differing;
    const QDateTime end(QDate(2200, 1, 1), QTime(0, 0), Qt::UTC);
    for (QDateTime at(QDate(1890, 1, 1), QTime(0, 0), Qt::UTC); at < end;
         at = at.addMSecs(317 * 3607 * 1009LL)) {
        const QString expected = at.toLocalTime().toString(u"yyyy-MM-dd hh:mm"_s);
        if (CCommonUtils::datetimeToMinute(at, true) != expected)
            differing.append(at.toString(Qt::ISODate));
    }
    if (before.isNull())
        qunsetenv("TZ");
    else
        qputenv("TZ", before);
    tzset();
    QCOMPARE(differing, QStringList());
}

void tst_CCommonUtils::countsFrom2001_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("expected");

    QTest::newRow("base") << 0.0 << u"2001-01-01T00:00:00.000Z"_s;
    QTest::newRow("milliseconds") << 700000000.1239 << u"2023-03-08T20:26:40.124Z"_s;
    QTest::newRow("before") << -978307200.0 << u"1970-01-01T00:00:00.000Z"_s;
    QTest::newRow("nan") << std::nan("") << QString();
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << QString();
    QTest::newRow("out of range") << 1e30 << QString();
    QTest::newRow("out of range below") << -1e17 << QString();
}

void tst_CCommonUtils::countsFrom2001()
{
    QFETCH(double, seconds);
    const QDateTime moment = CCommonUtils::buildDateTimeBase2001(seconds);
    QTEST(moment.toString(Qt::ISODateWithMs), "expected");
    if (moment.isValid())
        QCOMPARE(moment.timeSpec(), Qt::UTC);
}

void tst_CCommonUtils::formatsSizes_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<char>("format");
    QTest::addColumn<int>("precision");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing") << qint64(0) << 'f' << 2 << u"0 B"_s;
    QTest::newRow("bytes have no decimals") << qint64(1023) << 'f' << 2 << u"1023 B"_s;
    QTest::newRow("one kilobyte") << qint64(1024) << 'f' << 1 << u"1.0 KB"_s;
    QTest::newRow("stays below the next unit") << qint64(1048575) << 'f' << 2 << u"1024.00 KB"_s;
    QTest::newRow("megabytes") << qint64(2621440) << 'f' << 2 << u"2.50 MB"_s;
    QTest::newRow("shortest form") << qint64(2621440) << 'g' << 6 << u"2.5 MB"_s;
    QTest::newRow("250 GB") << qint64(268435456000) << 'f' << 0 << u"250 GB"_s;
    QTest::newRow("terabytes are the last") << (qint64(2048) << 40) << 'f' << 0 << u"2048 TB"_s;
}

void tst_CCommonUtils::formatsSizes()
{
    QFETCH(qint64, bytes);
    QFETCH(char, format);
    QFETCH(int, precision);
    QTEST(CCommonUtils::fileSizeToString(bytes, format, precision), "expected");
}

QTEST_GUILESS_MAIN(tst_CCommonUtils)
#include "tst_CCommonUtils.moc"
