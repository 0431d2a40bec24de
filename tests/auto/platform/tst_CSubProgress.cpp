#include "platform/CSubProgress.h"
#include "support/RecordingProgress.h"

#include <QtTest>

class tst_CSubProgress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void forwardsItsSpan_data();
    void forwardsItsSpan();
    void coversTheSpanInEveryPass();
    void staysCancelled();
    void worksWithoutAParent();
};

void tst_CSubProgress::forwardsItsSpan_data()
{
    QTest::addColumn<int>("span");
    QTest::addColumn<int>("range");
    QTest::addColumn<QList<double>>("deltas");
    QTest::addColumn<QList<double>>("beforeFinish");
    QTest::addColumn<QList<double>>("afterFinish");

    using L = QList<double>;
    QTest::newRow("scaled") << 50 << 100 << L { 10, 30 } << L { 5, 15 } << L { 5, 15, 30 };
    QTest::newRow("cut at the end, asked all the same")
        << 50 << 100 << L { 90, 20, 1 } << L { 45, 5, 0 } << L { 45, 5, 0 };
    QTest::newRow("crumbs of rounding are not forwarded")
        << 1 << 3 << L { 1, 1, 1 } << L { 1.0 / 3, 1.0 / 3, 1.0 / 3 }
        << L { 1.0 / 3, 1.0 / 3, 1.0 / 3 };
    QTest::newRow("empty range") << 50 << 0 << L { 10 } << L { 0 } << L { 0 };
    QTest::newRow("negative range") << 50 << -5 << L { 10 } << L { 0 } << L { 0 };
    QTest::newRow("empty span") << 0 << 100 << L { 10 } << L { 0 } << L { 0 };
    QTest::newRow("negative span") << -7 << 100 << L { 10 } << L { 0 } << L { 0 };
    QTest::newRow("no progress at all") << 50 << 100 << L {} << L {} << L { 50 };
}

void tst_CSubProgress::forwardsItsSpan()
{
    QFETCH(int, span);
    QFETCH(int, range);
    QFETCH(QList<double>, deltas);

    RecordingProgress parent;
    CSubProgress sub(&parent, span);
    sub.initRange(range);
    QCOMPARE(sub.range(), range);
    for (const double delta : deltas)
        QVERIFY(sub.progress(delta));
    QTEST(parent.deltas, "beforeFinish");
    QVERIFY(sub.finish());
    QVERIFY(sub.finish());
    QTEST(parent.deltas, "afterFinish");
    QVERIFY(parent.ranges.isEmpty());
    QCOMPARE(parent.finishes, 0);
}

void tst_CSubProgress::coversTheSpanInEveryPass()
{
    RecordingProgress parent;
    CSubProgress sub(&parent, 40);
    for (int pass = 1; pass <= 3; ++pass) {
        sub.initRange(7);
        QVERIFY(sub.progress(3));
        QVERIFY(sub.finish());
        QCOMPARE(parent.sum, 40.0 * pass);
    }
}

void tst_CSubProgress::staysCancelled()
{
    RecordingProgress parent;
    parent.stopAtCall = 2;
    CSubProgress sub(&parent, 40);
    sub.initRange(10);
    QVERIFY(sub.progress(1));
    QVERIFY(!sub.progress(1));
    const auto calls = parent.deltas.size();
    parent.stopAtCall = 1000; // even when the parent changes its mind
    QVERIFY(!sub.progress(1));
    QVERIFY(!sub.finish());
    sub.initRange(10);
    QVERIFY(!sub.progress(1));
    QVERIFY(!sub.finish());
    QCOMPARE(parent.deltas.size(), calls);
}

void tst_CSubProgress::worksWithoutAParent()
{
    CSubProgress sub(nullptr, 40);
    sub.initRange(10);
    QVERIFY(sub.progress(4));
    QVERIFY(sub.finish());
}

QTEST_GUILESS_MAIN(tst_CSubProgress)
#include "tst_CSubProgress.moc"
