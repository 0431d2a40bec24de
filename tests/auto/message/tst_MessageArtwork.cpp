// What the page's style sheet expects of the images.
#include <QImage>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

QImage load(const QString &name)
{
    return QImage(QStringLiteral(PROJECT_RESOURCES "/DataExport/") + name)
        .convertToFormat(QImage::Format_ARGB32);
}

struct Bubble
{
    QString name;
    int topPx;
    int bottomPx;
};

constexpr int kLeftPx = 14;
constexpr int kRightPx = 18;

// The bubble as a browser puts it together, around a text of so many pixels. Cells cut their image
// off; corners do not repeat, edges do in their direction.
QImage composed(const Bubble &bubble, QSize text, int extraPx)
{
    const QList<int> widths { kLeftPx + extraPx, text.width(), kRightPx };
    const QList<int> heights { bubble.topPx + extraPx, text.height(), bubble.bottomPx };
    const QList<QStringList> names { { u"top-l"_s, u"top-c"_s, u"top-r"_s },
                                     { u"middle-l"_s, u"bg"_s, u"middle-r"_s },
                                     { u"bot-l"_s, u"bot-c"_s, u"bot-r"_s } };
    QImage whole(widths[0] + widths[1] + widths[2],
                 heights[0] + heights[1] + heights[2],
                 QImage::Format_ARGB32);
    whole.fill(Qt::transparent);
    int top = 0;
    for (int row = 0; row < 3; ++row) {
        int left = 0;
        for (int column = 0; column < 3; ++column) {
            const QImage part = load(u"%1-%2.png"_s.arg(bubble.name, names[row][column]));
            for (int y = 0; y < heights[row]; ++y) {
                for (int x = 0; x < widths[column]; ++x) {
                    const int fromX = column == 1 ? x % part.width() : x;
                    const int fromY = row == 1 ? y % part.height() : y;
                    if (part.valid(fromX, fromY))
                        whole.setPixel(left + x, top + y, part.pixel(fromX, fromY));
                }
            }
            left += widths[column];
        }
        top += heights[row];
    }
    return whole;
}

double linear(int channel)
{
    const double part = channel / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(QColor colour)
{
    return 0.2126 * linear(colour.red()) + 0.7152 * linear(colour.green())
        + 0.0722 * linear(colour.blue());
}

double contrast(QColor one, QColor other)
{
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

} // namespace

class tst_MessageArtwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasAllImages_data();
    void hasAllImages();
    void bubblesHaveNoSeams_data();
    void bubblesHaveNoSeams();
    void textReadsWell();
};

void tst_MessageArtwork::hasAllImages_data()
{
    QTest::addColumn<QSize>("atMost");

    const QSize mark(24, 24); // a mark is no higher than about one line of text
    for (const char *name : { "exclamation.png",
                              "del_msg_recv.png",
                              "del_msg_send.png",
                              "deleted.png",
                              "broadcast.png" })
        QTest::newRow(name) << mark;
    const QSize icon(48, 48); // leaves room for a text beside it
    for (const char *name :
         { "picture.png", "video.png", "audio.png", "vcard.png", "location.png" })
        QTest::newRow(name) << icon;
    for (const char *name : { "sms_video.png", "sms_image.png" })
        QTest::newRow(name) << QSize(250, 250);
}

void tst_MessageArtwork::hasAllImages()
{
    QFETCH(QSize, atMost);

    const QImage image = load(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(!image.isNull());
    QCOMPARE(image.size().boundedTo(atMost), image.size());
    QVERIFY(image.pixelColor(image.width() / 2, std::min(image.width(), image.height()) / 2).alpha()
            > 0);
}

void tst_MessageArtwork::bubblesHaveNoSeams_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("topPx");
    QTest::addColumn<int>("bottomPx");
    QTest::addColumn<QSize>("text");
    QTest::addColumn<int>("extraPx");

    const QList<Bubble> bubbles { { u"message"_s, 13, 14 },
                                  { u"imessage"_s, 13, 14 },
                                  { u"rmessage"_s, 15, 13 } };
    for (const Bubble &bubble : bubbles) {
        const auto add = [&](const char *what, QSize text, int extraPx) {
            QTest::addRow("%s, %s", qPrintable(bubble.name), what)
                << bubble.name << bubble.topPx << bubble.bottomPx << text << extraPx;
        };
        add("a letter", QSize(9, 22), 0);
        add("a paragraph", QSize(230, 157), 0);
        add("nothing", QSize(1, 1), 0);
        add("cells a pixel larger, as at fractional zoom", QSize(57, 45), 1);
    }
}

// Seen along any line through it, a bubble begins once and ends once, in one colour.
void tst_MessageArtwork::bubblesHaveNoSeams()
{
    QFETCH(QString, name);
    QFETCH(int, topPx);
    QFETCH(int, bottomPx);
    QFETCH(QSize, text);
    QFETCH(int, extraPx);

    const QImage whole = composed({ name, topPx, bottomPx }, text, extraPx);
    const QRgb colour = load(name + u"-bg.png"_s).pixel(0, 0);
    QCOMPARE(qAlpha(colour), 255);
    const auto holes = [&](int length, auto pixelAt) {
        int first = 0;
        int last = length - 1;
        while (first < length && pixelAt(first) != colour)
            ++first;
        while (last >= 0 && pixelAt(last) != colour)
            --last;
        int found = 0;
        for (int at = first; at < last; ++at)
            found += pixelAt(at) == colour ? 0 : 1;
        return found;
    };
    // The last rows hold the tail, which a notch parts from the body.
    for (int y = 0; y < whole.height() - 5; ++y)
        QCOMPARE(holes(whole.width(), [&](int x) { return whole.pixel(x, y); }), 0);
    for (int x = 0; x < whole.width(); ++x)
        QCOMPARE(holes(whole.height(), [&](int y) { return whole.pixel(x, y); }), 0);
    // The text's own room is covered, and the page shows at the corners.
    for (int y = topPx; y < topPx + text.height(); ++y)
        QCOMPARE(whole.pixel(kLeftPx, y), colour);
    QCOMPARE(qAlpha(whole.pixel(0, 0)), 0);
    QCOMPARE(qAlpha(whole.pixel(whole.width() - 1, 0)), 0);
}

void tst_MessageArtwork::textReadsWell()
{
    const QColor sms = load(u"message-bg.png"_s).pixelColor(0, 0);
    const QColor iMessage = load(u"imessage-bg.png"_s).pixelColor(0, 0);
    const QColor received = load(u"rmessage-bg.png"_s).pixelColor(0, 0);
    QVERIFY(contrast(sms, Qt::white) >= 4.5);
    QVERIFY(contrast(iMessage, Qt::white) >= 4.5);
    QVERIFY(contrast(received, Qt::black) >= 7);
    QVERIFY(sms.blue() > sms.red() && sms.blue() > sms.green());
    const int hues = std::abs(sms.hsvHue() - iMessage.hsvHue());
    QVERIFY(std::min(hues, 360 - hues) > 45);
}

QTEST_APPLESS_MAIN(tst_MessageArtwork)
#include "tst_MessageArtwork.moc"
