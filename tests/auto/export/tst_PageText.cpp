#include "export/PageText_p.h"
#include "support/RecordingSink.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class tst_PageText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void encodesOnHardenedPagesOnly();
    void linksToWellKnownSchemes_data();
    void linksToWellKnownSchemes();
};

void tst_PageText::encodesOnHardenedPagesOnly()
{
    const QString hostile = u"<b title='x' id=\"y\">&\n"_s;
    RecordingSink page;
    QCOMPARE(PageText::plain(page, hostile), hostile);
    QCOMPARE(PageText::attribute(page, hostile), hostile);
    page.setHardened(true);
    QCOMPARE(PageText::plain(page, hostile), u"&lt;b title='x' id=&quot;y&quot;&gt;&amp;<br>"_s);
    QCOMPARE(PageText::attribute(page, hostile),
             u"&lt;b title=&#39;x&#39; id=&quot;y&quot;&gt;&amp;\n"_s);
}

void tst_PageText::linksToWellKnownSchemes_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("linked");

    for (const char *target : { "http://a.org/?q=javascript:x",
                                "https://a.org",
                                "HTTPS://A.ORG",
                                "ftp://a.org/x",
                                "mailto:a@b.org",
                                "tel:+1%20555",
                                "sms:+1",
                                "facetime:a@b.org" })
        QTest::newRow(target) << QString::fromLatin1(target) << true;
    for (const char *target : { "javascript:alert(1)",
                                "JavaScript:alert(1)",
                                " javascript:alert(1)",
                                "java\nscript:alert(1)",
                                "java\tscript:alert(1)",
                                "\001javascript:alert(1)",
                                "javascript&colon;alert(1)",
                                "data:text/html,<script>x</script>",
                                "vbscript:x",
                                "file:///etc/passwd",
                                "blob:http://a.org/x",
                                "view-source:http://a.org",
                                "x-callback:http:",
                                "//a.org/share",
                                "\\\\a.org\\share",
                                "www.a.org",
                                "a.html?http:",
                                ":http:",
                                "" })
        QTest::newRow(qPrintable(u"no: "_s + QString::fromLatin1(target)))
            << QString::fromLatin1(target) << false;
}

void tst_PageText::linksToWellKnownSchemes()
{
    QFETCH(QString, target);
    RecordingSink page;
    QVERIFY(PageText::mayLink(page, target));
    page.setHardened(true);
    QTEST(PageText::mayLink(page, target), "linked");
}

QTEST_GUILESS_MAIN(tst_PageText)
#include "tst_PageText.moc"
