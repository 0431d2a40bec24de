// What the messages of a backup cost, from the database to the page and the CSV file.
// bench_export BACKUP: each pass is repeated until it has taken long enough to be told apart.
#include "PhoneItems/Backup.h"
#include "backup/BkDataType.h"
#include "bench/Usage.h"
#include "export/CHtmlExporter.h"
#include "export/CPlainFileExporter.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSData.h"
#include "message/BkSMSItem.h"
#include "message/CSMS2CSVTranslate.h"
#include "message/CSMS2HtmlTranslate.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr double kLongEnoughSeconds = 3;
constexpr int kFewestRuns = 3;

//! Processor time of the quickest of several runs: what is above it is not ours.
double seconds(const std::function<bool()> &pass)
{
    double best = -1;
    const double begin = Bench::cpuSeconds();
    for (int runs = 0; runs < kFewestRuns || Bench::cpuSeconds() - begin < kLongEnoughSeconds;
         ++runs) {
        const double start = Bench::cpuSeconds();
        if (!pass()) {
            std::fputs("A pass failed.\n", stderr);
            return -1;
        }
        const double taken = Bench::cpuSeconds() - start;
        best = best < 0 ? taken : std::min(best, taken);
    }
    return best;
}

template <class Sink, class Translator>
bool write(BkSMSData &data, Sink &sink)
{
    const QTemporaryDir dir;
    Translator translator(&data);
    bool ok = sink.initExporter(QDir(dir.path()), u"Ann"_s, u"Messages"_s);
    ok = ok && translator.translate(&sink, u"Ann's Messages"_s, nullptr);
    return sink.finish(ok) && ok;
}

bool writePage(BkSMSData &data)
{
    CHtmlExporter sink;
    sink.setHardened(true);
    sink.setStyle(CSMS2HtmlTranslate(&data).smsStyle());
    return write<CHtmlExporter, CSMS2HtmlTranslate>(data, sink);
}

bool writeCsv(BkSMSData &data)
{
    CPlainFileExporter sink(u".csv"_s, false);
    sink.setCodec(u"UTF16"_s, true);
    return write<CPlainFileExporter, CSMS2CSVTranslate>(data, sink);
}

qint64 readAll(const BkSMSData &data)
{
    qint64 messages = 0;
    const QList<int> indices = data.recoverList();
    for (const int index : indices) {
        const auto *item = dynamic_cast<BkSMSItem *>(data.at(index, true));
        const BkSMSChatGroup *group = item ? item->detailContent() : nullptr;
        messages += group ? group->chats().size() : 0;
    }
    return messages;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: bench_export BACKUP\n", stderr);
        return 2;
    }
    const double start = Bench::cpuSeconds();
    auto opened = PhoneItems::Backup::open(QString::fromLocal8Bit(argv[1]));
    if (!opened) {
        std::fputs("The backup cannot be opened.\n", stderr);
        return 1;
    }
    const auto backup = opened.take();
    auto *data = dynamic_cast<BkSMSData *>(backup->getBkData(BkDataType::Messages));
    if (!data) {
        std::fputs("There are no messages in the backup.\n", stderr);
        return 1;
    }
    const double listed = Bench::cpuSeconds() - start;

    qint64 messages = 0;
    const double page = seconds([&] { return writePage(*data); });
    const double peakOfPage = Bench::peakMemoryMb();
    const double csv = seconds([&] { return writeCsv(*data); });
    const double read = seconds([&] { return (messages = readAll(*data)) > 0; });
    if (page < 0 || csv < 0 || read < 0)
        return 1;
    const auto each = [messages](double all) { return all * 1e6 / static_cast<double>(messages); };
    std::printf("%lld messages in %d conversations\n"
                "list        %6.2f s  %5.2f us each\n"
                "read        %6.2f s  %5.2f us each\n"
                "page        %6.2f s  %5.2f us each, reading included; peak %.0f MB\n"
                "CSV         %6.2f s  %5.2f us each, reading included; peak %.0f MB\n"
                "together    %6.2f s  %5.2f us each\n",
                static_cast<long long>(messages),
                data->recoverCount(),
                listed,
                each(listed),
                read,
                each(read),
                page,
                each(page),
                peakOfPage,
                csv,
                each(csv),
                Bench::peakMemoryMb(),
                listed + page + csv,
                each(listed + page + csv));
    return 0;
}
