// What messages cost: the page, the CSV file, and the thumbnails of a camera's pictures.
// bench_messages [MESSAGES CONVERSATIONS], as a rule 1000000 2000
#include "bench/Usage.h"
#include "export/CHtmlExporter.h"
#include "export/CPlainFileExporter.h"
#include "message/BkSMSChat.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSData.h"
#include "message/BkSMSItem.h"
#include "message/BkSMSPiece.h"
#include "message/CSMS2CSVTranslate.h"
#include "message/CSMS2HtmlTranslate.h"
#include "sample/HeicEncoder.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <memory>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

class BenchPiece : public BkSMSPiece
{
public:
    const QString &pieceType() const override { return type; }
    const QByteArray &pieceData() const override { return data; }
    const QString &pieceLocation() const override { return type; }

    QString type = u"image/jpeg"_s;
    QByteArray data;
};

class BenchChat : public BkSMSChat
{
public:
    bool isFromMe() const override { return number % 2 == 0; }
    bool isSentDone() const override { return number % 50 != 0; }
    bool isNormalSMS() const override { return number / 40 % 2 == 0; }
    QDateTime msgDate() const override { return date; }
    const QString &addr() const override { return address; }
    const QString &subject() const override { return none; }
    const QString &content() const override { return text; }
    const QList<BkSMSPiece *> &pieces() const override { return parts; }

    int number = 0;
    QDateTime date;
    QString address = u"+1 555 0100"_s;
    QString none;
    QString text;
    QList<BkSMSPiece *> parts;
};

class BenchItem : public BkSMSItem, public BkSMSChatGroup
{
public:
    QString value(int index) const override
    {
        return index == 0 ? u"Anna Smith"_s : index == 1 ? u"+1 555 0100"_s : QString();
    }
    bool flag(int /*index*/) const override { return false; }
    BkSMSChatGroup *detailContent() const override { return const_cast<BenchItem *>(this); }
    const QList<BkSMSChat *> &chats() const override { return messages; }
    const QMap<QString, QString> &addrIds() const override { return members; }

    QList<BkSMSChat *> messages;
    QMap<QString, QString> members;
};

// Holds one conversation, which it fills anew for every index, as a reader with bounded memory
// does.
class BenchData : public BkSMSData
{
public:
    BenchData(int messages, int conversations)
        : m_conversations(conversations)
    {
        for (int i = 0; i < messages / conversations; ++i) {
            m_chats.push_back(std::make_unique<BenchChat>());
            m_item.messages.append(m_chats.back().get());
        }
        for (int words = 1; words <= 24; ++words)
            m_texts.append(u"It's a text of <some> words, "_s.repeated(words / 4)
                           + u"is it not?"_s);
    }
    int dataType() const override { return 6; }
    int recoverCount() const override { return m_conversations; }
    QList<int> recoverList() const override
    {
        QList<int> all(m_conversations);
        for (int i = 0; i < m_conversations; ++i)
            all[i] = i;
        return all;
    }
    BkAbstractItem *at(int index, bool /*original*/) const override
    {
        int number = 0;
        for (const auto &chat : m_chats) {
            const qint64 minute = index * 7LL + number * 13LL;
            chat->number = number++;
            chat->date = QDateTime::fromMSecsSinceEpoch(1400000000000 + minute * 60000, Qt::UTC);
            chat->text = m_texts.at(number % m_texts.size());
        }
        return const_cast<BenchItem *>(&m_item);
    }
    int count(int /*kind*/) const override { return m_conversations; }
    bool recover(BkAbstractItem * /*item*/) const override { return true; }

    void showPicture(BkSMSPiece *piece)
    {
        for (const auto &chat : m_chats)
            chat->parts = { piece };
    }

private:
    int m_conversations;
    std::vector<std::unique_ptr<BenchChat>> m_chats;
    QStringList m_texts;
    BenchItem m_item;
};

template <class Sink, class Translator>
double run(BenchData &data, Sink &sink)
{
    const QTemporaryDir dir;
    const double start = Bench::cpuSeconds();
    bool ok = sink.initExporter(QDir(dir.path()), u"Ann"_s, u"Messages"_s);
    Translator translator(&data);
    ok = ok && translator.translate(&sink, u"Ann's Messages"_s, nullptr);
    sink.finish(ok);
    if (!ok)
        std::puts("failed");
    return Bench::cpuSeconds() - start;
}

double runPage(BenchData &data)
{
    CHtmlExporter sink;
    return run<CHtmlExporter, CSMS2HtmlTranslate>(data, sink);
}

double runCsv(BenchData &data)
{
    CPlainFileExporter sink(u".csv"_s, false);
    sink.setCodec(u"UTF16"_s, true);
    return run<CPlainFileExporter, CSMS2CSVTranslate>(data, sink);
}

// 4032 by 3024 pixels with the fine grain of a photograph, on which the decoder's work depends.
QImage photograph()
{
    constexpr int kWidth = 4032;
    constexpr int kHeight = 3024;
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    std::minstd_rand random(1);
    for (int y = 0; y < kHeight; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < kWidth; ++x) {
            const int grain = static_cast<int>(random() % 12);
            const int red = 120 + static_cast<int>(100 * std::sin(x / 90.0)) + grain;
            const int green = 120 + static_cast<int>(100 * std::sin(y / 70.0)) + grain;
            line[x] = qRgb(red, green, (x + y) % 240 + grain);
        }
    }
    return image;
}

QByteArray jpegOf(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG", 90);
    return buffer.data();
}

void benchPicture(const char *what, const QByteArray &picture)
{
    constexpr int kPictures = 20;
    BenchPiece piece;
    piece.data = picture;
    BenchData data(kPictures, 1);
    data.showPicture(&piece);
    const double seconds = runPage(data);
    std::printf("thumbnail of a 12-megapixel %s (%.1f MB): %.1f ms, peak %.0f MB\n",
                what,
                static_cast<double>(piece.data.size()) / 1e6,
                seconds * 1000 / kPictures,
                Bench::peakMemoryMb());
}

void benchPictures()
{
    const QImage image = photograph();
    benchPicture("JPEG", jpegOf(image));
    benchPicture("HEIC with a smaller version", Sample::encodeHeic(image));
    Sample::HeicTraits alone;
    alone.thumbnailPx = 0;
    benchPicture("HEIC without one", Sample::encodeHeic(image, alone));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::addLibraryPath(QStringLiteral(DATAEXPORT_BUILD_PLUGINS));
    const int messages = argc == 3 ? std::atoi(argv[1]) : 1000000;
    const int conversations = argc == 3 ? std::atoi(argv[2]) : 2000;
    if (conversations < 1 || messages < conversations) {
        std::fputs("usage: bench_messages [MESSAGES CONVERSATIONS]\n", stderr);
        return 2;
    }
    BenchData data(messages, conversations);
    const double page = runPage(data);
    const double csv = runCsv(data);
    std::printf(
        "%d messages in %d conversations: page %.2f s (%.2f us each), CSV %.2f s, peak %.0f MB\n",
        messages,
        conversations,
        page,
        page * 1e6 / messages,
        csv,
        Bench::peakMemoryMb());
    benchPictures();
    return 0;
}
