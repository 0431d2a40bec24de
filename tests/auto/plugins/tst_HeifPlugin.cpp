#include "heif/HeifPicture.h"
#include "heif/HeifStructure.h"
#include "sample/HeicEncoder.h"
#include "support/HeifWriter.h"

#include <QBuffer>
#include <QColorSpace>
#include <QDir>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>
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

// What Debian's own tool makes of a picture.
QByteArray
encodedElsewhere(const QImage &image, const QString &suffix, const QStringList &arguments = {})
{
    const QTemporaryDir folder;
    const QString png = folder.filePath(u"whole.png"_s);
    const QString file = folder.filePath(u"encoded."_s + suffix);
    QProcess tool;
    if (!image.save(png))
        return {};
    tool.start(u"heif-enc"_s, QStringList { png, u"-o"_s, file } + arguments);
    QFile encoded(file);
    return tool.waitForFinished() && encoded.open(QIODevice::ReadOnly) ? encoded.readAll()
                                                                       : QByteArray();
}

// What states colours, with the primaries of phones.
QByteArray colours(int matrix, bool isFullRange)
{
    return Heif::box("colr",
                     "nclx" + Heif::number(12, 2) + Heif::number(13, 2) + Heif::number(matrix, 2)
                         + Heif::number(isFullRange ? 0x80 : 0, 1));
}

// The parts of a file with a single picture.
struct Coded
{
    explicit Coded(QSize stated)
        : Coded(picture(stated.width(), stated.height()))
    {
    }
    explicit Coded(const QImage &image)
        : Coded(Sample::encodeHeic(image, { 1, {}, 0 }), image.size())
    {
    }
    Coded(const QByteArray &file, QSize stated)
        : size(stated)
    {
        const qsizetype at = file.indexOf("hvcC") - 4;
        configuration = file.sliced(at, qFromBigEndian<quint32>(file.constData() + at));
        data = file.sliced(file.indexOf("mdat") + 4);
    }
    Heif::Item item() const
    {
        return { "hvc1", data, { configuration, Heif::sizeProperty(size) } };
    }
    Heif::Item itemOf(QSize stated) const
    {
        return { "hvc1", data, { configuration, Heif::sizeProperty(stated) } };
    }
    // The unit of the configuration that states the size, as it would stand in the data.
    QByteArray header() const
    {
        constexpr qsizetype kFirstList = 8 + 23;
        constexpr qsizetype kListHead = 3;
        const char *start = configuration.constData() + kFirstList + kListHead;
        start += 2 + qFromBigEndian<quint16>(start) + kListHead;
        return QByteArray(2, '\0') + QByteArray(start, 2 + qFromBigEndian<quint16>(start));
    }

    QSize size;
    QByteArray configuration;
    QByteArray data;
};

QImage filled(int width, int height, const QColor &colour)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

Heif::Item attached(Heif::Item item, int to)
{
    item.auxiliaryOf = to;
    item.properties +=
        Heif::versionedBox("auxC", 0, QByteArray("urn:mpeg:hevc:2015:auxid:1") + '\0');
    return item;
}

Heif::Item smaller(Heif::Item item, int than)
{
    item.thumbnailOf = than;
    return item;
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
    void decodesTheSmallestThatIsLargeEnough_data();
    void decodesTheSmallestThatIsLargeEnough();
    void keepsTransparencyThatSmallerVersionsLack();
    void reducesLikeTheWhole_data();
    void reducesLikeTheWhole();
    void showsTheFirstOfASequence_data();
    void showsTheFirstOfASequence();
    void decodesWithinWhatIsStated_data();
    void decodesWithinWhatIsStated();
    void refusesPicturesThatReferToOthers();
    void refusesBrokenBoxes_data();
    void refusesBrokenBoxes();
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
    QTest::newRow("no smaller version")
        << QString() << Sample::encodeHeic(picture(500, 300), { 6, {}, 0 });
    QTest::newRow("AVIF") << QString() << encodedElsewhere(picture(500, 300), u"avif"_s);
    QTest::newRow("ten bits") << QString()
                              << encodedElsewhere(
                                     picture(500, 300).convertToFormat(QImage::Format_RGBX64),
                                     u"heic"_s);
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
    // Cameras make smaller versions of what they saw, not of the picture.
    const double tolerance = bytes.isEmpty() ? 8.0 : 3.0;
    const double apart = distance(thumbnail, expectedSmall);
    QVERIFY2(apart < tolerance, qPrintable(QString::number(apart)));
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

void tst_HeifPlugin::decodesTheSmallestThatIsLargeEnough_data()
{
    QTest::addColumn<QSize>("wanted");
    QTest::addColumn<QColor>("shown");
    QTest::newRow("smaller than all") << QSize(50, 30) << QColor(Qt::blue);
    QTest::newRow("the smallest") << QSize(160, 96) << QColor(Qt::blue);
    QTest::newRow("larger than the smallest") << QSize(161, 97) << QColor(Qt::green);
    QTest::newRow("the larger one") << QSize(320, 192) << QColor(Qt::green);
    QTest::newRow("larger than both") << QSize(350, 210) << QColor(Qt::red);
    QTest::newRow("of another shape") << QSize(100, 104) << QColor(Qt::green);
}

void tst_HeifPlugin::decodesTheSmallestThatIsLargeEnough()
{
    QFETCH(QSize, wanted);
    QFETCH(QColor, shown);

    const auto item = [](int width, int height, const QColor &colour) {
        return Coded(filled(width, height, colour)).item();
    };
    const QByteArray bytes = Heif::file({ item(1000, 600, Qt::red),
                                          smaller(item(320, 192, Qt::green), 1),
                                          smaller(item(160, 96, Qt::blue), 1),
                                          smaller(item(160, 128, Qt::white), 1) });
    const QImage image = read(bytes, wanted);
    QCOMPARE(image.size(), wanted);
    const double apart = distance(image, filled(wanted.width(), wanted.height(), shown));
    QVERIFY2(apart < 3.0, qPrintable(QString::number(apart)));
}

void tst_HeifPlugin::keepsTransparencyThatSmallerVersionsLack()
{
    const Heif::Item tile = Coded(QSize(64, 64)).item();
    const QImage image =
        read(Heif::file({ tile, attached(tile, 1), smaller(tile, 1) }), QSize(32, 32));
    QVERIFY(image.hasAlphaChannel());
}

void tst_HeifPlugin::reducesLikeTheWhole_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isReduced"); // by the short way

    const QImage image = picture(1000, 600);
    QImage white(1000, 1200, QImage::Format_RGB32);
    white.fill(Qt::white);
    QTest::newRow("white") << Sample::encodeHeic(white, { 1, {}, 0 }) << true;
    for (int orientation = 1; orientation <= 8; ++orientation)
        QTest::addRow("orientation %d", orientation)
            << Sample::encodeHeic(image, { orientation, {}, 0 }) << true;
    const auto encoded = [](const QImage &whole, const QStringList &arguments = {}) {
        return encodedElsewhere(whole, u"heic"_s, arguments);
    };
    const QImage deep = image.convertToFormat(QImage::Format_RGBX64);
    QTest::newRow("four colours a pixel") << encoded(image, { u"-p"_s, u"chroma=444"_s }) << true;
    QTest::newRow("two colours a pixel") << encoded(image, { u"-p"_s, u"chroma=422"_s }) << true;
    QTest::newRow("grey") << encoded(image.convertToFormat(QImage::Format_Grayscale8)) << true;
    QTest::newRow("ten bits") << encoded(deep) << true;
    QTest::newRow("uneven") << encoded(picture(999, 599)) << true;
    QImage glass = image.convertToFormat(QImage::Format_RGBA8888);
    glass.setPixelColor(0, 0, Qt::transparent);
    QTest::newRow("transparent") << Sample::encodeHeic(glass, { 1, {}, 0 }) << false;
    QTest::newRow("AVIF") << encodedElsewhere(image, u"avif"_s) << false;
    QTest::newRow("colours that the coded data state") << encoded(
        image, { u"-p"_s, u"x265:colormatrix=bt709"_s, u"-p"_s, u"x265:range=limited"_s })
                                                       << true;
    QTest::newRow("other colours that the coded data state") << encoded(
        image, { u"-p"_s, u"x265:colormatrix=bt2020nc"_s, u"-p"_s, u"x265:range=full"_s })
                                                             << true;

    const QSize size(256, 256);
    const Coded coded(size);
    const Heif::Item tile = coded.item();
    const auto with = [](Heif::Item item, const QByteArray &property) {
        item.properties += property;
        return item;
    };
    for (const int matrix : { 1, 2, 6, 9, 11 }) {
        for (const bool isFullRange : { false, true })
            QTest::addRow("stated matrix %d, full range %d", matrix, isFullRange)
                << Heif::file({ with(tile, colours(matrix, isFullRange)) }) << (matrix != 11);
    }
    const auto grid = [](const Heif::Item &first, const Heif::Item &second) {
        const QSize whole(700, 400);
        return Heif::file({ { "grid",
                              Heif::gridData(2, 3, whole),
                              { Heif::sizeProperty(whole),
                                Heif::box("irot", "\1"),
                                Heif::box("imir", "\1"),
                                colours(9, false) },
                              { 2, 3, 2, 3, 2, 3 } },
                            first,
                            second });
    };
    QTest::newRow("grid") << grid(tile, tile) << true;
    QTest::newRow("grid whose tiles state their colours")
        << grid(with(tile, colours(1, false)), with(tile, colours(1, false))) << true;
    QTest::newRow("grid whose tiles state different colours")
        << grid(with(tile, colours(1, false)), with(tile, colours(6, true))) << false;
    const Coded other(encoded(image.copy(QRect({}, size)), { u"-p"_s, u"chroma=444"_s }), size);
    QTest::newRow("grid of tiles that are coded differently") << grid(tile, other.item()) << false;
    QTest::newRow("grid of a turned tile")
        << grid(tile, with(tile, Heif::box("irot", "\2"))) << false;
    QTest::newRow("turned before its size is stated") << Heif::file(
        { { "hvc1",
            coded.data,
            { Heif::box("irot", "\1"), coded.configuration, Heif::sizeProperty(size) } } })
                                                      << true;
    const auto cropped = [&](int width, int height) {
        return Heif::file(
            { with(tile,
                   Heif::box("clap",
                             Heif::number(width, 4) + Heif::number(1, 4) + Heif::number(height, 4)
                                 + Heif::number(1, 4) + Heif::number(0, 4) + Heif::number(1, 4)
                                 + Heif::number(0, 4) + Heif::number(1, 4))) });
    };
    QTest::newRow("cropped") << cropped(200, 100) << false;
    QTest::newRow("cropped to all of it") << cropped(256, 256) << false;
    QByteArray data = coded.data;
    for (qsizetype at = data.size() / 2; at < data.size() / 2 + 20; ++at)
        data[at] = static_cast<char>(data[at] ^ '\x55');
    QTest::newRow("damaged") << Heif::file({ { "hvc1", data, tile.properties } }) << false;
}

// Averages are taken before the numbers become colours, by code of our own; the whole picture is
// the decoding library's.
void tst_HeifPlugin::reducesLikeTheWhole()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isReduced);

    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    HeifPicture shortWay;
    QVERIFY(shortWay.open(&buffer));
    QCOMPARE(!shortWay.decodeReduced(shortWay.size() / 8).isNull(), isReduced);
    QVERIFY(!shortWay.decode(shortWay.size() / 8).isNull());

    const QImage whole = read(bytes);
    QVERIFY(!whole.isNull());
    // The image library is less exact where a picture becomes nearly nothing.
    const auto isAlike = [&](QSize wanted, double tolerance) {
        const QImage reduced = read(bytes, wanted);
        QCOMPARE(reduced.size(), wanted);
        QCOMPARE(reduced.colorSpace(), whole.colorSpace());
        QCOMPARE(reduced.hasAlphaChannel(), whole.hasAlphaChannel());
        const double apart = distance(
            reduced, whole.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        QVERIFY2(apart < tolerance, qPrintable(QString::number(apart)));
    };
    isAlike(whole.size() / 8, 1.5);
    isAlike({ 20, 1 }, 5.0);
    isAlike({ 1, 1 }, 8.0);
}

void tst_HeifPlugin::showsTheFirstOfASequence_data()
{
    using Traits = Heif::SequenceTraits;
    const QSize size(192, 128);
    const Coded coded(size);
    const auto sequence = [&](const Traits &traits) {
        return Heif::sequence(coded.data, coded.configuration, size, traits);
    };
    const auto turned = [&](const char *property, const char *how) {
        Heif::Item item = coded.item();
        item.properties += Heif::box(property, how);
        return Heif::file({ item });
    };
    const QByteArray upright = Heif::file({ coded.item() });

    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("picture"); // a file of the same one alone; empty: refused
    QTest::newRow("one track") << sequence({}) << upright;
    QTest::newRow("parameters may change") << sequence({ .coding = "hev1" }) << upright;
    QTest::newRow("long offsets") << sequence({ .hasLongOffsets = true }) << upright;
    QTest::newRow("turned") << sequence({ .matrix = { 0, 1, -1, 0 } }) << turned("irot", "\3");
    QTest::newRow("on its head") << sequence({ .matrix = { -1, 0, 0, -1 } })
                                 << turned("irot", "\2");
    QTest::newRow("flipped") << sequence({ .matrix = { -1, 0, 0, 1 } }) << turned("imir", "\1");
    QTest::newRow("matrix of no turn") << sequence({ .matrix = { 2, 1, 1, 2 } }) << upright;
    QTest::newRow("no pictures") << sequence({ .handler = "soun" }) << QByteArray();
    QTest::newRow("another coder") << sequence({ .coding = "avc1" }) << QByteArray();
    QTest::newRow("data that lie nowhere") << sequence({ .dataAt = 1'000'000 }) << QByteArray();
    QTest::newRow("data that lie beyond all files")
        << sequence({ .dataAt = -1, .hasLongOffsets = true }) << QByteArray();
    QTest::newRow("no parameters")
        << Heif::sequence(coded.data, Heif::box("free", ""), size) << QByteArray();
    QTest::newRow("no data") << Heif::sequence({}, coded.configuration, size) << QByteArray();
    const Coded large({ 1000, 600 });
    QTest::newRow("coded larger than stated")
        << Heif::sequence(large.data, large.configuration, size) << QByteArray();
    QTest::newRow("no size") << Heif::sequence(coded.data, coded.configuration, { 0, 0 })
                             << QByteArray();
    QTest::newRow("no movie") << QByteArray(upright).replace("meta", "free") << QByteArray();
    const QByteArray movie = sequence({});
    const qsizetype movieAt = movie.indexOf("moov") - 4;
    QTest::newRow("two movies besides a picture")
        << upright + Heif::box("moov", "") + Heif::box("moov", "") << upright;
    QTest::newRow("box of 2^63 bytes besides a picture")
        << upright + QByteArray("\0\0\0\1free\x80\0\0\0\0\0\0\0", 16) << upright;
    QTest::newRow("cut movie besides a picture") << upright + movie.sliced(movieAt, 50) << upright;
    QTest::newRow("stated colours")
        << Heif::sequence(coded.data, coded.configuration + colours(9, false), size) << [&] {
               Heif::Item item = coded.item();
               item.properties += colours(9, false);
               return Heif::file({ item });
           }();
    QTest::newRow("two movies") << sequence({}) + Heif::box("moov", "") << QByteArray();
}

void tst_HeifPlugin::showsTheFirstOfASequence()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, picture);

    for (const int divisor : { 1, 2, 8 }) {
        const QImage expected = picture.isEmpty() ? QImage() : read(picture);
        const QSize wanted = expected.size() / divisor;
        const QImage image = read(bytes, divisor > 1 ? wanted : QSize());
        QCOMPARE(image.isNull(), picture.isEmpty());
        if (image.isNull())
            break;
        QCOMPARE(image.size(), wanted);
        QCOMPARE(image.colorSpace(), expected.colorSpace());
        const double apart = distance(
            image, expected.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        QVERIFY2(apart < 1.5, qPrintable(QString::number(apart)));
    }
}

void tst_HeifPlugin::decodesWithinWhatIsStated_data()
{
    using Heif::file;
    using Heif::gridData;
    using Heif::sizeProperty;
    const QSize small(64, 64);
    const QSize two(128, 64);
    const Coded coded(small);
    const Coded large(QSize(1000, 600));
    const Coded huge(QSize(3072, 3072));
    const Heif::Item tile = coded.item();
    const auto grid = [](int rows, int columns, QSize size, const Heif::Ids &tiles) {
        return Heif::Item { "grid", gridData(rows, columns, size), { sizeProperty(size) }, tiles };
    };
    const auto alias = [&](int of) {
        return Heif::Item { "iden", "-", { sizeProperty(small) }, { of } };
    };

    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("size"); // invalid: refused
    const QSize none;
    QTest::newRow("one image") << file({ tile }) << small;
    QTest::newRow("stated on its side, yet not turned")
        << file({ Coded(two).itemOf({ 64, 128 }) }) << none;
    QTest::newRow("smaller version") << file({ tile, smaller(tile, 1) }) << small;
    QTest::newRow("attached image") << file({ tile, attached(tile, 1) }) << small;
    QTest::newRow("grid") << file({ grid(1, 2, two, { 2, 3 }), tile, tile }) << two;
    QTest::newRow("grid of one tile repeated") << file({ grid(1, 2, two, { 2, 2 }), tile }) << two;
    QTest::newRow("another name") << file({ alias(2), tile }) << small;
    QTest::newRow("another name of a grid") << file(
        { { "iden", "-", { sizeProperty(two) }, { 2 } }, grid(1, 2, two, { 3, 4 }), tile, tile })
                                            << two;
    QTest::newRow("what is broken is not asked for")
        << file({ tile, { "iovl", "-", { sizeProperty(small) }, { 2 } } }) << small;

    Heif::Item other = tile;
    other.type = "jpeg";
    QTest::newRow("smaller version that nobody decodes")
        << file({ tile, smaller(other, 1) }) << small;
    QTest::newRow("attached image that nobody decodes")
        << file({ tile, attached(other, 1) }) << small;
    Heif::Item remarks { "Exif", QByteArray(20'000, '-') };
    QTest::newRow("remarks") << file({ tile, remarks }) << small;
    remarks.repeats = 32;
    QTest::newRow("remarks again and again") << file({ tile, remarks }) << none;

    QTest::newRow("another name of itself") << file({ alias(1), tile }) << none;
    QTest::newRow("names in a circle") << file({ alias(2), alias(1) }) << none;
    QTest::newRow("another name of a name") << file({ alias(2), alias(3), tile }) << none;
    QTest::newRow("grid of itself") << file({ grid(1, 1, small, { 1 }), tile }) << none;
    QTest::newRow("grids in a circle")
        << file({ grid(1, 1, small, { 2 }), grid(1, 1, small, { 1 }) }) << none;
    QTest::newRow("attached to each other")
        << file({ attached(tile, 2), attached(tile, 1) }) << none;
    QTest::newRow("attached to itself") << file({ attached(tile, 1) }) << none;
    QTest::newRow("tiles with attached images")
        << file({ grid(1, 1, small, { 2 }), tile, attached(tile, 2) }) << none;
    QTest::newRow("smaller version is a circle") << file({ tile, smaller(alias(2), 1) }) << none;
    QTest::newRow("smaller version of itself") << file({ smaller(tile, 1) }) << none;
    QTest::newRow("attached image is a circle")
        << file({ tile, attached(grid(1, 1, small, { 2 }), 1) }) << none;
    QTest::newRow("overlay") << file({ { "iovl",
                                         Heif::number(0, 10) + Heif::number(16000, 2)
                                             + Heif::number(16000, 2) + Heif::number(0, 4),
                                         { sizeProperty(small) },
                                         { 2 } },
                                       tile })
                             << none;
    QTest::newRow("coded larger than stated") << file({ large.itemOf(small) }) << none;
    QTest::newRow("another size among the data")
        << file({ { "hvc1", large.header() + coded.data, tile.properties } }) << none;
    QTest::newRow("two pictures in one")
        << file({ { "hvc1", coded.data + coded.data, tile.properties } }) << none;
    QByteArray parameters = coded.configuration;
    parameters[8 + 22] = static_cast<char>(parameters[8 + 22] + 1);
    parameters +=
        "\x14" + Heif::number(1, 2) + Heif::number(coded.data.size() - 4, 2) + coded.data.sliced(4);
    parameters.replace(0, 4, Heif::number(parameters.size(), 4));
    QTest::newRow("picture among the parameters")
        << file({ { "hvc1", coded.data, { parameters, sizeProperty(small) } } }) << none;
    QTest::newRow("no header") << file(
        { { "hvc1",
            coded.data,
            { Heif::box("hvcC", QByteArray(22, '\xFF') + '\0'), sizeProperty(small) } } })
                               << none;
    QTest::newRow("no size") << file({ { "hvc1", coded.data, { coded.configuration } } }) << none;
    QTest::newRow("two sizes") << file(
        { { "hvc1", coded.data, tile.properties + QByteArrayList { sizeProperty(two) } } })
                               << none;
    QTest::newRow("huge attached image") << file({ tile, attached(huge.item(), 1) }) << none;
    QTest::newRow("another name of what is huge") << file({ alias(2), huge.item() }) << none;
    QTest::newRow("huge tile repeated")
        << file({ grid(20, 20, { 1280, 1280 }, Heif::Ids(400, 2)), huge.item() }) << none;
    QTest::newRow("huge tile that states another size")
        << file({ grid(20, 20, { 1280, 1280 }, Heif::Ids(400, 2)), huge.itemOf(small) }) << none;
    QTest::newRow("too few tiles") << file({ grid(2, 2, two, { 2, 3 }), tile, tile }) << none;
    QTest::newRow("too many tiles") << file({ grid(1, 1, small, { 2, 3 }), tile, tile }) << none;
    QTest::newRow("tile that is not there") << file({ grid(1, 2, two, { 2, 9 }), tile }) << none;
    QTest::newRow("grid larger than stated") << file(
        { { "grid", gridData(1, 1, { 16000, 16000 }), { sizeProperty(small) }, { 2 } }, tile })
                                             << none;
    QTest::newRow("grid without data")
        << file({ { "grid", {}, { sizeProperty(small) }, { 2 } }, tile }) << none;

    QByteArray avif = encodedElsewhere(picture(1000, 600), u"avif"_s);
    avif.replace(Heif::sizeProperty({ 1000, 600 }), Heif::sizeProperty(small));
    QTest::newRow("AVIF coded larger than stated") << avif << none;
    Heif::Item turned = tile;
    turned.properties += QByteArrayList(4, Heif::box("irot", "\1"));
    QTest::newRow("turned again and again") << file({ turned }) << none;
    QTest::newRow("more tiles than anyone makes")
        << file({ grid(100, 100, { 4500, 4500 }, Heif::Ids(10000, 2)), tile }) << none;
    QTest::newRow("more bytes after the picture") << file({ tile }) + "SEFT, no box" << small;
    QByteArray items = file({ tile, tile });
    const qsizetype second = items.lastIndexOf("infe") + 8;
    items.replace(second, 2, Heif::number(1, 2));
    QTest::newRow("two items of one number") << items << none;
}

void tst_HeifPlugin::decodesWithinWhatIsStated()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, size);

    QVERIFY(!bytes.isEmpty());
    QString why;
    const QImage image = read(bytes, {}, &why);
    QCOMPARE(image.isNull() ? QSize() : image.size(), size);
    QCOMPARE(read(bytes, { 16, 16 }).isNull(), !size.isValid());
    if (!size.isValid())
        QVERIFY(!why.isEmpty());
}

// What they refer to would have to be invented, at the cost of up to sixteen pictures.
void tst_HeifPlugin::refusesPicturesThatReferToOthers()
{
    const Coded small(QSize(64, 64));
    const Coded large(QSize(3072, 3072));
    const auto isSafe = [](const Coded &picture, int type) {
        QByteArray data = picture.data;
        data[4] = static_cast<char>(type << 1);
        QByteArray bytes = Heif::file({ { "hvc1", data, picture.item().properties } });
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        return HeifStructure(buffer).isSafe();
    };
    for (const int type : { 0, 1, 9, 15, 22, 31 })
        QVERIFY(!isSafe(small, type));
    for (int type = 16; type < 22; ++type) {
        QVERIFY(isSafe(small, type));
        QCOMPARE(isSafe(large, type), type == 19 || type == 20);
    }
}

void tst_HeifPlugin::refusesBrokenBoxes_data()
{
    QTest::addColumn<QByteArray>("box");
    QTest::addColumn<QByteArray>("size");
    for (const char *box : { "meta",
                             "pitm",
                             "iinf",
                             "infe",
                             "iref",
                             "iprp",
                             "ipco",
                             "hvcC",
                             "ispe",
                             "ipma",
                             "iloc" }) {
        for (const char *size : { "00000000",
                                  "00000001",
                                  "00000007",
                                  "0000000c",
                                  "00010000",
                                  "7fffffff",
                                  "ffffffff" }) {
            if (qstrcmp(box, "meta") != 0 || qstrcmp(size, "00000000") != 0) // that is "the last"
                QTest::addRow("%s of %s", box, size) << QByteArray(box) << QByteArray(size);
        }
    }
}

void tst_HeifPlugin::refusesBrokenBoxes()
{
    QFETCH(QByteArray, box);
    QFETCH(QByteArray, size);

    const Heif::Item tile = Coded(QSize(64, 64)).item();
    QByteArray bytes = Heif::file({ { "grid",
                                      Heif::gridData(1, 2, { 128, 64 }),
                                      { Heif::sizeProperty({ 128, 64 }) },
                                      { 2, 3 } },
                                    tile,
                                    tile });
    QCOMPARE(read(bytes).size(), QSize(128, 64));
    bytes.replace(bytes.indexOf(box) - 4, 4, QByteArray::fromHex(size));
    QString why;
    QVERIFY(read(bytes, {}, &why).isNull());
    QVERIFY(!why.isEmpty());
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
    const qsizetype sizeAt = whole.indexOf("ispe") + 8;
    for (qsizetype at = 0; at < std::min<qsizetype>(whole.size(), 700); at += 3) {
        QByteArray changed = whole;
        changed[at] = static_cast<char>(changed[at] ^ '\xFF');
        const QImage image = read(changed);
        const QSize stated(qFromBigEndian<int>(changed.constData() + sizeAt),
                           qFromBigEndian<int>(changed.constData() + sizeAt + 4));
        QVERIFY(image.isNull() || image.size() == stated);
    }
    const Coded coded({ 200, 120 });
    const QByteArray sequence = Heif::sequence(coded.data, coded.configuration, coded.size);
    QCOMPARE(read(sequence).size(), coded.size);
    const qsizetype dataAt = sequence.indexOf("mdat") + 4;
    for (qsizetype size = 0; size < dataAt; ++size)
        QVERIFY(read(sequence.first(size)).isNull());
    for (qsizetype at = 0; at < sequence.size(); at += at < dataAt ? 1 : 37) {
        QByteArray changed = sequence;
        changed[at] = static_cast<char>(changed[at] ^ '\xFF');
        const QImage image = read(changed, { 20, 12 });
        QVERIFY(image.isNull() || image.size() == QSize(20, 12));
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
    // What the file is best for may be unknown, when it is a picture besides.
    const QByteArray whole = Sample::encodeHeic(picture(64, 64));
    QByteArray other = whole;
    const qsizetype brandsEnd = whole.indexOf("meta") - 4;
    for (qsizetype at = 8; at < brandsEnd; at += 4)
        other.replace(at, 4, "else");
    QString why;
    QVERIFY(read(other, {}, &why).isNull());
    QString whyUnknown;
    QVERIFY(read("no picture at all", {}, &whyUnknown).isNull());
    QCOMPARE(why, whyUnknown);
    for (const char *brand : { "mif1", "heic", "avif" }) {
        other.replace(brandsEnd - 4, 4, brand);
        QCOMPARE(read(other).size(), QSize(64, 64));
    }
    QBuffer png;
    png.open(QIODevice::ReadWrite);
    picture(8, 8).save(&png, "PNG");
    QCOMPARE(read(png.data()).size(), QSize(8, 8));
}

QTEST_GUILESS_MAIN(tst_HeifPlugin)
#include "tst_HeifPlugin.moc"
