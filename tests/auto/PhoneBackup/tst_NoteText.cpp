#include "PhoneBackup/notes/NoteBodyWriter.h"
#include "PhoneBackup/notes/NoteTableRecord.h"
#include "PhoneBackup/packed/FieldReader.h"
#include "PhoneBackup/packed/Gzip.h"
#include "PhoneItems/notes/NoteBodyText.h"
#include "sample/NoteRecord.h"
#include "support/Files.h"

#include <QtTest>

using namespace PhoneBackup;
using PhoneItems::NoteBodyText;
using namespace Qt::StringLiterals;
using Sample::FieldWriter;
using SampleRun = Sample::NoteRun;

namespace {

constexpr qsizetype kLargest = 32 << 20;
const QString kFile = QString(QChar(0xFFFC));

QString realData()
{
    const QString given = qEnvironmentVariable("DATAEXPORT_REAL_DATA");
    return given.isEmpty() ? QDir(QStringLiteral(TEST_SOURCE_DIR)).filePath(u"../../shared/real"_s)
                           : given;
}

// A note whose attachments are words that name them; "table" gives a table.
struct NamedNote : Note
{
    NoteText::Insets insets()
    {
        return [this](const QString &name, const QString &type) {
            if (name == "table"_L1) {
                const QByteArray cells =
                    Sample::tableDocument({ { u"a"_s, u"b"_s }, { u"c"_s, u"d"_s } });
                return NoteText::Inset {
                    -1, std::make_shared<const NoteTable>(NoteTableRecord::read(cells, {})->table)
                };
            }
            NoteAttachment word;
            word.kind = NoteAttachment::Kind::Word;
            word.text = u'[' + name + u' ' + type + u']';
            attachments.push_back(word);
            return NoteText::Inset { qint32(attachments.size()) - 1, nullptr };
        };
    }

    // Whether all of it was read.
    bool read(const QByteArray &document)
    {
        NoteText text = NoteText::read(document, insets());
        body = std::move(text.body);
        return text.isComplete;
    }

    // Fixed blanks are written as dots.
    QString text() const { return NoteBodyText::of(*this).text.replace(QChar(QChar::Nbsp), u'.'); }
};

// The lines of the table in \a document, with brackets for the characters that steer the order of
// columns.
QString tableText(const QByteArray &document)
{
    NamedNote note;
    const std::optional<NoteTableRecord> record = NoteTableRecord::read(document, note.insets());
    if (!record)
        return u"none"_s;
    return NoteBodyText::of(record->table, note)
               .text.replace(QChar(0x2067), u'⟪')
               .replace(QChar(0x2068), u'‹')
               .replace(QChar(0x2069), u'›')
        + (record->isComplete ? QString() : u" (incomplete)"_s);
}

} // namespace

//! Texts as a person reads them, from the forms that notes are kept in.
class tst_NoteText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsFields_data();
    void readsFields();
    void unpacks_data();
    void unpacks();
    void neverUnpacksMoreThanAllowed();
    void readsDamagedRecords();
    void survivesEveryFlippedByte_data();
    void survivesEveryFlippedByte();
    void boundsWhatRecordsSay_data();
    void boundsWhatRecordsSay();
    void readsRealRecords_data();
    void readsRealRecords();
};

void tst_NoteText::readsFields_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QString>("expected"); // "number=value" or "number:bytes", "!" when damaged

    const auto row = [](const char *name, const char *hex, const QString &expected) {
        QTest::newRow(name) << QByteArray::fromHex(hex) << expected;
    };
    row("nothing", "", QString());
    row("every wire type",
        "0801 12026869 1d04030201 210807060504030201",
        u"1=1 2:hi 3=16909060 4=72623859790382856"_s);
    row("real number",
        "1d0000003f 2100000000000000e0 08003f",
        u"3=1056964608 (0.5) 4=16140901064495857664 1=0 !"_s);
    row("long number", "08ffffffffffffffffff01", u"1=18446744073709551615"_s);
    row("number beyond 64 bits", "08ffffffffffffffffff7f", u"1=18446744073709551615"_s);
    row("number without an end", "0801 10ffffffffffffffffffff01", u"1=1 !"_s);
    row("cut number", "0801 10ff", u"1=1 !"_s);
    row("bytes longer than the message", "0801 120568", u"1=1 !"_s);
    row("length of 64 bits", "0801 12ffffffffffffffffff01", u"1=1 !"_s);
    row("cut fixed numbers", "1d0403", u"!"_s);
    row("field 0", "0001", u"!"_s);
    row("number of a field too large", "f8ffffffff7f01", u"!"_s);
    row("group", "0801 0b 0c", u"1=1 !"_s);
    row("wire type 7", "0f", u"!"_s);
    row("empty bytes", "1200 1801", u"2: 3=1"_s);
}

void tst_NoteText::readsFields()
{
    QFETCH(QByteArray, message);
    QFETCH(QString, expected);
    QStringList read;
    FieldReader reader(message);
    while (reader.next()) {
        const QString number = QString::number(reader.number());
        QString value = reader.isBytes() ? u':' + QString::fromUtf8(reader.bytes())
                                         : u'=' + QString::number(reader.value());
        if (reader.real() > 1e-3F)
            value += u" (%1)"_s.arg(reader.real());
        read.append(number + value);
    }
    if (reader.isDamaged())
        read.append(u"!"_s);
    QCOMPARE(read.join(u' '), expected);
    QVERIFY(!reader.next());
}

void tst_NoteText::unpacks_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<int>("state");
    QTest::addColumn<QByteArray>("start");

    using State = Unzipped::State;
    const QByteArray text = QByteArray("Milk and bread. ").repeated(1000);
    const QByteArray packed = Sample::gzipped(text);
    QByteArray wrong = packed;
    wrong[wrong.size() - 6] = char(~uchar(wrong[wrong.size() - 6]));
    QTest::newRow("whole") << packed << int(State::Whole) << text;
    QTest::newRow("empty text") << Sample::gzipped({}) << int(State::Whole) << QByteArray();
    QTest::newRow("wrong check sum") << wrong << int(State::Damaged) << text;
    QTest::newRow("cut") << packed.first(packed.size() - 20) << int(State::Damaged)
                         << QByteArray("Milk and bread. ");
    QTest::newRow("header alone") << packed.first(10) << int(State::Damaged) << QByteArray();
    QTest::newRow("two bytes") << packed.first(2) << int(State::Damaged) << QByteArray();
    QTest::newRow("nothing") << QByteArray() << int(State::NotGzip) << QByteArray();
    QTest::newRow("cipher") << QByteArray("\x00\x11\x22", 3) << int(State::NotGzip) << QByteArray();
    QTest::newRow("property list") << QByteArray("bplist00") << int(State::NotGzip) << QByteArray();
}

void tst_NoteText::unpacks()
{
    QFETCH(QByteArray, record);
    QFETCH(int, state);
    QFETCH(QByteArray, start);
    const Unzipped result = unzipped(record, kLargest);
    QCOMPARE(int(result.state), state);
    QVERIFY(result.data.startsWith(start));
    if (result.state == Unzipped::State::Whole)
        QCOMPARE(result.data.size(), start.size());
}

void tst_NoteText::neverUnpacksMoreThanAllowed()
{
    const QByteArray bomb = Sample::gzipped(QByteArray(64 << 20, 'x'));
    QVERIFY(bomb.size() < 100'000);
    for (const qsizetype most : { qsizetype(1), qsizetype(5000), qsizetype(1) << 20 }) {
        const Unzipped result = unzipped(bomb, most);
        QCOMPARE(int(result.state), int(Unzipped::State::TooLong));
        QCOMPARE(result.data.size(), most);
        QVERIFY(result.data.capacity() < 2 * most + 5000);
    }
}

void tst_NoteText::readsDamagedRecords()
{
    const QByteArray whole = Sample::noteDocument(
        { { u"first line\n"_s }, { u"item\n"_s, SampleRun::Dotted }, { u"last"_s } });
    // The lengths of the outer messages no longer fit: nothing of it can be told apart.
    for (qsizetype size = 0; size < whole.size(); ++size)
        QVERIFY(NoteText::read(whole.first(size), {}).body.text.size() <= 20);
    // Runs that lie about their lengths, and unknown fields between them.
    const auto document = [](const QByteArray &body) {
        return FieldWriter().bytes(2, FieldWriter().bytes(3, body).message()).message();
    };
    const QByteArray run = FieldWriter().number(1, ~quint64(0)).message();
    NamedNote note;
    QVERIFY(note.read(document(FieldWriter()
                                   .number(99, 7)
                                   .bytes(1000, "unknown")
                                   .text(2, u"all of it"_s)
                                   .bytes(5, run)
                                   .bytes(5, run)
                                   .message())));
    QCOMPARE(note.text(), u"all of it"_s);
    QVERIFY(
        !note.read(document(FieldWriter().text(2, u"cut"_s).message() + QByteArray("\x2a\x7f"))));
    QCOMPARE(note.text(), u"cut"_s);
    QVERIFY(!note.read({}));
}

void tst_NoteText::survivesEveryFlippedByte_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::newRow("note") << Sample::noteDocument(
        { { u"a\n"_s, SampleRun::Numbered },
          { kFile, -1, 0, false, false, u"x"_s, u"id"_s, u"t"_s } });
    QTest::newRow("table") << Sample::tableDocument({ { u"a"_s, u"b"_s }, { u"c"_s, u"d"_s } });
}

void tst_NoteText::survivesEveryFlippedByte()
{
    QFETCH(QByteArray, document);
    for (qsizetype at = 0; at < document.size(); ++at) {
        for (const uchar mask : { uchar(0x01), uchar(0x80), uchar(0xFF) }) {
            QByteArray damaged = document;
            damaged[at] = char(uchar(damaged[at]) ^ mask);
            NamedNote note;
            note.read(damaged);
            QVERIFY(note.text().size() <= 2 * document.size());
            QVERIFY(tableText(damaged).size() <= 2 * document.size() + 20);
        }
    }
}

void tst_NoteText::boundsWhatRecordsSay_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<bool>("isTable");
    QTest::addColumn<bool>("isLines"); // what each costs is the limit, not their text

    const auto document = [](const QByteArray &body) {
        return FieldWriter().bytes(2, FieldWriter().bytes(3, body).message()).message();
    };
    QList<SampleRun> insets;
    for (int i = 0; i < 20'000; ++i)
        insets.append({ kFile, -1, 0, false, false, {}, u"long"_s, u"t"_s });
    QTest::newRow("the same long file everywhere")
        << Sample::noteDocument(insets) << false << false;
    QTest::newRow("a long text") << Sample::noteDocument({ { QString(9 << 20, u'x') } }) << false
                                 << false;
    QTest::newRow("lines without end")
        << Sample::noteDocument({ { QString(9 << 20, u'\n') } }) << false << true;
    // 3000 columns that share 3000 cells.
    const auto reference = [](quint64 object) { return FieldWriter().number(6, object).message(); };
    const auto element = [&](quint64 key, quint64 value) {
        return FieldWriter().bytes(1, reference(key)).bytes(2, reference(value)).message();
    };
    FieldWriter array;
    FieldWriter cells;
    FieldWriter columns;
    FieldWriter data;
    constexpr int kMany = 3000;
    for (int i = 0; i < kMany; ++i) {
        const QByteArray uuid = "identifier " + QByteArray::number(i);
        array.bytes(2, FieldWriter().bytes(2, uuid).message());
        data.bytes(6, uuid);
        cells.bytes(1, element(quint64(3 + i), 2));
        columns.bytes(1, element(quint64(3 + i), 1));
    }
    const QByteArray set =
        FieldWriter().bytes(1, FieldWriter().bytes(1, array.message()).message()).message();
    FieldWriter table;
    table.number(1, 0);
    const std::array<quint64, 3> parts { 3 + kMany, 3 + kMany, 4 + kMany };
    for (std::size_t i = 0; i < parts.size(); ++i)
        table.bytes(3, FieldWriter().number(1, i).bytes(2, reference(parts[i])).message());
    data.bytes(3, FieldWriter().bytes(13, table.message()).message());
    data.bytes(3, FieldWriter().bytes(6, cells.message()).message());
    data.bytes(
        3, FieldWriter().bytes(10, FieldWriter().text(2, QString(500, u'x')).message()).message());
    for (int i = 0; i < kMany; ++i) {
        const QByteArray value = FieldWriter().number(2, quint64(i)).message();
        const QByteArray entry = FieldWriter().number(1, 9).bytes(2, value).message();
        data.bytes(3, FieldWriter().bytes(13, FieldWriter().bytes(3, entry).message()).message());
    }
    data.bytes(3, FieldWriter().bytes(16, set).message());
    data.bytes(3, FieldWriter().bytes(6, columns.message()).message());
    for (const char *key : { "crRows", "crColumns", "cellColumns" })
        data.bytes(4, key);
    data.bytes(5, "x.ICTable");
    QTest::newRow("columns that share their cells") << document(data.message()) << true << false;
}

void tst_NoteText::boundsWhatRecordsSay()
{
    QFETCH(QByteArray, document);
    QFETCH(bool, isTable);
    QFETCH(bool, isLines);
    if (isTable) {
        const auto record = NoteTableRecord::read(document, {});
        QVERIFY(record && !record->isComplete && record->table.rows() > 0);
        QVERIFY(qsizetype(record->table.cells.size()) <= NoteTableRecord::kMaxCells);
        QVERIFY(tableText(document).size() < 10 * document.size());
        return;
    }
    NamedNote note;
    NoteText text = NoteText::read(document, [&note](const QString &, const QString &) {
        if (note.attachments.empty()) {
            note.attachments.emplace_back().kind = NoteAttachment::Kind::Word;
            note.attachments.back().text = QString(1000, u'x');
        }
        return NoteText::Inset { 0, nullptr };
    });
    note.body = std::move(text.body);
    QVERIFY(note.body.text.size() <= NoteBodyWriter::kMaxCharacters);
    QVERIFY(note.body.runs.size() + note.body.blocks.size() <= NoteBodyWriter::kMaxParts);
    const NoteBodyText shown = NoteBodyText::of(note);
    QVERIFY(!text.isComplete || !shown.isComplete);
    QCOMPARE(shown.text.size() == NoteBodyText::kMaxCharacters, !isLines);
}

void tst_NoteText::readsRealRecords_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("expected"); // a part of it

    QTest::newRow("simple") << u"simple_note_protobuf"_s << u"Title"_s;
    QTest::newRow("lists")
        << u"list_indents"_s
        << u"☐ Checklist\n....☐ Indented checklist 1\n........☐ Indented "
           "checklist 2 checked\n....☐ Indented 1\n\n• Dotted list\n....• Dotted "
           "list second indent\n• Dotted list\n\n....– Dashed list indent 2\n– "
           "Dashed list\n\n1. Numbered list\n....1. Numbers list indent 2"_s;
    QTest::newRow("links") << u"url"_s
                           << u"Jim Nettles (https://en.m.wikipedia.org/wiki/Jim_Nettles) "
                              "followed his older brother (https://"_s;
    QTest::newRow("quotes") << u"block_quotes"_s << u"\n┃ This is a block quote\n"_s;
    QTest::newRow("emoji") << u"emoji_formatting_1"_s
                           << u"🚀1🚀2🕹️3💻4🖥️5🧑\u200d💻6👩\u200d💻7"_s;
    QTest::newRow("tags as text") << u"html"_s << u"<script src=‘evil.js’></script>"_s;
    QTest::newRow("wide characters")
        << u"wide_characters"_s
        << u"體驗看法覺得很大\n\n6 character title\n8 character body\n\n[AE845CBB-"_s;
    QTest::newRow("decorations") << u"text_decorations"_s
                                 << u"Bold italic body \nUnderlined body"_s;
    QTest::newRow("table") << u"table"_s
                           << u"Row 1 Column 1 | Row 1 Column 2\nRow 2 Column 1 | Row 2 Column 2"_s;
    QTest::newRow("table from right to left")
        << u"right_to_left_table"_s << u"⟪‹اول› | ›\n⟪ | ‹نهاية››"_s;
}

void tst_NoteText::readsRealRecords()
{
    QFETCH(QString, file);
    QFETCH(QString, expected);
    const QString path = realData() + u"/notes/bodies/%1_gzipped.bin"_s.arg(file);
    if (!QFileInfo::exists(path))
        QSKIP("no real records: set DATAEXPORT_REAL_DATA to where they are");
    const Unzipped record = unzipped(Files::read(path), kLargest);
    QCOMPARE(int(record.state), int(Unzipped::State::Whole));
    if (const QString table = tableText(record.data); table != u"none"_s) {
        QCOMPARE(table, expected);
        return;
    }
    NamedNote note;
    QVERIFY(note.read(record.data));
    QVERIFY2(note.text().contains(expected), qPrintable(note.text()));
}

QTEST_GUILESS_MAIN(tst_NoteText)
#include "tst_NoteText.moc"
