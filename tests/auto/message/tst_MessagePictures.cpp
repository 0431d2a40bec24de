// Pictures of messages, through the page that shows them.
#include "message/CSMS2HtmlTranslate.h"
#include "support/RecordingReport.h"
#include "support/RecordingSink.h"
#include "support/SMSFromJson.h"

#include <QElapsedTimer>
#include <QImageReader>
#include <QtEndian>
#include <QtTest>

#include <zlib.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, 95);
    return bytes;
}

// Red above blue.
QImage redAboveBlue(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (int y = 0; y < height / 2; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(255, 0, 0));
    }
    return image;
}

// A JPEG that tells in its Exif block how the camera was held.
QByteArray withOrientation(const QByteArray &jpeg, char orientation)
{
    QByteArray exif("Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 25);
    exif += orientation;
    exif += QByteArray("\0\0\0\0\0\0", 6);
    QByteArray block("\xff\xe1", 2);
    block += char(0);
    block += static_cast<char>(exif.size() + 2);
    return jpeg.left(2) + block + exif + jpeg.mid(2);
}

QByteArray chunk(const QByteArray &type, const QByteArray &content)
{
    const QByteArray checked = type + content;
    QByteArray bytes(4, '\0');
    qToBigEndian(static_cast<quint32>(content.size()), bytes.data());
    QByteArray sum(4, '\0');
    qToBigEndian(static_cast<quint32>(crc32(0,
                                            reinterpret_cast<const Bytef *>(checked.constData()),
                                            static_cast<uInt>(checked.size()))),
                 sum.data());
    return bytes + checked + sum;
}

// The header of a PNG of so many pixels, with a few bytes of data.
QByteArray pngHeader(quint32 width, quint32 height)
{
    QByteArray header(13, '\0');
    qToBigEndian(width, header.data());
    qToBigEndian(height, header.data() + 4);
    header[8] = 8;
    header[9] = 2;
    return QByteArray("\x89PNG\r\n\x1a\n") + chunk("IHDR", header)
        + chunk("IDAT", qCompress(QByteArray(1000, 'x')).mid(4)) + chunk("IEND", {});
}

// A small JPEG whose frame header promises so many pixels.
QByteArray jpegHeader(quint16 width, quint16 height)
{
    QByteArray jpeg = encoded(redAboveBlue(16, 16), "JPG");
    const auto frame = jpeg.indexOf("\xff\xc0");
    qToBigEndian(height, jpeg.data() + frame + 5);
    qToBigEndian(width, jpeg.data() + frame + 7);
    return jpeg;
}

} // namespace

class tst_MessagePictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_report = {}; }
    void fitsThePage_data();
    void fitsThePage();
    void turnsPicturesUpright_data();
    void turnsPicturesUpright();
    void showsAPlaceholder_data();
    void showsAPlaceholder();
    void namesTheConversationInTheReport_data();
    void namesTheConversationInTheReport();
    void readsEachPictureOnce();

private:
    // Exports one picture; the images of the page and its text are in m_sink.
    void exportPicture(const QByteArray &bytes, const QString &type = u"image/any"_s)
    {
        FakeSMSData data;
        data.addConversation(u"Bob"_s).addChat({}).addPiece(type, bytes, u"IMG.X"_s);
        m_sink = std::make_unique<RecordingSink>();
        m_sink->setReport(&m_report);
        QVERIFY(CSMS2HtmlTranslate(&data).translate(m_sink.get(), {}, nullptr));
    }

    std::unique_ptr<RecordingSink> m_sink;
    RecordingReport m_report;
};

void tst_MessagePictures::fitsThePage_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("shown");

    const QByteArray png("PNG");
    QTest::newRow("small") << png << QSize(4, 3) << QSize(4, 3);
    QTest::newRow("fits") << png << QSize(250, 250) << QSize(250, 250);
    QTest::newRow("too wide") << png << QSize(251, 10) << QSize(250, 9);
    QTest::newRow("too high") << png << QSize(100, 1000) << QSize(25, 250);
    QTest::newRow("both") << png << QSize(1000, 500) << QSize(250, 125);
    QTest::newRow("a thread") << png << QSize(2000, 2) << QSize(250, 1);
    QTest::newRow("JPEG at reduced size")
        << QByteArray("JPG") << QSize(4000, 3000) << QSize(250, 187);
    QTest::newRow("JPEG, hardly too large")
        << QByteArray("JPG") << QSize(260, 200) << QSize(250, 192);
    QTest::newRow("BMP") << QByteArray("BMP") << QSize(500, 300) << QSize(250, 150);
    QTest::newRow("PPM") << QByteArray("PPM") << QSize(300, 600) << QSize(125, 250);
}

void tst_MessagePictures::fitsThePage()
{
    QFETCH(QByteArray, format);
    QFETCH(QSize, size);
    QFETCH(QSize, shown);

    exportPicture(encoded(redAboveBlue(size.width(), size.height()), format.constData()));
    QCOMPARE(m_sink->images.keys(), QStringList { u"0.png"_s });
    const QByteArray bytes = m_sink->images.value(u"0.png"_s);
    QVERIFY(bytes.startsWith("\x89PNG"));
    const QImage image = QImage::fromData(bytes);
    QCOMPARE(image.size(), shown);
    if (shown.height() > 4) {
        QVERIFY(image.pixelColor(shown.width() / 2, 1).red() > 200);
        QVERIFY(image.pixelColor(shown.width() / 2, shown.height() - 2).blue() > 200);
    }
    QVERIFY(m_report.failures.isEmpty());
}

void tst_MessagePictures::turnsPicturesUpright_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("shown");
    QTest::addColumn<QPoint>("red"); // in quarters of the picture

    QTest::newRow("as it is") << 1 << QSize(250, 125) << QPoint(2, 1);
    QTest::newRow("mirrored") << 2 << QSize(250, 125) << QPoint(2, 1);
    QTest::newRow("upside down") << 3 << QSize(250, 125) << QPoint(2, 3);
    QTest::newRow("flipped") << 4 << QSize(250, 125) << QPoint(2, 3);
    QTest::newRow("transposed") << 5 << QSize(125, 250) << QPoint(1, 2);
    QTest::newRow("to the right") << 6 << QSize(125, 250) << QPoint(3, 2);
    QTest::newRow("transversed") << 7 << QSize(125, 250) << QPoint(3, 2);
    QTest::newRow("to the left") << 8 << QSize(125, 250) << QPoint(1, 2);
}

void tst_MessagePictures::turnsPicturesUpright()
{
    QFETCH(int, orientation);
    QFETCH(QSize, shown);
    QFETCH(QPoint, red);

    exportPicture(
        withOrientation(encoded(redAboveBlue(800, 400), "JPG"), static_cast<char>(orientation)));
    const QImage image = QImage::fromData(m_sink->images.value(u"0.png"_s));
    QCOMPARE(image.size(), shown);
    const auto at = [&](QPoint quarters) {
        return image.pixelColor(quarters.x() * shown.width() / 4,
                                quarters.y() * shown.height() / 4);
    };
    QVERIFY(at(red).red() > 200 && at(red).blue() < 50);
    const QPoint opposite = QPoint(4, 4) - red;
    QVERIFY(at(opposite).blue() > 200 && at(opposite).red() < 50);
}

void tst_MessagePictures::showsAPlaceholder_data()
{
    using Cause = CIExportReport::Cause;
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Cause>("cause");

    QTest::newRow("nothing") << QByteArray() << Cause::Source;
    QTest::newRow("one byte") << QByteArray("x") << Cause::Content;
    QTest::newRow("a text") << QByteArray("this is no picture at all") << Cause::Content;
    QTest::newRow("the first half of a PNG")
        << encoded(redAboveBlue(300, 300), "PNG").left(60) << Cause::Content;
    QTest::newRow("PNG of 60,000 by 60,000") << pngHeader(60000, 60000) << Cause::Content;
    QTest::newRow("PNG of 2^31 - 1 squared") << pngHeader(0x7fffffff, 0x7fffffff) << Cause::Content;
    QTest::newRow("JPEG of 60,000 by 60,000") << jpegHeader(60000, 60000) << Cause::Content;
    QTest::newRow("BMP of 60,000 by 60,000, header only") << [] {
        QByteArray bmp = encoded(redAboveBlue(4, 4), "BMP");
        qToLittleEndian(60000, bmp.data() + 18);
        qToLittleEndian(60000, bmp.data() + 22);
        return bmp;
    }() << Cause::Content;
}

void tst_MessagePictures::showsAPlaceholder()
{
    QFETCH(QByteArray, bytes);
    QFETCH(CIExportReport::Cause, cause);

    constexpr int kLimitMb = 100;
    QImageReader::setAllocationLimit(kLimitMb);
    QElapsedTimer timer;
    timer.start();
    exportPicture(bytes);
    QVERIFY2(timer.elapsed() < 2000, "The picture was decoded.");
    QCOMPARE(QImageReader::allocationLimit(), kLimitMb); // the application's setting
    QVERIFY(m_sink->images.isEmpty());
    QVERIFY(m_sink->text().contains(u"<img src=\"image/sms_image.png\" />"_s));
    QCOMPARE(m_report.failures.size(), 1);
    QCOMPARE(m_report.failures.first().item, u"Bob/IMG.X"_s);
    QCOMPARE(m_report.failures.first().cause, cause);
    QVERIFY(!m_report.failures.first().reason.contains(u'%'));
    QCOMPARE(m_report.exported, QStringList { u": Bob"_s });
}

void tst_MessagePictures::namesTheConversationInTheReport_data()
{
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("expected");

    const QString at = u"a/b.jpg"_s;
    QTest::newRow("name") << QStringList { u"Bob"_s, u"+1"_s, u"e"_s } << at << u"Bob/a/b.jpg"_s;
    QTest::newRow("phone") << QStringList { {}, u"+1"_s, u"e"_s } << at << u"+1/a/b.jpg"_s;
    QTest::newRow("e-mail") << QStringList { {}, {}, u"e"_s } << at << u"e/a/b.jpg"_s;
    QTest::newRow("no location") << QStringList { u"Bob"_s, {}, {} } << QString() << u"Bob"_s;
}

void tst_MessagePictures::namesTheConversationInTheReport()
{
    QFETCH(QStringList, values);
    QFETCH(QString, location);
    QFETCH(QString, expected);

    FakeSMSData data;
    data.addConversation(values[0], values[1], values[2])
        .addChat({})
        .addPiece(u"image/png"_s, "broken", location);
    RecordingSink sink;
    sink.setReport(&m_report);
    QVERIFY(CSMS2HtmlTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(m_report.failures.size(), 1);
    QCOMPARE(m_report.failures.first().item, expected);
}

void tst_MessagePictures::readsEachPictureOnce()
{
    FakeSMSData data;
    FakeSMSChat &chat = data.addConversation(u"Bob"_s).addChat({});
    const FakeSMSPiece &good = chat.addPiece(u"image/png"_s, SMSFromJson::pngOf(9, 9), {});
    const FakeSMSPiece &broken = chat.addPiece(u"image/png"_s, "broken", {});
    const FakeSMSPiece &video = chat.addPiece(u"video/mp4"_s, "film", {});
    RecordingSink sink;
    QVERIFY(CSMS2HtmlTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(good.timesAsked, 1);
    QCOMPARE(broken.timesAsked, 1);
    QCOMPARE(video.timesAsked, 0);
}

QTEST_GUILESS_MAIN(tst_MessagePictures)
#include "tst_MessagePictures.moc"
