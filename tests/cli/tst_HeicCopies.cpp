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

class tst_HeicCopies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { QDir(m_output).removeRecursively(); }
    void writesNoneUnasked();
    void writesOneBesideEachPicture();
    void countsThePagesBehindABrokenPicture();
    void knowsPicturesByTheirBytes_data();
    void knowsPicturesByTheirBytes();
    void refusesJpegsOfTooManyPixels();

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
    constexpr int kToTheRight = 6;
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
    QVERIFY(result.err.contains("JPEG copies made of HEIC pictures: 4"));

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

void tst_HeicCopies::refusesJpegsOfTooManyPixels()
{
    constexpr quint16 kSide = 16'000;
    const Result result =
        exportOne(u"IMG_0001.HEIC"_s, withSize(encoded(drawn(), "JPG"), kSide, kSide));
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.err.contains("It is too large (16000 × 16000 pixels)."),
             result.err.constData());
    QVERIFY(!QFileInfo::exists(photo(u"IMG_0001.HEIC.jpg"_s)));
}

QTEST_GUILESS_MAIN(tst_HeicCopies)
#include "tst_HeicCopies.moc"
