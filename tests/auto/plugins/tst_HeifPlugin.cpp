#include "sample/HeicEncoder.h"

#include <QBuffer>
#include <QDir>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

// Enough structure for every block of the encoder to differ.
QImage picture(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(
                x, y, qRgb(x * 255 / width, y * 255 / height, (x / 32 + y / 32) % 2 * 80));
    }
    return image;
}

QImage read(const QByteArray &bytes, QSize scaled = {}, QString *why = nullptr)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    if (scaled.isValid())
        reader.setScaledSize(scaled);
    const QImage image = reader.read();
    if (why)
        *why = reader.errorString();
    return image;
}

// How far the colours of two pictures of one size are apart, 0 to 255, on the average.
double distance(const QImage &a, const QImage &b)
{
    const QImage first = a.convertToFormat(QImage::Format_RGB32);
    const QImage second = b.convertToFormat(QImage::Format_RGB32);
    qint64 sum = 0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            const QRgb one = first.pixel(x, y);
            const QRgb other = second.pixel(x, y);
            sum += std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other))
                + std::abs(qBlue(one) - qBlue(other));
        }
    }
    return static_cast<double>(sum) / (3.0 * first.width() * first.height());
}

// What Debian's own tool makes of \a file.
QImage decodedElsewhere(const QString &file, const QTemporaryDir &folder)
{
    const QString png = folder.filePath(u"decoded.png"_s);
    QProcess tool;
    tool.start(u"heif-convert"_s, { file, png });
    return tool.waitForFinished() && tool.exitCode() == 0 ? QImage(png) : QImage();
}

} // namespace

class tst_HeifPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void decodesLikeOthers_data();
    void decodesLikeOthers();
    void decodesAtReducedSize_data();
    void decodesAtReducedSize();
    void survivesDamage();
    void refusesWhatIsTooLarge();
    void leavesOtherFormatsAlone();
};

void tst_HeifPlugin::initTestCase()
{
    QVERIFY(QImageReader::supportedImageFormats().contains("heic"));
    QVERIFY(QImageReader::supportedImageFormats().contains("avif"));
}

void tst_HeifPlugin::decodesLikeOthers_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("bytes");
    for (int orientation = 1; orientation <= 8; ++orientation)
        QTest::addRow("orientation %d", orientation)
            << QString() << Sample::encodeHeic(picture(500, 300), { orientation });
    const QDir real(QStringLiteral(TEST_SOURCE_DIR) + u"/../../shared/real/media"_s);
    for (const QString &name : { u"fixture-heic.heic"_s, u"fixture-mif1.heic"_s }) {
        if (real.exists(name))
            QTest::newRow(qPrintable(name)) << real.filePath(name) << QByteArray();
    }
}

void tst_HeifPlugin::decodesLikeOthers()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, bytes);

    const QTemporaryDir folder;
    if (path.isEmpty()) {
        QVERIFY(!bytes.isEmpty());
        path = folder.filePath(u"a.heic"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    const QImage expected = decodedElsewhere(path, folder);
    QVERIFY2(!expected.isNull(), "heif-convert did not run");
    QImageReader reader(path);
    QCOMPARE(reader.size(), expected.size());
    const QImage image = reader.read();
    QCOMPARE(image.size(), expected.size());
    QVERIFY(distance(image, expected) < 1.0);
    QVERIFY(!reader.canRead()); // there is one picture

    const QSize small = expected.size().scaled(100, 100, Qt::KeepAspectRatio);
    reader.setFileName(path);
    reader.setScaledSize(small);
    const QImage thumbnail = reader.read();
    QCOMPARE(thumbnail.size(), small);
    const QImage expectedSmall =
        expected.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    // A smaller version may come from another encoder than the picture.
    const double apart = distance(thumbnail, expectedSmall);
    QVERIFY2(apart < 8.0, qPrintable(QString::number(apart)));
}

void tst_HeifPlugin::decodesAtReducedSize_data()
{
    QTest::addColumn<int>("thumbnailPx");
    QTest::addColumn<QSize>("wanted");
    QTest::newRow("no smaller version") << 0 << QSize(250, 150);
    QTest::newRow("one that is large enough") << 320 << QSize(250, 150);
    QTest::newRow("one of that very size") << 250 << QSize(250, 150);
    QTest::newRow("one that is too small") << 200 << QSize(250, 150);
    QTest::newRow("enlarged") << 320 << QSize(1500, 900);
    QTest::newRow("much smaller") << 0 << QSize(50, 30);
    QTest::newRow("much smaller, in no whole proportion") << 0 << QSize(61, 37);
    QTest::newRow("one pixel high") << 0 << QSize(100, 1);
}

void tst_HeifPlugin::decodesAtReducedSize()
{
    QFETCH(int, thumbnailPx);
    QFETCH(QSize, wanted);

    const QImage original = picture(1000, 600);
    Sample::HeicTraits traits;
    traits.thumbnailPx = thumbnailPx;
    const QImage image = read(Sample::encodeHeic(original, traits), wanted);
    QCOMPARE(image.size(), wanted);
    QVERIFY(
        distance(image, original.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation))
        < 6.0);
}

void tst_HeifPlugin::survivesDamage()
{
    const QByteArray whole = Sample::encodeHeic(picture(200, 120));
    QVERIFY(!read(whole).isNull());
    // Cut anywhere, there is no picture or one of the right size; cut early, there is none.
    for (qsizetype size = 0; size < whole.size(); size += 1 + size / 15) {
        const QImage image = read(whole.first(size));
        QVERIFY(image.isNull() || (size > 200 && image.size() == QSize(200, 120)));
    }
    // The structure comes first: what is changed there must not lead astray.
    for (qsizetype at = 0; at < std::min<qsizetype>(whole.size(), 700); at += 3) {
        QByteArray changed = whole;
        changed[at] = static_cast<char>(changed[at] ^ '\xFF');
        const QImage image = read(changed);
        QVERIFY(image.isNull() || image.width() <= 16384);
    }
}

void tst_HeifPlugin::refusesWhatIsTooLarge()
{
    // The size that the file states, in the property "ispe", set to what nobody can hold.
    QByteArray large = Sample::encodeHeic(picture(64, 64), { 1, {}, 0 });
    const qsizetype size = large.indexOf("ispe") + 8;
    QVERIFY(size > 8);
    large.replace(size, 8, QByteArray::fromHex("0000ea600000ea60"));
    QString why;
    QVERIFY(read(large, {}, &why).isNull());

    const QByteArray usual = Sample::encodeHeic(picture(1000, 600), { 1, {}, 0 });
    const int before = QImageReader::allocationLimit();
    QImageReader::setAllocationLimit(1);
    QVERIFY(read(usual).isNull());
    QImageReader::setAllocationLimit(before);
    QVERIFY(!read(usual).isNull());
}

void tst_HeifPlugin::leavesOtherFormatsAlone()
{
    QVERIFY(read("\0\0\0\x18"
                 "ftypqt  \0\0\0\0"_ba)
                .isNull());
    QVERIFY(read(QByteArray("\0\0\0\x18"
                            "ftypheic",
                            12))
                .isNull());
    QBuffer png;
    png.open(QIODevice::ReadWrite);
    picture(8, 8).save(&png, "PNG");
    QCOMPARE(read(png.data()).size(), QSize(8, 8));
}

QTEST_GUILESS_MAIN(tst_HeifPlugin)
#include "tst_HeifPlugin.moc"
