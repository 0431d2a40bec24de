#ifndef TESTS_SUPPORT_GOLDEN_H
#define TESTS_SUPPORT_GOLDEN_H

#include "support/Files.h"

#include <QDir>
#include <QtTest>

/*!
    Expected bytes that lie in folders: tests/golden/<what>/<case>/. A new case is a new folder.

    With UPDATE_GOLDEN=1 in the environment the files are written anew and the test skips, so that
    a rewrite never passes.
*/
namespace Golden {

inline QString folder(const QString &what)
{
    return QStringLiteral(TEST_SOURCE_DIR "/golden/") + what;
}

//! Adds a row for every case of \a what, with the column "folder".
inline void addRows(const QString &what)
{
    QTest::addColumn<QString>("folder");
    const QDir root(folder(what));
    const QStringList cases = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    if (cases.isEmpty())
        qFatal("There are no cases in %s", qPrintable(root.path()));
    for (const QString &name : cases)
        QTest::newRow(qPrintable(name)) << root.filePath(name);
}

inline bool isUpdating()
{
    return qEnvironmentVariableIntValue("UPDATE_GOLDEN") == 1;
}

//! The first line that differs, with both readings; empty when the bytes are the same.
inline QByteArray difference(const QByteArray &actual, const QByteArray &expected)
{
    if (actual == expected)
        return {};
    const QList<QByteArray> actualLines = actual.split('\n');
    const QList<QByteArray> expectedLines = expected.split('\n');
    qsizetype line = 0;
    while (line < actualLines.size() && line < expectedLines.size()
           && actualLines[line] == expectedLines[line])
        ++line;
    return "line " + QByteArray::number(line + 1) + "\n  actual:   " + actualLines.value(line)
        + "\n  expected: " + expectedLines.value(line);
}

} // namespace Golden

//! Compares \a actual with the golden file \a path, or rewrites that.
#define COMPARE_GOLDEN(actual, path)                                                  \
    do {                                                                              \
        const QByteArray goldenActual = (actual);                                     \
        const QString goldenPath = (path);                                            \
        if (Golden::isUpdating()) {                                                   \
            QVERIFY2(Files::write(goldenPath, goldenActual), qPrintable(goldenPath)); \
            QSKIP("The golden file was written anew.");                               \
        }                                                                             \
        QVERIFY2(QFileInfo::exists(goldenPath), qPrintable(goldenPath));              \
        const QByteArray goldenDifference =                                           \
            Golden::difference(goldenActual, Files::read(goldenPath));                \
        QVERIFY2(goldenDifference.isEmpty(),                                          \
                 (goldenPath.toUtf8() + ", " + goldenDifference).constData());        \
    } while (false)

#endif
