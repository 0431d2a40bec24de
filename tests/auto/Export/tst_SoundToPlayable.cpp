#include "Export/SoundToPlayable/SoundToPlayable.h"

#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <bit>

using namespace Qt::StringLiterals;
using namespace Export;

namespace {

template <class Number>
QByteArray big(Number number)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray chunk(const char *type, const QByteArray &content)
{
    return type + big(qint64(content.size())) + content;
}

struct Coding
{
    const char *codec;
    quint32 flags = 0;
    quint32 bytesPerPacket = 1;
    quint32 framesPerPacket = 1;
    quint32 bits = 8;
};

QByteArray caf(const Coding &coding, const QByteArray &sound, const QByteArray &more = {})
{
    return "caff" + big(quint16(1)) + big(quint16(0))
        + chunk("desc",
                big(std::bit_cast<quint64>(8000.0)) + coding.codec + big(coding.flags)
                    + big(coding.bytesPerPacket) + big(coding.framesPerPacket) + big(quint32(1))
                    + big(coding.bits))
        + more + chunk("data", QByteArray(4, '\0') + sound);
}

QByteArray packetTable(const QByteArray &sizes)
{
    return chunk("pakt", big(qint64(sizes.size())) + big(qint64(-1)) + big(qint64(0)) + sizes);
}

// Two octets of configuration: low complexity, 8,000 per second, one channel.
QByteArray aacCookie()
{
    return chunk("kuki",
                 QByteArray::fromHex("0380808022000000048080801440150018000000000000000000"
                                     "05808080021588060102"));
}

QByteArray amr(int frames)
{
    QByteArray file("#!AMR\n");
    for (int i = 0; i < frames; ++i)
        file += QByteArray("\x3C", 1) + QByteArray(31, '\x55');
    return file;
}

} // namespace

class tst_SoundToPlayable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void converts_data();
    void converts();
    void survivesDamage_data() { converts_data(); }
    void survivesDamage();

private:
    SoundToPlayable::Conversion convert(const QByteArray &file) const;

    QTemporaryDir m_temp;
};

SoundToPlayable::Conversion tst_SoundToPlayable::convert(const QByteArray &file) const
{
    QFile out(m_temp.filePath(u"sound"_s));
    if (!out.open(QIODevice::WriteOnly) || out.write(file) != file.size())
        return {};
    out.close();
    return SoundToPlayable::convert(out.fileName());
}

void tst_SoundToPlayable::converts_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QByteArray>("content"); // the end of the result
    const auto row =
        [](const char *name, const QByteArray &file, const char *extension, const char *content) {
            QTest::newRow(name) << file << QString::fromLatin1(extension)
                                << QByteArray::fromHex(content);
        };
    // The largest, the smallest and the middle of G.711 on both sides.
    row("mu-law", caf({ "ulaw" }, QByteArray::fromHex("00807fff")), ".wav", "8482 7c7d 0000 0000");
    row("A-law", caf({ "alaw" }, QByteArray::fromHex("2aaa55d5")), ".wav", "0082 007e f8ff 0800");
    row("16 bits, little",
        caf({ "lpcm", 2, 2, 1, 16 }, QByteArray::fromHex("0180ff7f")),
        ".wav",
        "0180 ff7f");
    row("16 bits, big",
        caf({ "lpcm", 0, 2, 1, 16 }, QByteArray::fromHex("80017fff")),
        ".wav",
        "0180 ff7f");
    row("24 bits", caf({ "lpcm", 2, 3, 1, 24 }, QByteArray::fromHex("990180")), ".wav", "0180");
    row("floats",
        caf({ "lpcm", 1, 4, 1, 32 }, QByteArray::fromHex("3f800000bf8000007fc00000")),
        ".wav",
        "ff7f 0180 0000");
    // The rate is 11 of the standard's list; a frame is 7 bytes longer than its packet.
    row("AAC",
        caf({ "aac ", 0, 0, 1024, 0 }, "ab", packetTable("\x02") + aacCookie()),
        ".aac",
        "fff1 6c40 013f fc 6162");
    row("Opus", caf({ "opus", 0, 0, 160, 0 }, "abc", packetTable("\x03")), ".ogg", "01 03 616263");
    row("AMR in CAF", caf({ "samr", 0, 32, 160, 0 }, amr(2).sliced(6)), ".wav", "");
    row("AMR", amr(3), ".wav", "");
    QTest::newRow("not known") << caf({ "xyz " }, "abc") << QString() << QByteArray();
    QTest::newRow("no frames") << QByteArray("#!AMR\n") << QString() << QByteArray();
}

void tst_SoundToPlayable::converts()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, extension);
    QFETCH(QByteArray, content);
    const SoundToPlayable::Conversion made = convert(file);
    QVERIFY(SoundToPlayable::isWanted(m_temp.filePath(u"sound"_s)));
    QCOMPARE(made.extension, extension);
    QCOMPARE(made.why.isEmpty(), !extension.isEmpty());
    QVERIFY2(made.sound.endsWith(content), made.sound.toHex(' ').constData());
    if (extension == ".wav"_L1) {
        QCOMPARE(made.sound.size(),
                 44 + qint64(qFromLittleEndian<quint32>(made.sound.constData() + 40)));
        QVERIFY(made.sound.size() > 44);
    }
    if (file.startsWith("#!AMR\n<"))
        QCOMPARE(made.sound.size(), 44 + 3 * 160 * 2); // 20 ms a frame
}

// Cut anywhere, and with every byte another.
void tst_SoundToPlayable::survivesDamage()
{
    QFETCH(QByteArray, file);
    qsizetype longest = 0;
    for (qsizetype size = 0; size < file.size(); ++size) {
        longest = std::max(longest, convert(file.first(size)).sound.size());
        for (const char change : { '\x01', '\x80', '\xFF' }) {
            QByteArray changed = file;
            changed[size] = char(changed[size] ^ change);
            longest = std::max(longest, convert(changed).sound.size());
        }
    }
    QVERIFY(longest < 100'000);
}

QTEST_GUILESS_MAIN(tst_SoundToPlayable)
#include "tst_SoundToPlayable.moc"
