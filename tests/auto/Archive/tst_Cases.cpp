#include "Archive/records/RecordJson.h"
#include "Archive/records/RecordReader.h"
#include "CaseItems.h"
#include "CaseSql.h"
#include "support/CaseFile.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

// The files of a backup by their paths there.
class OwnNames final : public Archive::FileNames
{
public:
    explicit OwnNames(const PhoneBackup::FileIndex &index)
        : m_index(index)
    {
    }

    QString nameOf(PhoneBackup::FileIndex::Row row) const override
    {
        return QString::fromUtf8(m_index.path(row));
    }

private:
    const PhoneBackup::FileIndex &m_index;
};

QByteArrayList recordsOf(PhoneBackup::Source &source, const QString &name)
{
    const Archive::RecordKind *kind = Archive::recordKind(name.toLatin1());
    if (!kind)
        return { "no records have this name" };
    QByteArrayList records;
    const OwnNames names(source.index());
    Archive::RecordJson json(names, [&](const Archive::JsonRecord &record) {
        const bool isJson = QJsonDocument::fromJson(record.line).isObject();
        records.append(isJson ? record.line : "no JSON: " + record.line);
    });
    kind->read(source, json);
    return records;
}

} // namespace

class tst_Cases : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void reads_data() { CaseFile::addRows(); }
    void reads();
};

void tst_Cases::initTestCase()
{
    qputenv("TZ", "America/New_York"); // items tell local times
    ::tzset();
    QVERIFY(addCaseFunctions());
}

void tst_Cases::reads()
{
    QFETCH(QString, path);
    const QByteArray difference = CaseFile::difference(path, &recordsOf, &itemsOf);
    QVERIFY2(difference.isEmpty(), difference.constData());
}

QTEST_GUILESS_MAIN(tst_Cases)
#include "tst_Cases.moc"
