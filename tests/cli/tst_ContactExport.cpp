#include "auto/PhoneBackup/ContactFixture.h"
#include "cli/Program.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QTest>

using namespace CliTest;
using namespace Qt::StringLiterals;

namespace {

//! Cells of a table with quotes around some of them.
QList<QStringList> rowsOf(const QString &table)
{
    QList<QStringList> rows(1);
    QString cell;
    bool isEnclosed = false;
    for (qsizetype i = 0; i < table.size(); ++i) {
        const QChar c = table[i];
        if (c == u'"' && isEnclosed && i + 1 < table.size() && table[i + 1] == u'"') {
            cell += table[++i];
        } else if (c == u'"') {
            isEnclosed = !isEnclosed;
        } else if (!isEnclosed && (c == u',' || c == u'\r')) {
            rows.last().append(cell);
            cell.clear();
        } else if (!isEnclosed && c == u'\n') {
            rows.append(QStringList());
        } else {
            cell += c;
        }
    }
    if (rows.last().isEmpty() && cell.isEmpty())
        rows.removeLast();
    return rows;
}

QString fault(const QString &file, const QString &what)
{
    return u"%1: %2\n"_s.arg(QFileInfo(file).fileName().left(60), what);
}

//! What is wrong with a card, empty when nothing is.
QString cardFaults(const QString &path)
{
    static const QRegularExpression line(u"^(?:[A-Z][A-Z0-9-]*[;:]| [A-Za-z0-9+/=]+$)"_s);
    const QString card = QString::fromUtf8(Files::read(path));
    QString faults;
    if (!card.startsWith("BEGIN:VCARD\r\nVERSION:2.1\r\n"_L1) || !card.endsWith("END:VCARD\r\n"_L1))
        faults += fault(path, u"no whole card"_s);
    if (card.contains("\nBEGIN:VCARD"_L1))
        faults += fault(path, u"not one card"_s);
    const QStringList lines = card.split(u"\r\n"_s, Qt::SkipEmptyParts);
    for (const QString &text : lines) {
        if (!line.match(text).hasMatch() || text.contains(u'\n'))
            faults += fault(path, text.left(60));
    }
    return faults;
}

} // namespace

//! Contacts from the address book of a backup to page, table and cards.
class tst_ContactExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void staysValid_data();
    void staysValid();
    void leavesTheRestAlone();

private:
    //! What is wrong with the three outputs of \a contacts people, empty when nothing is.
    QString faults(int contacts) const;

    std::unique_ptr<QTemporaryDir> m_output;
};

void tst_ContactExport::staysValid_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QByteArray>("images");
    QTest::addColumn<int>("contacts");
    QTest::addColumn<QString>("reported"); // empty: nothing is missing

    const auto named = [](const char *tag, const QString &first, const QString &last = u"B"_s) {
        QTest::newRow(tag) << "INSERT INTO ABPerson(First, Last, Nickname, Organization, Note)"
                              " VALUES (CAST(x'"
                + first.toUtf8().toHex() + "' AS TEXT), CAST(x'" + last.toUtf8().toHex()
                + "' AS TEXT), CAST(x'" + first.toUtf8().toHex()
                + "' AS TEXT), 'O', 'N'); INSERT INTO ABMultiValue(record_id, property, value) "
                  "VALUES (1, 3, CAST(x'"
                + last.toUtf8().toHex() + "' AS TEXT));"
                           << QByteArray() << 1 << QString();
    };
    named("usual", u"Ann"_s);
    named("line breaks", u"An\nn\r\nEND:VCARD\r\nBEGIN:VCARD"_s, u"1\r\n2\n3\r4\u20285"_s);
    named("slashes", u"../../A/B\\C"_s, u"/"_s);
    named("quotes", u"\"'`,;\""_s, u"\""_s);
    named("emoji", u"👨‍👩‍👧‍👦"_s, u"🐙"_s);
    named("right to left", u"نور\u202E"_s, u"الهدى"_s);
    named("1 MB", QString(1 << 20, u'x'), QString(1 << 20, u'"'));
    named("mark-up", u"<script>1</script></style><!--"_s, u"]]>&amp;\0"_s);
    named("dots only", u".."_s, u"."_s);

    const QByteArray ann = "INSERT INTO ABPerson(First) VALUES ('Ann');";
    QTest::newRow("nothing in it") << ""_ba
                                   << ""_ba << 0 << QString();
    QTest::newRow("without any name") << "INSERT INTO ABPerson(ROWID) VALUES (1), (2);"_ba
                                      << ""_ba << 2 << QString();
    QTest::newRow("label row that is missing")
        << ann + "INSERT INTO ABMultiValue(record_id, property, label, value) VALUES (1, 3, 9, '1')"
        << ""_ba << 1 << QString();
    QTest::newRow("100 entries") << ann
            + "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) INSERT"
              " INTO ABMultiValue(record_id, property, value) SELECT 1, 3 + i % 2, i FROM n"
                                 << ""_ba << 1 << QString();
    QTest::newRow("photo that is none")
        << ann << "INSERT INTO ABFullSizeImage(record_id, data) VALUES (1, 'text')"_ba << 1
        << u"Ann (1),Backup,\"The photo"_s;
    QTest::newRow("photo that cannot be decoded")
        << ann << "INSERT INTO ABFullSizeImage(record_id, data) VALUES (1, x'FFD8FFE000')"_ba << 1
        << u"Ann,Content"_s;
    QTest::newRow("birthday that is none")
        << "INSERT INTO ABPerson(First, Birthday) VALUES ('Ann', 'x')"_ba
        << ""_ba << 1 << u"Ann (1)"_s;
    QTest::newRow("an entry of an unknown kind")
        << ann + "INSERT INTO ABMultiValue(record_id, property, value) VALUES (1, 99, 'x')"
        << ""_ba << 1 << u"ABMultiValue.property"_s;
}

void tst_ContactExport::staysValid()
{
    QFETCH(QByteArray, rows);
    QFETCH(QByteArray, images);
    QFETCH(int, contacts);
    QFETCH(QString, reported);
    m_output = std::make_unique<QTemporaryDir>();
    ContactFixture fixture;
    fixture.writer.setInfo(u"Display Name"_s, u"Robin"_s);
    fixture.addBook(ContactFixture::book(rows));
    fixture.addImages(ContactFixture::images(images));
    QVERIFY(fixture.finish());
    const Result result =
        run({ u"--only=contacts"_s, u"--into-existing"_s, fixture.root(), m_output->path() });
    const QString report =
        QString::fromUtf8(Files::read(m_output->filePath(u"export-report.csv"_s)));
    QCOMPARE(result.exitCode, reported.isEmpty() ? 0 : 3);
    QVERIFY2(report.contains(reported), qPrintable(report));
    QVERIFY(!hasControlBytes(result.err));
    QCOMPARE(faults(contacts), QString());
}

QString tst_ContactExport::faults(int contacts) const
{
    const QDir folder(m_output->filePath(u"Contacts"_s));
    if (contacts == 0)
        return folder.exists() ? u"a folder of nothing\n"_s : QString();
    const QStringList parts = folder.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    if (parts != QStringList({ u"CSV"_s, u"HTML"_s, u"VCF"_s }))
        return parts.join(u' ');

    QString found;
    const QDir cards(folder.filePath(u"VCF"_s));
    const QStringList names =
        cards.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    if (names.size() != contacts)
        found += fault(u"VCF"_s, QString::number(names.size()));
    for (const QString &name : names)
        found += cardFaults(cards.filePath(name));

    const QString tablePath = folder.filePath(u"CSV/Robin's Contacts.csv"_s);
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString table = decode(Files::read(tablePath));
    const QList<QStringList> rows = rowsOf(table);
    if (decode.hasError() || rows.size() != contacts + 1)
        found += fault(tablePath, u"%1 rows"_s.arg(rows.size()));
    for (const QStringList &row : rows) {
        if (row.size() != rows.first().size())
            found += fault(tablePath, u"%1 cells in a row"_s.arg(row.size()));
    }

    const QString pagePath = folder.filePath(u"HTML/Robin's Contacts.html"_s);
    const QString page = QString::fromUtf8(Files::read(pagePath));
    if (page.count("<div class=\"main nc\">"_L1) != contacts || !page.endsWith("</html>"_L1))
        found += fault(pagePath, page.right(60));
    const QString body = page.section("</head>"_L1, 1);
    if (page.contains("<script"_L1, Qt::CaseInsensitive) || body.contains("</style>"_L1))
        found += fault(pagePath, u"mark-up of others"_s);
    return found;
}

void tst_ContactExport::leavesTheRestAlone()
{
    m_output = std::make_unique<QTemporaryDir>();
    ContactFixture fixture;
    fixture.addBook(QByteArray(5000, 'x'));
    fixture.writer.addFile(u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/IMG_1.JPG"_s, "x");
    QVERIFY(fixture.finish());
    const Result result = run({ u"--into-existing"_s, fixture.root(), m_output->path() });
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.err.contains("AddressBook.sqlitedb"), result.err.constData());
    QCOMPARE(Files::tree(m_output->path()),
             QStringList({ u"Photos/"_s,
                           u"Photos/100APPLE/"_s,
                           u"Photos/100APPLE/IMG_1.JPG"_s,
                           u"export-report.csv"_s,
                           u"index.html"_s }));
    QVERIFY(result.out.contains("Contacts"));
}

QTEST_GUILESS_MAIN(tst_ContactExport)
#include "tst_ContactExport.moc"
