#include "export/JpegScans_p.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QtTest>

namespace {

QByteArray encoded(bool isProgressive)
{
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "JPEG");
    writer.setProgressiveScanWrite(isProgressive);
    writer.write(image);
    return buffer.data();
}

QByteArray segment(int mark, const QByteArray &content)
{
    const auto length = content.size() + 2;
    return QByteArray("\xFF") + static_cast<char>(mark) + static_cast<char>(length / 0x100)
        + static_cast<char>(length % 0x100) + content;
}

// Of three colours.
QByteArray frame(int mark)
{
    return segment(mark, QByteArray(5, '\x10') + '\3' + QByteArray(9, '\1'));
}

// Of \a colours, with what looks like marks among its data.
QByteArray scan(int colours)
{
    return segment(0xDA, static_cast<char>(colours) + QByteArray(colours * 2 + 3, '\1'))
        + QByteArray::fromHex("0102ff00ff00daffd3ffd7da");
}

QByteArray jpeg(const QByteArray &content)
{
    return "\xFF\xD8" + content + "\xFF\xD9";
}

} // namespace

class tst_JpegScans : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsThoseOfAPicture_data();
    void countsThoseOfAPicture();
};

void tst_JpegScans::countsThoseOfAPicture_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("count"); // 0: the picture is not held whole

    QTest::newRow("nothing") << QByteArray() << 0;
    QTest::newRow("a text") << QByteArray("this is no picture at all") << 0;
    QTest::newRow("baseline") << encoded(false) << 0;
    QTest::newRow("progressive") << encoded(true) << 10;
    QTest::newRow("progressive, with a smaller version of that kind")
        << jpeg(segment(0xE1, encoded(true)) + encoded(true).sliced(2)) << 10;
    QTest::newRow("larger than what is read at once")
        << jpeg(frame(0xC2) + scan(3) + QByteArray(100'000, '-') + scan(1)) << 2;
    for (const int mark : { 0xC0, 0xC1, 0xC9 }) {
        QTest::addRow("frame %x, one pass", mark) << jpeg(frame(mark) + scan(3)) << 0;
        QTest::addRow("frame %x, a pass for each colour", mark)
            << jpeg(frame(mark) + scan(1).repeated(3)) << 3;
    }
    for (const int mark : { 0xC2, 0xC6, 0xCA, 0xCE })
        QTest::addRow("frame %x", mark) << jpeg(frame(mark) + scan(3)) << 1;
    for (const int mark : { 0xC4, 0xC8, 0xCC })
        QTest::addRow("%x, which is no frame", mark)
            << jpeg(frame(0xC0) + frame(mark) + scan(3)) << 0;
    QTest::newRow("filled up before a mark")
        << jpeg("\xFF\xFF" + frame(0xC2) + "\xFF" + scan(3)) << 1;
    QTest::newRow("something else before a mark")
        << jpeg("-\xFF" + QByteArray(1, '\0') + frame(0xC2) + scan(3)) << 1;
    QTest::newRow("marks without content")
        << jpeg(QByteArray("\xFF\x01\xFF\xD8\xFF\xD0") + frame(0xC2) + scan(3)) << 1;
    QTest::newRow("another picture behind the end")
        << jpeg(frame(0xC2) + scan(3)) + jpeg(frame(0xC2) + scan(3)) << 1;
    QTest::newRow("no end") << jpeg(frame(0xC2) + scan(3)).chopped(2) << 1;
    QTest::newRow("cut in a length") << QByteArray("\xFF\xD8\xFF\xC2\1") << 0;
    QTest::newRow("many") << jpeg(frame(0xC2) + scan(1).repeated(5000)) << 5000;
}

void tst_JpegScans::countsThoseOfAPicture()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, count);

    bytes.prepend("before");
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    buffer.seek(6);
    const JpegScans scans = JpegScans::read(buffer);
    QCOMPARE(scans.count(), count);
    QCOMPARE(scans.areHeldWhole(), count > 0);
    QCOMPARE(buffer.pos(), 6);
}

QTEST_GUILESS_MAIN(tst_JpegScans)
#include "tst_JpegScans.moc"
