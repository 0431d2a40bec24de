#include "PhoneItems/shared/TableData.h"

#include <QtTest>

using namespace PhoneItems;
using namespace Qt::StringLiterals;

class tst_TableData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsCells_data();
    void keepsCells();
    void ordersTheNewestFirst();
    void knowsItsItems();
};

void tst_TableData::keepsCells_data()
{
    QTest::addColumn<QStringList>("cells");

    QTest::newRow("texts") << QStringList { u"a"_s, u"b c"_s, u"d"_s };
    QTest::newRow("empty ones") << QStringList { {}, {}, {} };
    QTest::newRow("one at the end") << QStringList { {}, {}, u"x"_s };
    QTest::newRow("of any script") << QStringList { u"Ж\n"_s, u"😀"_s, u"\u00FE\u00FF\uFFFF"_s };
    QTest::newRow("with nulls") << QStringList { u"a\0b"_s, u"\0"_s, u"c"_s };
    QTest::newRow("too few") << QStringList { u"a"_s };
    QTest::newRow("none") << QStringList();
}

void tst_TableData::keepsCells()
{
    QFETCH(QStringList, cells);

    TableData data(9, { u"A"_s, u"B"_s, u"C"_s });
    const Row other { { u"x"_s, u"y"_s, u"z"_s }, {}, -1, false };
    data.add(other);
    data.add({ cells, {}, 7, true });
    data.add(other);
    for (int column = 0; column < 3; ++column) {
        QCOMPARE(data.value(0, column), other.cells[column]);
        QCOMPARE(data.value(1, column), cells.value(column));
        QCOMPARE(data.at(1, true)->value(column), cells.value(column));
        QCOMPARE(data.value(2, column), other.cells[column]);
    }
    QCOMPARE(data.value(1, 3), QString());
    QVERIFY(data.at(1, true)->flag(0) && !data.at(1, true)->flag(1) && !data.at(2, true)->flag(0));
    QCOMPARE(data.at(1, true)->id(), 7);
}

void tst_TableData::ordersTheNewestFirst()
{
    TableData data(9, { u"A"_s });
    const QDateTime day(QDate(2020, 1, 2), QTime(3, 4), Qt::UTC);
    data.add({ { u"none"_s }, {}, -1, false });
    data.add({ { u"old"_s }, day.addYears(-60), -1, false });
    data.add({ { u"new"_s }, day, -1, false });
    data.add({ { u"as new"_s }, day, -1, false });
    data.sortNewestFirst();
    QStringList order;
    for (const int index : data.recoverList())
        order.append(data.value(index, 0));
    QCOMPARE(order.join(u'|'), u"new|as new|old|none"_s);
    QCOMPARE(data.at(0, true)->date(), day);
    QVERIFY(!data.at(3, true)->date().isValid());
}

void tst_TableData::knowsItsItems()
{
    TableData data(14, { u"A"_s });
    TableData other(14, { u"A"_s });
    data.add({});
    other.add({});
    QCOMPARE(data.dataType(), 14);
    QCOMPARE(data.count(1), 1);
    QVERIFY(data.recover(data.at(0, true)) && !data.recover(other.at(0, true)));
    QVERIFY(!data.recover(nullptr) && !data.at(1, true) && !data.at(-1, true));
}

QTEST_GUILESS_MAIN(tst_TableData)
#include "tst_TableData.moc"
