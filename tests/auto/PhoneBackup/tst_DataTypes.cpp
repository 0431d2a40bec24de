#include "BackupFixture.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using Sample::FileTraits;

namespace {

constexpr int kAppDocuments = 10;
constexpr int kVoicemail = 16;

FileTraits at(int year)
{
    FileTraits traits;
    traits.modified = QDateTime(QDate(year, 1, 2), QTime(3, 4), Qt::UTC);
    return traits;
}

struct TestFile
{
    const char *domain;
    const char *path;
};

} // namespace

class tst_DataTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readsVoicemailWhateverTheDatabase_data();
    void readsVoicemailWhateverTheDatabase();
    void tellsAppDocuments_data();
    void tellsAppDocuments();
};

void tst_DataTypes::initTestCase()
{
    // Names hold local times: they must be those of the zone, not of UTC.
    qputenv("TZ", "America/New_York");
    ::tzset();
}

void tst_DataTypes::readsVoicemailWhateverTheDatabase_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("problem");
    QTest::newRow("absent") << QByteArray() << false;
    QTest::newRow("empty") << QByteArray("") << true;
    QTest::newRow("garbage") << QByteArray(5000, 'x') << true;
    QTest::newRow("no table") << BackupFixture::database("CREATE TABLE map (a)") << true;
    QTest::newRow("no columns") << BackupFixture::database("CREATE TABLE voicemail (a)") << false;
}

void tst_DataTypes::readsVoicemailWhateverTheDatabase()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, problem);
    BackupFixture fixture;
    const QString home = u"HomeDomain"_s;
    fixture.writer.addFile(home, u"Library/Voicemail/1.amr"_s, "#!AMR", at(2019));
    fixture.writer.addFile(home, u"Library/Voicemail/2.amr"_s, "#!AMR", at(2020));
    if (!content.isNull())
        fixture.writer.addFile(home, u"Library/Voicemail/voicemail.db"_s, content);
    QCOMPARE(fixture.list(kVoicemail), QStringList({ u"2.amr"_s, u"1.amr"_s }));
    const QStringList expected { u"16 HomeDomain/Library/Voicemail/voicemail.db"_s };
    QCOMPARE(fixture.problems(), problem ? expected : QStringList());
}

void tst_DataTypes::tellsAppDocuments_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected"); // empty: left out

    const QString files = u"AppDomainGroup-group.com.apple.FileProvider.LocalStorage"_s;
    QTest::newRow("document") << u"AppDomain-org.a"_s << u"Documents/x/y/Plan.pdf"_s
                              << u"org.a/Plan.pdf"_s;
    QTest::newRow("of a group") << u"AppDomainGroup-group.b"_s << u"Documents/1.txt"_s
                                << u"group.b/1.txt"_s;
    QTest::newRow("of the Files app")
        << files << u"File Provider Storage/Übersicht.txt"_s
        << u"group.com.apple.FileProvider.LocalStorage/Übersicht.txt"_s;
    QTest::newRow("its trash") << files << u"File Provider Storage/.Trash/a.txt"_s << QString();
    QTest::newRow("settings") << u"AppDomain-org.a"_s << u"Library/Preferences/a.plist"_s
                              << QString();
    QTest::newRow("hidden") << u"AppDomain-org.a"_s << u"Documents/.cache/a"_s << QString();
    QTest::newRow("cache") << u"AppDomain-org.a"_s << u"Documents/Caches/a"_s << QString();
    QTest::newRow("begins like it") << u"AppDomain-org.a"_s << u"DocumentsOld/a"_s << QString();
    QTest::newRow("extension") << u"AppDomainPlugin-org.a"_s << u"Documents/a"_s << QString();
    QTest::newRow("climbing up") << u"AppDomain-../../x"_s << u"Documents/../../y"_s
                                 << u"_.._x/y"_s;
    QTest::newRow("without a name") << u"AppDomain-"_s << u"Documents/a"_s << u"_/a"_s;
}

void tst_DataTypes::tellsAppDocuments()
{
    QFETCH(QString, domain);
    QFETCH(QString, path);
    QFETCH(QString, expected);
    BackupFixture fixture;
    fixture.writer.addFolder(u"AppDomain-org.a"_s, u"Documents/folder"_s);
    fixture.writer.addFile(domain, path, "x");
    QCOMPARE(fixture.list(kAppDocuments),
             expected.isEmpty() ? QStringList() : QStringList(expected));
}

QTEST_GUILESS_MAIN(tst_DataTypes)
#include "tst_DataTypes.moc"
