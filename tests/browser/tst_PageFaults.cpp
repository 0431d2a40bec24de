#include "browser/Browser.h"
#include "browser/PageFaults.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace BrowserTest;
using namespace Qt::StringLiterals;

//! That the check of pages finds what it is there for, and nothing in a sound page.
class tst_PageFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void findsFaults_data();
    void findsFaults();

private:
    Browser m_browser;
};

void tst_PageFaults::initTestCase()
{
    QVERIFY2(m_browser.start(), qPrintable(m_browser.error()));
}

void tst_PageFaults::findsFaults_data()
{
    QTest::addColumn<QByteArray>("body"); // between <div id="wrap"> and </div>, 300 pixels wide
    QTest::addColumn<QString>("fault");

    QTest::newRow("sound") << "<p style='background:url(dot.png)'>text</p><img src='dot.png' />"_ba
                           << QString();
    QTest::newRow("missing picture") << "<img src='none.png' />"_ba << u"picture not shown: "_s;
    QTest::newRow("broken picture") << "<img src='broken.png' />"_ba << u"picture not shown: "_s;
    QTest::newRow("missing background") << "<style>.never { background: url(none.png) }</style>"_ba
                                        << u"picture of the style sheet is missing: "_s;
    QTest::newRow("script") << "<script>1</script>"_ba << u"may run: <script"_s;
    QTest::newRow("handler") << "<p onclick='go()'>x</p>"_ba << u"may run: <p"_s;
    QTest::newRow("script as a link") << "<a href=' javascript:go()'>x</a>"_ba << u"may run: <a"_s;
    QTest::newRow("another page inside") << "<iframe src='dot.png'></iframe>"_ba << u"may run: "_s;
    QTest::newRow("too wide") << "<p style='width:301px'>x</p>"_ba << u"reaches over the edge"_s;
    QTest::newRow("to the left") << "<p style='position:relative;left:-2px'>x</p>"_ba
                                 << u"reaches over the edge"_s;
    QTest::newRow("wider than the window")
        << "<p style='width:900px'>x</p>"_ba << u"has to be moved sideways"_s;
    QTest::newRow("from elsewhere")
        << "<img src='../outside.png' />"_ba << u"fetched from elsewhere: file:"_s;
}

void tst_PageFaults::findsFaults()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, fault);
    const QTemporaryDir temp;
    const QByteArray dot = QByteArray::fromBase64(
        "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNkYPhfDwAChwGA60e6kgAAAABJRU5E"
        "rkJggg==");
    const QString folder = temp.filePath(u"pages"_s);
    const QString page = folder + u"/a page's name #1.html"_s;
    QVERIFY(Files::write(folder + u"/dot.png"_s, dot));
    QVERIFY(Files::write(folder + u"/broken.png"_s, "no picture"));
    QVERIFY(Files::write(temp.filePath(u"outside.png"_s), dot));
    QVERIFY(Files::write(page,
                         "<!DOCTYPE html><html><head><meta charset='utf-8'></head><body>"
                         "<div id='wrap' style='width:300px;margin:0 auto'>"
                             + body + "</div></body></html>"));
    QVERIFY2(m_browser.open(page, { 400, 300 }), qPrintable(m_browser.error()));
    const QString faults = pageFaults(m_browser, folder, 300);
    if (fault.isEmpty())
        QCOMPARE(faults, QString());
    else
        QVERIFY2(faults.contains(fault), qPrintable(faults));
}

QTEST_GUILESS_MAIN(tst_PageFaults)
#include "tst_PageFaults.moc"
