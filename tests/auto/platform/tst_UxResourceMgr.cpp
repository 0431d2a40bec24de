#include "platform/UxResourceMgr.h"

#include <QFileInfo>
#include <QtTest>

using namespace Qt::StringLiterals;

class tst_UxResourceMgr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesTheFirstRootThatIsKnown();
};

void tst_UxResourceMgr::takesTheFirstRootThatIsKnown()
{
    qunsetenv("DATAEXPORT_RESOURCE_ROOT");
    UxResourceMgr *manager = UxResourceMgr::instance();
    QCOMPARE(UxResourceMgr::instance(), manager);
    const QString ofTheBuild = manager->productResourceRoot();
    QVERIFY2(QFileInfo(ofTheBuild).isDir(), qPrintable(ofTheBuild));

    qputenv("DATAEXPORT_RESOURCE_ROOT", "/from/the/environment");
    QCOMPARE(manager->productResourceRoot(), u"/from/the/environment"_s);
    manager->setProductResourceRoot(u"/from/the/application"_s);
    QCOMPARE(manager->productResourceRoot(), u"/from/the/application"_s);

    manager->setProductResourceRoot(QString());
    QCOMPARE(manager->productResourceRoot(), u"/from/the/environment"_s);
    qunsetenv("DATAEXPORT_RESOURCE_ROOT");
    QCOMPARE(manager->productResourceRoot(), ofTheBuild);
}

QTEST_GUILESS_MAIN(tst_UxResourceMgr)
#include "tst_UxResourceMgr.moc"
