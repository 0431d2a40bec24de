// File export against `cp -r` of the same files on the same disk, in pairs.
// Usage: bench_files FOLDER [COUNT [SIZE [PAIRS]]]; FOLDER is made and removed, and lies on the
// disk to be measured.
#include "backup/BkData.h"
#include "backup/BkFileItem.h"
#include "backup/CBackupExporter.h"
#include "bench/Usage.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTextStream>

#include <algorithm>
#include <functional>
#include <memory>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

class Group : public BkAbstractItem
{
public:
    explicit Group(QString name)
        : m_name(std::move(name))
    {
    }
    QString value(int /*index*/) const override { return m_name; }
    bool flag(int /*index*/) const override { return false; }

private:
    QString m_name;
};

class File : public BkFileItem
{
public:
    File(QString path, QString name, Group *group)
        : m_path(std::move(path))
        , m_name(std::move(name))
        , m_group(group)
    {
    }
    QString value(int /*index*/) const override { return m_name; }
    bool flag(int /*index*/) const override { return false; }
    QByteArray fileData() const override { return {}; }
    QString filePath() const override { return m_path; }
    QDateTime fileDate() const override { return m_date; }
    BkAbstractItem *groupItem() const override { return m_group; }

private:
    QString m_path;
    QString m_name;
    Group *m_group;
    QDateTime m_date = QDateTime::fromSecsSinceEpoch(1600000000, Qt::UTC);
};

class Files : public BkData
{
public:
    int dataType() const override { return 0; }
    int recoverCount() const override { return static_cast<int>(items.size()); }
    QList<int> recoverList() const override { return {}; }
    BkAbstractItem *at(int index, bool /*original*/) const override { return items.value(index); }
    int count(int /*kind*/) const override { return recoverCount(); }
    bool recover(BkAbstractItem * /*item*/) const override { return true; }
    QList<BkAbstractItem *> recoverFileList() const override { return items; }

    QList<BkAbstractItem *> items;
    std::vector<std::unique_ptr<BkAbstractItem>> owned;
};

// Files in 256 folders, as a backup keeps them, and in groups of a thousand, as a phone does.
bool makeFiles(const QString &root, int count, qint64 size, Files &files)
{
    QByteArray content(size, Qt::Uninitialized);
    for (qint64 i = 0; i < size; ++i)
        content[i] = static_cast<char>(i * 7919 >> 3);
    Group *group = nullptr;
    for (int i = 0; i < count; ++i) {
        const QString folder = u"%1/%2"_s.arg(root).arg(i % 256, 2, 16, QLatin1Char('0'));
        const QString path = u"%1/%2"_s.arg(folder).arg(i, 40, 16, QLatin1Char('0'));
        QDir().mkpath(folder);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != size)
            return false;
        if (i % 1000 == 0) {
            auto made = std::make_unique<Group>(u"%1APPLE"_s.arg(100 + i / 1000));
            group = made.get();
            files.owned.push_back(std::move(made));
        }
        files.owned.push_back(std::make_unique<File>(
            path, u"IMG_%1.JPG"_s.arg(i % 1000, 4, 10, QLatin1Char('0')), group));
        files.items.append(files.owned.back().get());
    }
    return true;
}

using Copy = std::function<bool(const QString &)>;

struct Cost
{
    double wallSeconds = -1; // negative: the copy failed
    double cpuSeconds = 0;
};

Cost measured(const QString &target, const Copy &copy)
{
    const auto cpu = [] {
        return Bench::cpuSeconds(RUSAGE_SELF) + Bench::cpuSeconds(RUSAGE_CHILDREN);
    };
    ::sync(); // what the run before left to write is not this run's to pay for
    Cost cost;
    const double cpuBefore = cpu();
    QElapsedTimer timer;
    timer.start();
    if (copy(target))
        cost.wallSeconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    cost.cpuSeconds = cpu() - cpuBefore;
    QDir(target).removeRecursively();
    return cost;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    QTextStream out(stdout);
    if (arguments.size() < 2) {
        out << "Usage: bench_files FOLDER [COUNT [SIZE [PAIRS]]]\n";
        return 2;
    }
    const QString folder = arguments[1];
    const int count = arguments.value(2, u"2000"_s).toInt();
    const qint64 size = arguments.value(3, u"2500000"_s).toLongLong();
    const int pairs = arguments.value(4, u"5"_s).toInt();
    if (QDir(folder).exists()) {
        out << folder << " exists; name a folder that is not there yet.\n";
        return 2;
    }

    Files files;
    const QString source = folder + "/source"_L1;
    if (!makeFiles(source, count, size, files)) {
        out << "The files to copy could not be made.\n";
        QDir(folder).removeRecursively();
        return 1;
    }
    const Copy ours = [&files](const QString &target) {
        return QDir().mkpath(target)
            && CBackupExporter::exportFile(
                   &files, QDir(target), u"Ann"_s, u"Photos"_s, nullptr, nullptr);
    };
    const Copy theirs = [&source](const QString &target) {
        return QProcess::execute(u"cp"_s, { u"-r"_s, source, target }) == 0;
    };
    std::vector<double> wallRatios;
    std::vector<double> cpuRatios;
    out << "pair: export s (cpu), cp -r s (cpu), ratio\n";
    for (int pair = 0; pair < pairs; ++pair) {
        const bool oursFirst = pair % 2 == 0;
        Cost exported = measured(folder + "/first"_L1, oursFirst ? ours : theirs);
        Cost cp = measured(folder + "/second"_L1, oursFirst ? theirs : ours);
        if (!oursFirst)
            std::swap(exported, cp);
        if (exported.wallSeconds < 0 || cp.wallSeconds < 0) {
            out << "A copy failed.\n";
            QDir(folder).removeRecursively();
            return 1;
        }
        wallRatios.push_back(exported.wallSeconds / cp.wallSeconds);
        cpuRatios.push_back(exported.cpuSeconds / cp.cpuSeconds);
        out << pair << ": " << exported.wallSeconds << " (" << exported.cpuSeconds << "), "
            << cp.wallSeconds << " (" << cp.cpuSeconds << "), " << wallRatios.back() << Qt::endl;
    }
    out << count << " files of " << size << " bytes: median ratio " << median(wallRatios)
        << " of wall time, " << median(cpuRatios) << " of processor time; peak memory "
        << Bench::peakMemoryMb() << " MB\n";
    QDir(folder).removeRecursively();
    return 0;
}
