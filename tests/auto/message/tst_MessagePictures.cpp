// Pictures of messages, through the page that shows them.
#include "message/CSMS2HtmlTranslate.h"
#include "sample/HeicEncoder.h"
#include "support/RecordingReport.h"
#include "support/RecordingSink.h"
#include "support/SMSFromJson.h"

#include <QDataStream>
#include <QImageReader>
#include <QImageWriter>
#include <QProcess>
#include <QtEndian>
#include <QtTest>

#include <zlib.h>

#include <thread>
#include <unistd.h>
#include <vector>

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

// Blue with a red quarter at the top left.
QImage redCorner(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (int y = 0; y < height / 2; ++y) {
        for (int x = 0; x < width / 2; ++x)
            image.setPixel(x, y, qRgb(255, 0, 0));
    }
    return image;
}

// The block in which cameras note how they were held.
QByteArray exifBlock(int orientation)
{
    QByteArray exif("Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 25);
    exif += static_cast<char>(orientation);
    return exif + QByteArray("\0\0\0\0\0\0", 6);
}

QByteArray jpegHeld(const QImage &image, int orientation)
{
    const QByteArray jpeg = encoded(image, "JPG");
    const QByteArray exif = exifBlock(orientation);
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

QByteArray pngHeld(const QImage &image, int orientation)
{
    constexpr qsizetype kBehindHeader = 8 + 25;
    return encoded(image, "PNG")
        .insert(kBehindHeader, chunk("eXIf", exifBlock(orientation).sliced(6)));
}

QByteArray riffChunk(const QByteArray &type, const QByteArray &content)
{
    QByteArray size(4, '\0');
    qToLittleEndian(static_cast<quint32>(content.size()), size.data());
    return type + size + content + QByteArray(content.size() % 2, '\0');
}

QByteArray webpHeld(const QImage &image, int orientation)
{
    constexpr char kHasExif = 8;
    QByteArray size(4, '\0');
    qToLittleEndian(static_cast<quint32>(image.width() - 1), size.data());
    QByteArray extended = QByteArray(1, kHasExif) + QByteArray(3, '\0') + size.first(3);
    qToLittleEndian(static_cast<quint32>(image.height() - 1), size.data());
    extended += size.first(3);
    return riffChunk("RIFF",
                     "WEBP" + riffChunk("VP8X", extended) + encoded(image, "WEBP").sliced(12)
                         + riffChunk("EXIF", exifBlock(orientation)));
}

QByteArray tiffHeld(const QImage &image, int orientation)
{
    using Turn = QImageIOHandler;
    static constexpr Turn::Transformation kTurns[] { Turn::TransformationNone,
                                                     Turn::TransformationMirror,
                                                     Turn::TransformationRotate180,
                                                     Turn::TransformationFlip,
                                                     Turn::TransformationFlipAndRotate90,
                                                     Turn::TransformationRotate90,
                                                     Turn::TransformationMirrorAndRotate90,
                                                     Turn::TransformationRotate270 };
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "TIFF");
    writer.setTransformation(kTurns[orientation - 1]);
    writer.write(image);
    return buffer.data();
}

QByteArray heicHeld(const QImage &image, int orientation)
{
    return Sample::encodeHeic(image, { orientation, exifBlock(orientation) });
}

// The header of a PNG of so many pixels, with a few bytes of data.
QByteArray pngHeader(quint32 width,
                     quint32 height,
                     const QByteArray &data = chunk("IDAT",
                                                    qCompress(QByteArray(1000, 'x')).mid(4)))
{
    QByteArray header(13, '\0');
    qToBigEndian(width, header.data());
    qToBigEndian(height, header.data() + 4);
    header[8] = 8;
    header[9] = 2;
    return QByteArray("\x89PNG\r\n\x1a\n") + chunk("IHDR", header) + data + chunk("IEND", {});
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

bool exportPicture(const QByteArray &bytes, RecordingSink &sink)
{
    FakeSMSData data;
    data.addConversation(u"Bob"_s).addChat({}).addPiece(u"image/any"_s, bytes, u"IMG.X"_s);
    return CSMS2HtmlTranslate(&data).translate(&sink, {}, nullptr);
}

// \a file in each way in which one bit between the places \a from and \a to can be another.
QByteArrayList changed(const QByteArray &file, qsizetype from, qsizetype to)
{
    QByteArrayList files;
    for (qsizetype at = from; at < to; ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            files += file;
            files.last()[at] = char(file.at(at) ^ (1 << bit));
        }
    }
    return files;
}

constexpr char kAsApplication[] = "--as-application";
constexpr char kOwnWords[] = "qt.gui.imageio: the application's own words";

// What an application does that has no handler of its own: exports the pictures that come in, and
// says something itself before and after them.
int runAsApplication()
{
    QFile input;
    if (!input.open(STDIN_FILENO, QIODevice::ReadOnly))
        return 1;
    const QLoggingCategory category("qt.gui.imageio");
    qCWarning(category, "%s", "the application's own words");
    QByteArrayList pictures;
    QDataStream stream(input.readAll());
    stream >> pictures;
    bool isDone = !pictures.isEmpty();
    for (const QByteArray &picture : std::as_const(pictures)) {
        RecordingSink sink;
        isDone = exportPicture(picture, sink) && isDone;
    }
    qCWarning(category, "%s", "the application's own words");
    return isDone ? 0 : 1;
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
    void showsWhatAPictureIs_data();
    void showsWhatAPictureIs();
    void showsAPlaceholder_data();
    void showsAPlaceholder();
    void keepsDecodersQuiet_data();
    void keepsDecodersQuiet();
    void refusesNoPngThatCanBeRead();
    void keepsTheLimitAcrossThreads();
    void namesTheConversationInTheReport_data();
    void namesTheConversationInTheReport();
    void tellsWhatIsToBlame_data();
    void tellsWhatIsToBlame();
    void readsEachPictureOnce();

private:
    // Exports one picture; the images of the page and its text are in m_sink.
    void exportPicture(const QByteArray &bytes)
    {
        m_sink = std::make_unique<RecordingSink>();
        m_sink->setReport(&m_report);
        QVERIFY(::exportPicture(bytes, *m_sink));
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
    QTest::newRow("WebP") << QByteArray("WEBP") << QSize(300, 600) << QSize(125, 250);
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
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("shown");
    QTest::addColumn<QPoint>("red"); // corner of the stored picture's first pixel, in quarters

    static constexpr struct
    {
        const char *name;
        QSize shown;
        QPoint red;
    } kHeld[] {
        { "as it is", { 250, 125 }, { 1, 1 } },    { "mirrored", { 250, 125 }, { 3, 1 } },
        { "upside down", { 250, 125 }, { 3, 3 } }, { "flipped", { 250, 125 }, { 1, 3 } },
        { "transposed", { 125, 250 }, { 1, 1 } },  { "to the right", { 125, 250 }, { 3, 1 } },
        { "transversed", { 125, 250 }, { 3, 3 } }, { "to the left", { 125, 250 }, { 1, 3 } },
    };
    // As if it had been turned before.
    constexpr int kToTheRight = 6;
    QTest::newRow("JPEG, hardly wider than high")
        << jpegHeld(redCorner(1001, 1000), kToTheRight) << QSize(249, 250) << QPoint(3, 1);
    const QImage image = redCorner(800, 400);
    int orientation = 0;
    for (const auto &held : kHeld) {
        ++orientation;
        const auto add = [&](const char *format, const QByteArray &bytes) {
            QTest::addRow("%s, %s", format, held.name) << bytes << held.shown << held.red;
        };
        add("JPEG", jpegHeld(image, orientation));
        add("PNG", pngHeld(image, orientation));
        add("WebP", webpHeld(image, orientation));
        add("TIFF", tiffHeld(image, orientation));
        add("HEIC", heicHeld(image, orientation));
    }
}

void tst_MessagePictures::turnsPicturesUpright()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, shown);
    QFETCH(QPoint, red);

    exportPicture(bytes);
    const QImage image = QImage::fromData(m_sink->images.value(u"0.png"_s));
    QCOMPARE(image.size(), shown);
    const auto isRed = [&](QPoint quarters) {
        const QColor colour =
            image.pixelColor(quarters.x() * shown.width() / 4, quarters.y() * shown.height() / 4);
        return colour.red() > 200 && colour.blue() < 60;
    };
    for (const QPoint corner : { QPoint(1, 1), QPoint(3, 1), QPoint(1, 3), QPoint(3, 3) })
        QCOMPARE(isRed(corner), corner == red);
}

void tst_MessagePictures::showsWhatAPictureIs_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QColor>("left"); // in the middle of the left half
    QTest::addColumn<QColor>("right");

    QImage glass(300, 300, QImage::Format_RGBA8888);
    glass.fill(Qt::transparent);
    for (int y = 0; y < 300; ++y) {
        for (int x = 0; x < 150; ++x)
            glass.setPixelColor(x, y, Qt::red);
    }
    const QColor clear(0, 0, 0, 0);
    QTest::newRow("transparent PNG") << encoded(glass, "PNG") << QColor(Qt::red) << clear;
    QTest::newRow("transparent WebP") << encoded(glass, "WEBP") << QColor(Qt::red) << clear;
    QTest::newRow("transparent HEIC") << Sample::encodeHeic(glass) << QColor(Qt::red) << clear;
    QTest::newRow("PNG of 16 bits a colour")
        << encoded(glass.convertToFormat(QImage::Format_RGBA64), "PNG") << QColor(Qt::red) << clear;
    // Inks as print shops want them, red and blue.
    QTest::newRow("JPEG in CMYK") << QByteArray::fromBase64(
        "/9j/7gAOQWRvYmUAZAAAAAAA/9sAQwANCQoLCggNCwoLDg4NDxMgFRMSEhMnHB4XIC4pMTAuKS0s"
        "MzpKPjM2RjcsLUBXQUZMTlJTUjI+WmFaUGBKUVJP/8AAFAgAQABABEMRAE0RAFkRAEsRAP/EABYA"
        "AQEBAAAAAAAAAAAAAAAAAAAIB//EABQQAQAAAAAAAAAAAAAAAAAAAAD/2gAOBEMATQBZAEsAAD8A"
        "05mDMGnAAAAJiFOgAAACnRMQAAAAmIU6AAAAKdExAAAACYhToAAAAp0TEAAAAJiFOgAAACnRMQAA"
        "AAmIU6AAAAKdExAAAACYhToAAAAp0TEAAAAJiFOgAAACnRMQAAAAmIU6AAAAP//Z")
                                  << QColor(Qt::red) << QColor(Qt::blue);
    // Two frames, blue and red.
    QTest::newRow("animated GIF") << QByteArray::fromBase64(
        "R0lGODlhAgACAPEAAAAA//8AAAAAAAAAACH/C05FVFNDQVBFMi4wAwEAAAAh+QQE"
        "CgAAACwAAAAAAgACAAACAwSAAgAh+QQECgAAACwAAAAAAgACAAACA0ySAgA7")
                                  << QColor(Qt::blue) << QColor(Qt::blue);
}

void tst_MessagePictures::showsWhatAPictureIs()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QColor, left);
    QFETCH(QColor, right);

    exportPicture(bytes);
    const QImage image = QImage::fromData(m_sink->images.value(u"0.png"_s));
    QVERIFY(!image.isNull());
    const auto isLike = [&](QPoint point, QColor wanted) {
        const QColor colour = image.pixelColor(point);
        if (wanted.alpha() == 0)
            return colour.alpha() < 8;
        return std::abs(colour.red() - wanted.red()) < 12
            && std::abs(colour.green() - wanted.green()) < 12
            && std::abs(colour.blue() - wanted.blue()) < 12 && colour.alpha() > 247;
    };
    const int y = image.height() / 4;
    QVERIFY(isLike({ image.width() / 4, y }, left));
    QVERIFY(isLike({ image.width() * 3 / 4, y }, right));
}

void tst_MessagePictures::showsAPlaceholder_data()
{
    using Cause = CIExportReport::Cause;
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Cause>("cause");
    QTest::addColumn<bool>("isRefused"); // and so was not decoded

    QTest::newRow("nothing") << QByteArray() << Cause::Source << false;
    QTest::newRow("one byte") << QByteArray("x") << Cause::Content << false;
    QTest::newRow("a text") << QByteArray("this is no picture at all") << Cause::Content << false;
    QTest::newRow("the first half of a PNG")
        << encoded(redAboveBlue(300, 300), "PNG").left(60) << Cause::Content << false;
    QTest::newRow("PNG of 60,000 by 60,000") << pngHeader(60000, 60000) << Cause::Content << true;
    QTest::newRow("PNG of 2^31 - 1 squared")
        << pngHeader(0x7fffffff, 0x7fffffff) << Cause::Content << false;
    QTest::newRow("JPEG of 60,000 by 60,000") << jpegHeader(60000, 60000) << Cause::Content << true;
    QTest::newRow("progressive JPEG of 16,000 by 16,000")
        << jpegHeader(16000, 16000).replace("\xff\xc0", "\xff\xc2") << Cause::Content << true;
    const QByteArray pass = QByteArray::fromHex("ffda00080101013f0000");
    QTest::newRow("JPEG of 16,000 by 16,000, colour by colour") << [&pass] {
        QByteArray jpeg = jpegHeader(16000, 16000);
        return jpeg.insert(jpeg.indexOf(pass.first(2)), pass);
    }() << Cause::Content << true;
    QTest::newRow("JPEG in 300 passes") << [&pass] {
        QByteArray jpeg = jpegHeader(8000, 8000).replace("\xff\xc0", "\xff\xc2");
        return jpeg.insert(jpeg.indexOf(pass.first(2)), pass.repeated(300));
    }() << Cause::Content << true;
    QTest::newRow("JPEG of 8,000 by 8,000 in 20 passes") << [&pass] {
        QByteArray jpeg = jpegHeader(8000, 8000).replace("\xff\xc0", "\xff\xc2");
        return jpeg.insert(jpeg.indexOf(pass.first(2)), pass.repeated(20));
    }() << Cause::Content << true;
    QTest::newRow("a format that no phone has")
        << encoded(redAboveBlue(4, 4), "PPM") << Cause::Content << false;
    QTest::newRow("BMP of 60,000 by 60,000, header only") << [] {
        QByteArray bmp = encoded(redAboveBlue(4, 4), "BMP");
        qToLittleEndian(60000, bmp.data() + 18);
        qToLittleEndian(60000, bmp.data() + 22);
        return bmp;
    }() << Cause::Content << false;
}

void tst_MessagePictures::showsAPlaceholder()
{
    QFETCH(QByteArray, bytes);
    QFETCH(CIExportReport::Cause, cause);
    QFETCH(bool, isRefused);

    constexpr int kLimitMb = 100;
    QImageReader::setAllocationLimit(kLimitMb);
    exportPicture(bytes);
    QCOMPARE(QImageReader::allocationLimit(), kLimitMb); // the application's setting
    QVERIFY(m_sink->images.isEmpty());
    QVERIFY(m_sink->text().contains(u"<img src=\"image/sms_image.png\" />"_s));
    QCOMPARE(m_report.failures.size(), 1);
    QCOMPARE(m_report.failures.first().item, u"Bob/IMG.X"_s);
    QCOMPARE(m_report.failures.first().cause, cause);
    const QString reason = m_report.failures.first().reason;
    QVERIFY(!reason.contains(u'%'));
    QVERIFY2((reason.contains(u"too large"_s) || reason.contains(u"too many times"_s)) == isRefused,
             qPrintable(reason));
    QCOMPARE(m_report.exported, QStringList { u": Bob"_s });
}

void tst_MessagePictures::keepsDecodersQuiet_data()
{
    QTest::addColumn<QByteArrayList>("pictures");
    const auto add = [](const QByteArray &name, const QByteArray &picture) {
        QTest::newRow(name.constData()) << QByteArrayList { picture };
    };

    const QImage image = redCorner(200, 160);
    for (const char *format : { "JPG", "TIFF", "WEBP" })
        add(QByteArray(format) + " without its end", encoded(image, format).chopped(200));
    const QByteArray jpeg = encoded(image, "JPG");
    const auto jpegWith = [&jpeg](const QByteArray &between) {
        return jpeg.first(2) + between + jpeg.sliced(2);
    };
    add("JPEG with data between its marks", jpegWith(QByteArray(40, 'x')));
    add("JPEG with a profile of colours that is none",
        jpegWith(QByteArray("\xff\xe2\0\xca"
                            "ICC_PROFILE\0\1\1",
                            18)
                 + QByteArray(186, 'x')));
    add("JPEG with a remark that has no name", jpegWith(QByteArray("\xff\xfe\0\x06\1: x", 8)));
    QByteArray tiff = encoded(image, "TIFF");
    qToLittleEndian(quint32 { 0x7fffffff }, tiff.data() + 4); // where its directory is
    add("TIFF that leads out of the file", tiff);
    QByteArray bmp = encoded(image.convertToFormat(QImage::Format_Mono), "BMP");
    bmp[46] = 3;
    add("BMP of two colours that counts three", bmp);
    const QByteArray heic = Sample::encodeHeic(redCorner(40, 32));
    const qsizetype parameters = heic.indexOf("hvcC");
    QTest::newRow("HEIC with a bit of its parameters changed")
        << changed(heic, parameters, parameters + 120);

    const QByteArray avif = QByteArray::fromBase64(
        "AAAAHGZ0eXBhdmlmAAAAAGF2aWZtaWYxbWlhZgAAAOptZXRhAAAAAAAAACFoZGxyAAAAAAAAAABwaWN0AAAA"
        "AAAAAAAAAAAAAAAAAA5waXRtAAAAAAABAAAAImlsb2MAAAAAREAAAQABAAAAAAEOAAEAAAAAAAAAIwAAACNp"
        "aW5mAAAAAAABAAAAFWluZmUCAAAAAAEAAGF2MDEAAAAAamlwcnAAAABLaXBjbwAAABNjb2xybmNseAACAAIA"
        "BoAAAAAMYXYxQ4EADAAAAAAUaXNwZQAAAAAAAAAQAAAAEAAAABBwaXhpAAAAAAMICAgAAAAXaXBtYQAAAAAA"
        "AAABAAEEgYIDhAAAACttZGF0EgAKCRgM/9ggQEDQgDIURsAGmmmhQBFiOENwknnPLy7ID/Y=");
    QTest::newRow("AVIF with a bit of its data changed")
        << changed(avif, avif.indexOf("mdat"), avif.size());

    const QByteArray palette =
        encoded(redCorner(40, 32).convertToFormat(QImage::Format_Indexed8), "PNG");
    QTest::newRow("PNG with a bit changed") << changed(palette, 8, palette.size());
    QByteArrayList cut;
    for (qsizetype bytes = 8; bytes < palette.size(); ++bytes)
        cut += palette.first(bytes);
    QTest::newRow("PNG that is cut off") << cut;
    const auto pngWith = [&image](QImage::Format format, const QByteArray &behindHeader) {
        constexpr qsizetype kBehindHeader = 8 + 25;
        return encoded(image.convertToFormat(format), "PNG").insert(kBehindHeader, behindHeader);
    };
    add("PNG with a damaged remark",
        pngWith(QImage::Format_RGB32, chunk("tEXt", "Comment").chopped(1) + '-'));
    add("grey PNG that states the colours of its screen",
        pngWith(QImage::Format_Grayscale8, chunk("gAMA", QByteArray::fromHex("0000b18f"))));
    add("PNG with a chunk that must be known", pngWith(QImage::Format_RGB32, chunk("ABCD", {})));
    QByteArray header = palette.sliced(16, 13);
    header[8] = 7;
    add("PNG of seven bits a colour", QByteArray(palette).replace(8, 25, chunk("IHDR", header)));
    const auto pngOf = [](const QByteArray &data) {
        constexpr quint32 kSide = 24;
        return pngHeader(kSide, kSide, chunk("IDAT", data));
    };
    add("PNG whose pixels are no stream", pngOf("no stream"));
    add("PNG of too few rows", pngOf(qCompress(QByteArray(100, 0)).mid(4)));
    add("PNG of a filter that there is not", pngOf(qCompress(QByteArray(73 * 24, 'x')).mid(4)));
    add("PNG of too many pixels", pngHeader(60000, 60000));
    add("PNG of 2^31 - 1 squared", pngHeader(0x7fffffff, 0x7fffffff));
}

// What is refused for the structure of a file is nothing that could be shown.
void tst_MessagePictures::refusesNoPngThatCanBeRead()
{
    QList<QByteArray> pictures;
    for (const QImage::Format format : { QImage::Format_ARGB32,
                                         QImage::Format_Indexed8,
                                         QImage::Format_Grayscale8,
                                         QImage::Format_RGBA64,
                                         QImage::Format_Mono })
        pictures.append(encoded(redCorner(40, 30).convertToFormat(format), "PNG"));
    constexpr qsizetype kEdge = 80; // where every byte is tried
    for (const QByteArray &picture : std::as_const(pictures)) {
        for (qsizetype at = 8; at < picture.size(); ++at) {
            if (at > kEdge && at < picture.size() - kEdge && at % 61 != 0)
                continue;
            QByteArray flipped = picture;
            flipped[at] = char(flipped[at] ^ 0x10);
            for (const QByteArray &bytes : { picture.first(at), flipped }) {
                RecordingSink sink;
                QVERIFY(::exportPicture(bytes, sink));
                const bool isShown = !sink.images.isEmpty();
                QVERIFY2(isShown || QImage::fromData(bytes, "PNG").isNull(),
                         QByteArray::number(at));
            }
        }
    }
}

// Qt would hand remarks to the test's own handler, so another process makes them.
void tst_MessagePictures::keepsDecodersQuiet()
{
    QFETCH(QByteArrayList, pictures);

    QByteArray input;
    QDataStream stream(&input, QIODevice::WriteOnly);
    stream << pictures;
    QProcess application;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_FORCE_STDERR_LOGGING"_s, u"1"_s);
    application.setProcessEnvironment(environment);
    application.start(QCoreApplication::applicationFilePath(),
                      { QString::fromLatin1(kAsApplication) });
    application.write(input);
    application.closeWriteChannel();
    QVERIFY(application.waitForFinished());
    QCOMPARE(application.exitCode(), 0);
    const QByteArray words = QByteArray(kOwnWords) + '\n';
    QCOMPARE(application.readAllStandardError(), words + words);
}

void tst_MessagePictures::keepsTheLimitAcrossThreads()
{
    constexpr int kLimitMb = 100;
    constexpr int kRounds = 200;
    QImageReader::setAllocationLimit(kLimitMb);
    const QByteArray picture = encoded(redAboveBlue(60, 40), "PNG");
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&picture] {
            for (int round = 0; round < kRounds; ++round) {
                RecordingSink sink;
                ::exportPicture(picture, sink);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(QImageReader::allocationLimit(), kLimitMb);
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

// Once, with what the backup is to blame for rather than with what decoding met.
void tst_MessagePictures::tellsWhatIsToBlame_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("nothing to be had") << QByteArray();
    QTest::newRow("the first of it") << QByteArray("\x89PNG\r\n\x1a\n");
}

void tst_MessagePictures::tellsWhatIsToBlame()
{
    QFETCH(QByteArray, bytes);
    FakeSMSData data;
    data.addConversation(u"Bob"_s).addChat({}).addPiece(u"image/png"_s, bytes, u"a"_s).toBlame =
        u"The disk is damaged."_s;
    RecordingSink sink;
    sink.setReport(&m_report);
    QVERIFY(CSMS2HtmlTranslate(&data).translate(&sink, {}, nullptr));
    QCOMPARE(m_report.failures.size(), 1);
    QCOMPARE(m_report.failures.first().item, u"Bob/a"_s);
    QCOMPARE(m_report.failures.first().cause, CIExportReport::Cause::Source);
    QVERIFY(m_report.failures.first().reason.endsWith(u". The disk is damaged."_s));
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

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (application.arguments().value(1) == QLatin1StringView(kAsApplication))
        return runAsApplication();
    tst_MessagePictures test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_MessagePictures.moc"
