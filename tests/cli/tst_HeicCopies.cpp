#include "cli/Program.h"
#include "cli/UsualBackup.h"
#include "sample/BackupWriter.h"
#include "sample/CallSample.h"
#include "sample/HeicEncoder.h"
#include "sample/PictureMaker.h"
#include "support/Files.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace CliTest;
using namespace Qt::StringLiterals;

namespace {

const QDateTime kTaken(QDate(2021, 8, 7), QTime(6, 5, 4), Qt::UTC);

// What another program reads from a picture.
QJsonObject remarks(const QString &path)
{
    QProcess tool;
    tool.start(u"exiftool"_s, { u"-json"_s, u"-n"_s, path });
    return tool.waitForFinished()
        ? QJsonDocument::fromJson(tool.readAllStandardOutput()).array().first().toObject()
        : QJsonObject();
}

// \a picture with a place and an unusual tag, as another program writes them.
QByteArray withPlace(const QByteArray &picture, const QString &name)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(name);
    QProcess tool;
    if (!Files::write(path, picture))
        return {};
    tool.start(u"exiftool"_s,
               { u"-q"_s,
                 u"-overwrite_original"_s,
                 u"-GPSLatitude=54.3"_s,
                 u"-GPSLatitudeRef=N"_s,
                 u"-GPSLongitude=10.1"_s,
                 u"-GPSLongitudeRef=E"_s,
                 u"-HostComputer=Sample Host"_s,
                 path });
    return tool.waitForFinished() && tool.exitCode() == 0 ? Files::read(path) : QByteArray();
}

QByteArray encoded(const QImage &image, const char *format)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

// Blue, with red in the corner that is the top left one when it stands upright.
QImage drawn()
{
    QImage image(320, 200, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 160; ++x)
            image.setPixel(x, y, qRgb(255, 0, 0));
    }
    return image;
}

constexpr int kToTheRight = 6;

// What a camera notes of a picture that is to be turned to the right, the place behind all else.
struct Notes
{
    bool isBigEndian = false;
    quint16 orientationType = 3;
    quint16 sizeType = 4;
    quint32 orientation = kToTheRight;
    QSize size = { 200, 320 };
    qsizetype makerNote = 300;
    qsizetype comment = 100;
    int otherNotes = 0; // of 3000 bytes each

    QByteArray block() const;

private:
    struct Entry
    {
        quint16 tag;
        quint16 type;
        quint32 count;
        QByteArray value;
    };

    QByteArray number(quint32 number, qsizetype count) const;
    Entry numbered(quint16 tag, quint16 type, quint32 value) const;
    Entry place(quint16 tag, quint32 degrees, quint32 minutes) const;
    QByteArray directory(qsizetype at, const QList<Entry> &entries) const;
};

QByteArray Notes::number(quint32 number, qsizetype count) const
{
    QByteArray bytes(sizeof(number), '\0');
    if (isBigEndian)
        qToBigEndian(number, bytes.data());
    else
        qToLittleEndian(number, bytes.data());
    return isBigEndian ? bytes.last(count) : bytes.first(count);
}

Notes::Entry Notes::numbered(quint16 tag, quint16 type, quint32 value) const
{
    return { tag, type, 1, number(value, type == 3 ? 2 : 4) };
}

Notes::Entry Notes::place(quint16 tag, quint32 degrees, quint32 minutes) const
{
    QByteArray value;
    for (const quint32 part : { degrees, 1U, minutes, 1U, 0U, 1U })
        value += number(part, 4);
    return { tag, 5, 3, value };
}

QByteArray Notes::directory(qsizetype at, const QList<Entry> &entries) const
{
    QByteArray bytes = number(static_cast<quint32>(entries.size()), 2);
    QByteArray values;
    const qsizetype valuesAt = at + 2 + 12 * entries.size() + 4;
    for (const Entry &entry : entries) {
        bytes += number(entry.tag, 2) + number(entry.type, 2) + number(entry.count, 4);
        if (entry.value.size() > 4) {
            bytes += number(static_cast<quint32>(valuesAt + values.size()), 4);
            values += entry.value + QByteArray(entry.value.size() % 2, '\0');
        } else {
            bytes += entry.value.leftJustified(4, '\0');
        }
    }
    return bytes + QByteArray(4, '\0') + values;
}

QByteArray Notes::block() const
{
    const auto text = [](quint16 tag, quint16 type, const QByteArray &value) {
        return Entry { tag, type, static_cast<quint32>(value.size()), value };
    };
    const auto sized = [&](quint16 widthTag) {
        return QList<Entry> { numbered(widthTag, sizeType, static_cast<quint32>(size.width())),
                              numbered(static_cast<quint16>(widthTag + 1),
                                       sizeType,
                                       static_cast<quint32>(size.height())) };
    };
    const auto link = [&](quint16 tag, qsizetype at) {
        return numbered(tag, 4, static_cast<quint32>(at));
    };
    const auto camera = [&](qsizetype exposureAt, qsizetype placeAt) {
        return directory(8,
                         sized(0x0100)
                             + QList<Entry> { text(0x0110, 2, QByteArray("Sample Phone\0", 13)),
                                              numbered(0x0112, orientationType, orientation),
                                              link(0x8769, exposureAt),
                                              link(0x8825, placeAt) });
    };
    const qsizetype exposureAt = 8 + camera(0, 0).size();
    const auto exposure = [&](qsizetype interoperabilityAt) {
        QList<Entry> noted {
            text(0x9003, 2, QByteArray("2021:08:07 06:05:04\0", 20)),
            text(0x927c, 7, "Sample Works" + QByteArray(makerNote, 'm')),
            text(0x9286, 7, QByteArray("ASCII\0\0\0", 8) + QByteArray(comment, 'c'))
        };
        noted += sized(0xa002);
        noted += link(0xa005, interoperabilityAt);
        for (int i = 0; i < otherNotes; ++i)
            noted += text(static_cast<quint16>(0xc000 + i), 7, QByteArray(3000, 'o'));
        return directory(exposureAt, noted);
    };
    const qsizetype interoperabilityAt = exposureAt + exposure(0).size();
    const QByteArray interoperability =
        directory(interoperabilityAt, { text(1, 2, QByteArray("R98\0", 4)) });
    const qsizetype placeAt = interoperabilityAt + interoperability.size();
    return QByteArray("Exif\0\0", 6) + (isBigEndian ? "MM" : "II") + number(42, 2) + number(8, 4)
        + camera(exposureAt, placeAt) + exposure(interoperabilityAt) + interoperability
        + directory(placeAt,
                    { text(1, 2, QByteArray("N\0", 2)),
                      place(2, 54, 18),
                      text(3, 2, QByteArray("E\0", 2)),
                      place(4, 10, 6) });
}

// With a longer one the notes do not fit into a JPEG.
qsizetype largestMakerNote()
{
    constexpr qsizetype kLargestBlock = 65532;
    return kLargestBlock - Notes { .makerNote = 0 }.block().size();
}

// A picture that is to be turned to the right, with \a exifBlock.
QByteArray turned(const QByteArray &exifBlock)
{
    return Sample::encodeHeic(Sample::storedForOrientation(drawn(), kToTheRight),
                              { kToTheRight, exifBlock });
}

// \a heic with another number of bytes to skip before its EXIF block begins.
QByteArray withSkipped(QByteArray heic, quint32 bytes)
{
    const qsizetype block = heic.indexOf(QByteArray("\0\0\0\6Exif\0\0", 10));
    if (block < 0)
        return {};
    qToBigEndian(bytes, heic.data() + block);
    return heic;
}

QByteArray withBrand(QByteArray heic, const QByteArray &brand)
{
    constexpr qsizetype kBrandAt = 8;
    return heic.replace(kBrandAt, brand.size(), brand);
}

// \a jpeg with a header that tells of another size.
QByteArray withSize(QByteArray jpeg, quint16 width, quint16 height)
{
    const qsizetype frame = jpeg.indexOf(QByteArray("\xff\xc0\0\x11", 4));
    if (frame < 0)
        return {};
    qToBigEndian(height, jpeg.data() + frame + 5);
    qToBigEndian(width, jpeg.data() + frame + 7);
    return jpeg;
}

} // namespace

Q_DECLARE_METATYPE(Notes)

class tst_HeicCopies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { QDir(m_output).removeRecursively(); }
    void writesNoneUnasked();
    void writesOneBesideEachPicture();
    void countsThePagesBehindABrokenPicture();
    void keepsSmallBlocksAsTheyAre_data();
    void keepsSmallBlocksAsTheyAre();
    void keepsDateAndPlaceOfLargeBlocks_data();
    void keepsDateAndPlaceOfLargeBlocks();
    void endsWithBlocksThatLeadInCircles_data();
    void endsWithBlocksThatLeadInCircles();
    void tellsOfBrokenBlocks_data();
    void tellsOfBrokenBlocks();
    void knowsPicturesByTheirBytes_data();
    void knowsPicturesByTheirBytes();
    void refusesWhatItCannotRead_data();
    void refusesWhatItCannotRead();

private:
    // Exports a backup with that photo only.
    Result exportOne(const QString &name, const QByteArray &content)
    {
        const QTemporaryDir folder;
        const QString backup = folder.filePath(u"backup"_s);
        Sample::BackupWriter writer(backup);
        writer.addFile(u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/"_s + name, content);
        if (content.isEmpty() || !writer.finish())
            return {};
        return run({ u"--only=photos"_s, u"--convert-heic"_s, u"--json"_s, backup, m_output });
    }
    Result exportPhotos(const QStringList &more)
    {
        return run(QStringList { u"--only=photos"_s, m_backup, m_output } + more);
    }
    QString photo(const QString &name) const { return m_output + u"/Photos/100APPLE/"_s + name; }

    QTemporaryDir m_folder;
    QString m_backup;
    QString m_output;
};

void tst_HeicCopies::initTestCase()
{
    m_backup = m_folder.filePath(u"backup"_s);
    m_output = m_folder.filePath(u"out"_s);
    Sample::BackupWriter writer(m_backup);
    Sample::FileTraits traits;
    traits.modified = kTaken;
    const auto add = [&](const QString &name, const QByteArray &content) {
        writer.addFile(u"CameraRollDomain"_s, u"Media/DCIM/100APPLE/"_s + name, content, traits);
    };
    const QByteArray first =
        withPlace(Sample::encodeHeic(Sample::storedForOrientation(drawn(), kToTheRight),
                                     { kToTheRight, Sample::exifBlock(kToTheRight, kTaken) }),
                  u"a.heic"_s);
    QVERIFY2(!first.isEmpty(), "exiftool did not run");
    add(u"IMG_0001.HEIC"_s, first);
    add(u"IMG_0002.heic"_s, Sample::encodeHeic(drawn()));
    add(u"IMG_0003.JPG"_s, "no HEIC");
    add(u"IMG_0004.HEIC"_s, withPlace(encoded(drawn(), "JPG"), u"a.jpg"_s));
    QImage glass(64, 64, QImage::Format_ARGB32);
    glass.fill(Qt::transparent);
    add(u"IMG_0005.HEIC"_s, Sample::encodeHeic(glass));
    add(u"IMG_0006.HEIC"_s, "no picture");
    Sample::addCalls(writer, {});
    QVERIFY2(writer.finish(), qPrintable(writer.error()));
}

void tst_HeicCopies::writesNoneUnasked()
{
    QCOMPARE(exportPhotos({}).exitCode, 0);
    QCOMPARE(QDir(photo({})).entryList(QDir::Files).size(), 6);
}

void tst_HeicCopies::writesOneBesideEachPicture()
{
    const Result result = exportPhotos({ u"--convert-heic"_s, u"--json"_s });
    QCOMPARE(result.exitCode, 3);
    const QJsonObject photos = result.json().value(u"types"_s)[0].toObject();
    QCOMPARE(photos.value(u"exported"_s).toInt(), 5);
    QCOMPARE(photos.value(u"failed"_s).toInt(), 1);
    QVERIFY2(result.err.contains("IMG_0006.HEIC: The HEIC file was copied, but"),
             result.err.constData());
    QVERIFY(result.err.contains("JPEG copies of HEIC pictures: 4"));

    const QString made = photo(u"IMG_0001.HEIC.jpg"_s);
    const QImage picture(made);
    QCOMPARE(picture.size(), QSize(320, 200));
    QVERIFY(picture.pixelColor(40, 40).red() > 200);
    QVERIFY(picture.pixelColor(280, 40).blue() > 200);
    QVERIFY(picture.pixelColor(40, 160).blue() > 200);
    QCOMPARE(QFileInfo(made).lastModified(), kTaken);
    const QJsonObject noted = remarks(made);
    QCOMPARE(noted.value(u"Orientation"_s).toInt(), 1);
    QCOMPARE(noted.value(u"DateTimeOriginal"_s).toString(), u"2021:08:07 06:05:04"_s);
    QCOMPARE(noted.value(u"Model"_s).toString(), u"Sample Phone"_s);
    QCOMPARE(noted.value(u"HostComputer"_s).toString(), u"Sample Host"_s);
    QCOMPARE(noted.value(u"GPSLatitude"_s).toDouble(), 54.3);
    QCOMPARE(noted.value(u"GPSLongitude"_s).toDouble(), 10.1);

    QVERIFY(!QImage(photo(u"IMG_0002.heic.jpg"_s)).isNull());
    QVERIFY(!QFileInfo::exists(photo(u"IMG_0003.JPG.jpg"_s)));
    QCOMPARE(remarks(photo(u"IMG_0004.HEIC.jpg"_s)).value(u"GPSLatitude"_s).toDouble(), 54.3);
    QVERIFY(QImage(photo(u"IMG_0005.HEIC.jpg"_s)).pixelColor(32, 32).lightness() > 250);
    QCOMPARE(Files::read(photo(u"IMG_0006.HEIC"_s)), "no picture");
    QVERIFY(!QFileInfo::exists(photo(u"IMG_0006.HEIC.jpg"_s)));
    QCOMPARE(QDir(photo({})).entryList(QDir::Files).size(), 10);
}

// A picture of which no copy can be made is one failure, and none of what comes behind it.
void tst_HeicCopies::countsThePagesBehindABrokenPicture()
{
    const Result result = run({ u"--only=photos,calls"_s,
                                u"--convert-heic"_s,
                                u"--json"_s,
                                u"--quiet"_s,
                                m_backup,
                                m_output });
    QCOMPARE(result.exitCode, 3);
    const QJsonObject calls = result.json().value(u"types"_s)[1].toObject();
    QVERIFY(calls.value(u"items"_s).toInt() > 0);
    QCOMPARE(calls.value(u"exported"_s).toInt(), calls.value(u"items"_s).toInt());
    QVERIFY2(!result.err.contains("JPEG copies"), result.err.constData());
}

void tst_HeicCopies::keepsSmallBlocksAsTheyAre_data()
{
    QTest::addColumn<Notes>("notes");
    QTest::addColumn<int>("skipped");

    QTest::newRow("usual") << Notes {} << 6;
    QTest::newRow("big-endian") << Notes { .isBigEndian = true } << 6;
    QTest::newRow("long orientation") << Notes { .orientationType = 4 } << 6;
    QTest::newRow("long orientation, big-endian")
        << Notes { .isBigEndian = true, .orientationType = 4 } << 6;
    QTest::newRow("short size") << Notes { .sizeType = 3 } << 6;
    QTest::newRow("block that begins with its name") << Notes {} << 0;
    QTest::newRow("as large as can be") << Notes { .makerNote = largestMakerNote() } << 6;
}

// All that changes is what tells how the picture lies.
void tst_HeicCopies::keepsSmallBlocksAsTheyAre()
{
    QFETCH(Notes, notes);
    QFETCH(int, skipped);
    const QByteArray heic = withSkipped(turned(notes.block()), static_cast<quint32>(skipped));
    const Result result = exportOne(u"IMG_0001.HEIC"_s, heic);
    QCOMPARE(result.exitCode, 0);
    notes.orientation = 1;
    notes.size = { 320, 200 };
    const QByteArray expected = notes.block();
    QByteArray head("\xff\xd8\xff\xe1\0\0", 6);
    qToBigEndian(static_cast<quint16>(expected.size() + 2), head.data() + 4);
    const QByteArray made = Files::read(photo(u"IMG_0001.HEIC.jpg"_s));
    QCOMPARE(made.first(head.size()), head);
    QVERIFY(made.sliced(head.size()).startsWith(expected));
    QCOMPARE(QImage(photo(u"IMG_0001.HEIC.jpg"_s)).size(), notes.size);
}

void tst_HeicCopies::keepsDateAndPlaceOfLargeBlocks_data()
{
    QTest::addColumn<Notes>("notes");
    QTest::addColumn<bool>("keepsComment");

    QTest::newRow("a little too large") << Notes { .makerNote = largestMakerNote() + 2 } << true;
    QTest::newRow("maker's note") << Notes { .makerNote = 70'000 } << true;
    QTest::newRow("maker's note, big-endian")
        << Notes { .isBigEndian = true, .makerNote = 70'000 } << true;
    QTest::newRow("long orientation")
        << Notes { .orientationType = 4, .makerNote = 70'000 } << true;
    QTest::newRow("megabytes") << Notes { .makerNote = 7'000'000 } << true;
    QTest::newRow("comment") << Notes { .comment = 70'000 } << false;
    QTest::newRow("many notes") << Notes { .otherNotes = 30 } << true;
}

void tst_HeicCopies::keepsDateAndPlaceOfLargeBlocks()
{
    QFETCH(const Notes, notes);
    QFETCH(const bool, keepsComment);
    QCOMPARE(exportOne(u"IMG_0001.HEIC"_s, turned(notes.block())).exitCode, 0);
    const QJsonObject noted = remarks(photo(u"IMG_0001.HEIC.jpg"_s));
    QCOMPARE(noted.value(u"Warning"_s).toString(), QString());
    QCOMPARE(noted.value(u"Model"_s).toString(), u"Sample Phone"_s);
    QCOMPARE(noted.value(u"Orientation"_s).toInt(), 1);
    QCOMPARE(noted.value(u"DateTimeOriginal"_s).toString(), u"2021:08:07 06:05:04"_s);
    QCOMPARE(noted.value(u"ExifImageWidth"_s).toInt(), 320);
    QCOMPARE(noted.value(u"ExifImageHeight"_s).toInt(), 200);
    QCOMPARE(noted.value(u"InteropIndex"_s).toString(), u"R98"_s);
    QCOMPARE(noted.value(u"GPSLatitude"_s).toDouble(), 54.3);
    QCOMPARE(noted.value(u"GPSLongitude"_s).toDouble(), 10.1);
    QCOMPARE(noted.value(u"UserComment"_s).toString().size(), keepsComment ? notes.comment : 0);
    QVERIFY(!Files::read(photo(u"IMG_0001.HEIC.jpg"_s)).contains("Sample Works"));
}

void tst_HeicCopies::endsWithBlocksThatLeadInCircles_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QString>("model");

    const QByteArray link("\x69\x87\4\0\1\0\0\0\x8\0\0\0", 12);
    QByteArray once = Notes { .makerNote = 70'000 }.block();
    const qsizetype at = once.indexOf(link.first(8));
    QVERIFY(at > 0);
    QTest::newRow("once") << once.replace(at, link.size(), link) << u"Sample Phone"_s;
    const QByteArray model("\x10\1\2\0\4\0\0\0One\0", 12);
    constexpr quint16 kTimes = 5000;
    QByteArray often("Exif\0\0II*\0\x8\0\0\0\0\0", 16);
    qToLittleEndian<quint16>(kTimes + 1, often.data() + often.size() - 2);
    often += model + link.repeated(kTimes) + QByteArray(10'000, '\0');
    QTest::newRow("often") << often << u"One"_s;
}

void tst_HeicCopies::endsWithBlocksThatLeadInCircles()
{
    QFETCH(const QByteArray, block);
    QFETCH(const QString, model);
    QCOMPARE(exportOne(u"IMG_0001.HEIC"_s, turned(block)).exitCode, 0);
    QCOMPARE(remarks(photo(u"IMG_0001.HEIC.jpg"_s)).value(u"Model"_s).toString(), model);
}

void tst_HeicCopies::tellsOfBrokenBlocks_data()
{
    QTest::addColumn<QByteArray>("heic");

    const QByteArray usual = turned(Notes {}.block());
    QTest::newRow("begins behind its end") << withSkipped(usual, 0xfffffff0);
    QTest::newRow("begins with something else") << withSkipped(usual, 20);
    const QByteArray start("Exif\0\0II*\0", 10);
    QTest::newRow("directory outside") << turned(start + "\xff\xff\xff\xff");
    QTest::newRow("directory without its entries")
        << turned(start + QByteArray("\x8\0\0\0\x4\0", 6));
    const QByteArray note("\x8\0\0\0\1\0\x7c\x92\7\0\0\0\1\0\x1a\0\0\0\0\0\0\0", 22);
    QTest::newRow("too large, with nothing else")
        << turned(start + note + QByteArray(0x10000 + 4, '\0'));
    QTest::newRow("endless") << turned(Notes { .makerNote = 9'000'000 }.block());
}

void tst_HeicCopies::tellsOfBrokenBlocks()
{
    QFETCH(const QByteArray, heic);
    const Result result = exportOne(u"IMG_0001.HEIC"_s, heic);
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.err.contains("IMG_0001.HEIC: Its JPEG copy has no date or location"),
             result.err.constData());
    QVERIFY(result.err.contains("JPEG copies of HEIC pictures: 1"));
    const QJsonObject photos = result.json().value(u"types"_s)[0].toObject();
    QCOMPARE(photos.value(u"exported"_s).toInt(), 0);
    QCOMPARE(photos.value(u"failed"_s).toInt(), 1);
    QCOMPARE(Files::read(photo(u"IMG_0001.HEIC"_s)), heic);
    const QString made = photo(u"IMG_0001.HEIC.jpg"_s);
    QCOMPARE(QImage(made).size(), QSize(320, 200));
    QVERIFY(!Files::read(made).contains("Exif"));
}

void tst_HeicCopies::knowsPicturesByTheirBytes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isHeic");

    const QByteArray heic = Sample::encodeHeic(drawn());
    QTest::newRow("by name") << u"IMG_0001.HIF"_s << heic << true;
    QTest::newRow("sequence by name") << u"IMG_0001.heics"_s << heic << true;
    QTest::newRow("called JPEG") << u"IMG_0001.JPG"_s << heic << true;
    QTest::newRow("called PNG") << u"IMG_0001.png"_s << heic << true;
    QTest::newRow("general brand") << u"IMG_0001.jpeg"_s << withBrand(heic, "mif1") << true;
    QTest::newRow("AVIF") << u"IMG_0001.JPG"_s << withBrand(heic, "avif") << false;
    QTest::newRow("film called JPEG") << u"IMG_0001.JPG"_s << withBrand(heic, "qt  ") << false;
    QTest::newRow("JPEG") << u"IMG_0001.JPG"_s << encoded(drawn(), "JPG") << false;
    QTest::newRow("short") << u"IMG_0001.JPG"_s << heic.first(10) << false;
    QTest::newRow("shorter") << u"IMG_0001.JPG"_s << heic.first(3) << false;
}

void tst_HeicCopies::knowsPicturesByTheirBytes()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    QFETCH(const bool, isHeic);
    const Result result = exportOne(name, content);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(Files::read(photo(name)), content);
    QCOMPARE(QFileInfo::exists(photo(name + u".jpg"_s)), isHeic);
    if (isHeic)
        QCOMPARE(QImage(photo(name + u".jpg"_s)).size(), QSize(320, 200));
}

void tst_HeicCopies::refusesWhatItCannotRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("reason");

    const QByteArray jpeg = encoded(drawn(), "JPG");
    QTest::newRow("JPEG of too many pixels")
        << withSize(jpeg, 16'000, 16'000) << QByteArray("It is too large (16000 × 16000 pixels).");
    const QByteArray pass = QByteArray::fromHex("ffda00080101013f0000");
    QByteArray passes = withSize(jpeg, 4'000, 4'000).replace("\xff\xc0", "\xff\xc2");
    passes.insert(passes.indexOf(pass.first(2)), pass.repeated(100));
    QTest::newRow("JPEG of too many passes")
        << passes << QByteArray("It would have to be read too many times (101).");
    QTest::newRow("a format that no phone has")
        << encoded(drawn(), "PPM") << QByteArray("Its format is not supported.");
    QByteArray png = encoded(drawn(), "PNG");
    png[20] = char(~png.at(20));
    QTest::newRow("PNG with a wrong sum") << png << QByteArray("It is damaged (IHDR: CRC error).");
}

void tst_HeicCopies::refusesWhatItCannotRead()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QByteArray, reason);
    const Result result = exportOne(u"IMG_0001.HEIC"_s, content);
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.err.contains(reason), result.err.constData());
    QVERIFY2(!result.err.contains("libpng"), result.err.constData()); // only we speak
    QVERIFY(!QFileInfo::exists(photo(u"IMG_0001.HEIC.jpg"_s)));
}

QTEST_GUILESS_MAIN(tst_HeicCopies)
#include "tst_HeicCopies.moc"
