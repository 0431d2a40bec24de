// An application with an item model of its own: a few files, held in memory, are its "backup".
// Usage: own-item-model OUTPUT
#include <QCoreApplication>
#include <QDir>

#include <backup/BkBackup.h>
#include <backup/BkData.h>
#include <backup/BkDataType.h>
#include <backup/BkFileItem.h>
#include <backup/CBackupExporter.h>
#include <cstdio>
#include <export/CIExportReport.h>
#include <memory>
#include <vector>

namespace {

class Trip : public BkAbstractItem
{
public:
    QString value(int index) const override
    {
        return index == 0 ? QStringLiteral("Sailing") : QString();
    }
    bool flag(int) const override { return false; }
};

class Picture : public BkFileItem
{
public:
    Picture(QString name, QByteArray bytes, BkAbstractItem *trip)
        : m_name(std::move(name))
        , m_bytes(std::move(bytes))
        , m_trip(trip)
    {
    }
    QString value(int index) const override { return index == 0 ? m_name : QString(); }
    bool flag(int) const override { return false; }
    QByteArray fileData() const override { return m_bytes; }
    QString filePath() const override { return QStringLiteral("/not/there/") + m_name; }
    BkAbstractItem *groupItem() const override { return m_trip; }

private:
    QString m_name;
    QByteArray m_bytes;
    BkAbstractItem *m_trip;
};

class Pictures : public BkData
{
public:
    Pictures()
    {
        m_items.push_back(std::make_unique<Picture>(QStringLiteral("boat.txt"), "a boat", &m_trip));
        m_items.push_back(
            std::make_unique<Picture>(QStringLiteral("boat.txt"), "another", &m_trip));
        m_items.push_back(std::make_unique<Picture>(QStringLiteral("lost.txt"), "", nullptr));
    }
    int dataType() const override { return BkDataType::Photos; }
    int recoverCount() const override { return count(1); }
    QList<int> recoverList() const override { return { 0, 1, 2 }; }
    BkAbstractItem *at(int index, bool) const override
    {
        return m_items[static_cast<std::size_t>(index)].get();
    }
    int count(int) const override { return static_cast<int>(m_items.size()); }
    bool recover(BkAbstractItem *) const override { return true; }
    QList<BkAbstractItem *> recoverFileList() const override
    {
        QList<BkAbstractItem *> list;
        for (const auto &item : m_items)
            list.append(item.get());
        return list;
    }

private:
    Trip m_trip;
    std::vector<std::unique_ptr<Picture>> m_items;
};

class Album : public BkBackup
{
public:
    BkData *getBkData(int code) const override
    {
        return code == BkDataType::Photos ? &m_pictures : nullptr;
    }
    QString dataTypeName(int) const override { return QStringLiteral("Photos"); }
    QString backupProperty(int) const override { return QStringLiteral("Ann's phone"); }

private:
    mutable Pictures m_pictures;
};

class PrintedReport : public CIExportReport
{
public:
    void itemFailed(const QString &type, const QString &item, const Fault &fault) override
    {
        std::printf("%s, %s: %s\n", qPrintable(type), qPrintable(item), qPrintable(fault.reason));
    }
    void itemExported(const QString &type, const QString &item) override
    {
        std::printf("%s, %s\n", qPrintable(type), qPrintable(item));
    }
};

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QString output = application.arguments().value(1, QStringLiteral("."));

    Album album;
    PrintedReport report;
    CBackupExporter exporter;
    exporter.setReport(&report);
    exporter.exportBackup(&album, QDir(output), nullptr);
    return 0;
}
