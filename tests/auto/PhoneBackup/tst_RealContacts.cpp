#include "ContactFixture.h"
#include "auto/sample/SqliteRows.h"

#include <QtTest>

using namespace Qt::StringLiterals;

//! An address book that no one here wrote; skipped where there is none.
class tst_RealContacts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEverybody();
};

void tst_RealContacts::readsEverybody()
{
    const QString given = qEnvironmentVariable("DATAEXPORT_REAL_DATA");
    const QString root = given.isEmpty()
        ? QDir(QStringLiteral(TEST_SOURCE_DIR)).filePath(u"../../shared/real"_s)
        : given;
    const QString book = root + u"/contacts/AddressBook.sqlitedb"_s;
    if (!QFileInfo::exists(book))
        QSKIP("no real address book: set DATAEXPORT_REAL_DATA to where it is");
    const auto texts = [&book](const char *sql) {
        QStringList list;
        for (const QByteArrayList &row : sqliteRows(book, sql))
            list.append(QString::fromUtf8(row.value(0)));
        return list;
    };

    ContactFixture fixture;
    fixture.addBook(Files::read(book));
    QCOMPARE(fixture.names().size(), texts("SELECT ROWID FROM ABPerson").size());
    QString all;
    for (int i = 0; i < fixture.names().size(); ++i)
        all += fixture.details(i).join(u'\n') + u'\n';
    const QStringList wanted =
        texts("SELECT value FROM ABMultiValue WHERE value NOT NULL AND property IN "
              "(3, 4, 5, 13, 22, 23, 46)")
        + texts("SELECT value FROM ABMultiValueEntry")
        + texts("SELECT First FROM ABPerson WHERE First NOT NULL")
        + texts("SELECT Last FROM ABPerson WHERE Last NOT NULL")
        + texts("SELECT Organization FROM ABPerson WHERE Organization NOT NULL");
    QVERIFY(wanted.size() > 10);
    for (const QString &text : wanted)
        QVERIFY2(all.contains(text), qPrintable(text));
    QCOMPARE(all.count(u"birthday: "_s),
             texts("SELECT 1 FROM ABPerson WHERE Birthday <> ''").size());
    QCOMPARE(fixture.problems(), QStringList());
}

QTEST_GUILESS_MAIN(tst_RealContacts)
#include "tst_RealContacts.moc"
