#include "PhoneBackup/crypto/ClassKeys.h"
#include "PhoneBackup/crypto/DecryptedFile.h"
#include "PhoneBackup/crypto/KeyDerivation.h"
#include "PhoneBackup/crypto/KeyWrap.h"
#include "PhoneBackup/crypto/Keybag.h"
#include "PhoneBackup/crypto/RecordKey.h"
#include "PhoneItems/words/Words.h"
#include "sample/Encryption.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QtTest>

#include <openssl/evp.h>

using namespace PhoneBackup;
using namespace Qt::StringLiterals;
using KeyDerivation::Digest;
using Sample::Encryption;

namespace {

Secret secret(const QByteArray &bytes)
{
    return Secret(QByteArrayView(bytes));
}

QByteArray entry(const char *tag, const QByteArray &value)
{
    return QByteArray(tag)
        + QByteArray::fromHex(QByteArray::number(value.size(), 16).rightJustified(8, '0')) + value;
}

Encryption::Settings quick(bool twoSteps = true)
{
    Encryption::Settings settings;
    settings.password = u"correct hörse"_s;
    settings.iterations = 10;
    settings.twoSteps = twoSteps;
    return settings;
}

Result<ClassKeys> unlock(const QByteArray &bag, const QString &password = quick().password)
{
    return Keybag::parse(bag).unlock(secret(password.toUtf8()), {});
}

// Whether the keys of \a bag open a key of \a protectionClass.
bool opens(const Result<ClassKeys> &keys, int protectionClass)
{
    const QByteArray key = Encryption::keyFor(u"a"_s);
    const auto unwrapped = keys.value().unwrap(Encryption(quick()).wrapped(key, protectionClass));
    return unwrapped && unwrapped.value().view() == QByteArrayView(key);
}

QByteArray plainBytes(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 31 >> 2);
    return bytes;
}

} // namespace

//! From a password to plain bytes, against published figures and the library's own functions.
class tst_Crypto : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void derivesPublishedKeys_data();
    void derivesPublishedKeys();
    void derivesWhatTheLibraryDerives_data();
    void derivesWhatTheLibraryDerives();
    void stopsDeriving();
    void unwrapsThePublishedKey();
    void refusesDamagedKeys_data();
    void refusesDamagedKeys();
    void opensKeybags_data();
    void opensKeybags();
    void tellsAWrongPassword();
    void refusesOddKeybags_data();
    void refusesOddKeybags();
    void survivesKeybagsCutAnywhere();
    void survivesDamagedKeybags();
    void reportsLockedClasses();
    void decryptsFiles_data();
    void decryptsFiles();
    void keepsWhatThereIsOfDamagedFiles_data();
    void keepsWhatThereIsOfDamagedFiles();
    void opensRecords();

private:
    QTemporaryDir m_dir;
};

void tst_Crypto::derivesPublishedKeys_data()
{
    QTest::addColumn<int>("digest");
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<QByteArray>("salt");
    QTest::addColumn<quint32>("iterations");
    QTest::addColumn<QByteArray>("begin");

    // RFC 6070
    const int sha1 = int(Digest::Sha1);
    QTest::newRow("SHA-1, 1") << sha1 << QByteArray("password") << QByteArray("salt") << 1U
                              << QByteArray("0c60c80f961f0e71f3a9b524af6012062fe037a6");
    QTest::newRow("SHA-1, 2") << sha1 << QByteArray("password") << QByteArray("salt") << 2U
                              << QByteArray("ea6c014dc72d6f8ccd1ed92ace1d41f0d8de8957");
    QTest::newRow("SHA-1, 4096") << sha1 << QByteArray("password") << QByteArray("salt") << 4096U
                                 << QByteArray("4b007901b765489abead49d926f721d065a429c1");
    QTest::newRow("SHA-1, longer than one block of the key")
        << sha1 << QByteArray("passwordPASSWORDpassword")
        << QByteArray("saltSALTsaltSALTsaltSALTsaltSALTsalt") << 4096U
        << QByteArray("3d2eec4fe41c849b80c8d83662c0e44a8b291a964cf2f07038");
    QTest::newRow("SHA-1, zero bytes")
        << sha1 << QByteArray("pass\0word", 9) << QByteArray("sa\0lt", 5) << 4096U
        << QByteArray("56fa6aa75548099dcc37d7f03425e0c3");
    // RFC 7914
    const int sha256 = int(Digest::Sha256);
    QTest::newRow("SHA-256, 1")
        << sha256 << QByteArray("passwd") << QByteArray("salt") << 1U
        << QByteArray("55ac046e56e3089fec1691c22544b605f94185216dde0465e68b9d57c20dacbc");
    QTest::newRow("SHA-256, 80000")
        << sha256 << QByteArray("Password") << QByteArray("NaCl") << 80000U
        << QByteArray("4ddcd8f60b98be21830cee5ef22701f9641a4418d04c0414aeff08876b34ab56");
}

void tst_Crypto::derivesPublishedKeys()
{
    QFETCH(int, digest);
    QFETCH(QByteArray, password);
    QFETCH(QByteArray, salt);
    QFETCH(quint32, iterations);
    QFETCH(QByteArray, begin);

    const Secret key = KeyDerivation::key(Digest(digest), password, salt, iterations, {});
    QCOMPARE(key.size(), KeyDerivation::kKeyBytes);
    QCOMPARE(key.view().toByteArray().toHex().first(begin.size()), begin);
}

void tst_Crypto::derivesWhatTheLibraryDerives_data()
{
    QTest::addColumn<qsizetype>("passwordSize");
    QTest::addColumn<qsizetype>("saltSize");
    for (const int password : { 0, 1, 20, 32, 63, 64, 65, 200 }) {
        for (const int salt : { 0, 20, 51, 52, 60, 64, 130 })
            QTest::addRow("%d, %d", password, salt) << qsizetype(password) << qsizetype(salt);
    }
}

void tst_Crypto::derivesWhatTheLibraryDerives()
{
    QFETCH(qsizetype, passwordSize);
    QFETCH(qsizetype, saltSize);
    const QByteArray password = plainBytes(passwordSize);
    const QByteArray salt = plainBytes(saltSize);
    for (const auto &[digest, theirs] :
         { std::pair(Digest::Sha1, EVP_sha1()), std::pair(Digest::Sha256, EVP_sha256()) }) {
        QByteArray expected(KeyDerivation::kKeyBytes, '\0');
        QCOMPARE(PKCS5_PBKDF2_HMAC(password.constData(),
                                   int(password.size()),
                                   reinterpret_cast<const uchar *>(salt.constData()),
                                   int(salt.size()),
                                   3,
                                   theirs,
                                   int(expected.size()),
                                   reinterpret_cast<uchar *>(expected.data())),
                 1);
        QCOMPARE(KeyDerivation::key(digest, password, salt, 3, {}).view().toByteArray(), expected);
    }
}

void tst_Crypto::stopsDeriving()
{
    constexpr quint32 kMany = 1000000000;
    int asked = 0;
    const auto progress = [&](qint64 rounds) { return rounds > 0 && ++asked < 3; };
    QVERIFY(KeyDerivation::key(Digest::Sha256, "p", "s", kMany, progress).isEmpty());
    QCOMPARE(asked, 3);

    // Told of all rounds, give or take those since it was asked last.
    qint64 told = 0;
    const auto count = [&told](qint64 rounds) {
        told += rounds;
        return true;
    };
    constexpr quint32 kSome = 400000;
    QVERIFY(!KeyDerivation::key(Digest::Sha1, "p", "s", kSome, count).isEmpty());
    QCOMPARE(KeyDerivation::roundsOf(Digest::Sha1, kSome), qint64(2) * kSome);
    QVERIFY(told <= 2 * kSome && told > 2 * kSome - 200000);
}

void tst_Crypto::unwrapsThePublishedKey()
{
    // RFC 3394, 4.6
    const QByteArray wrapping =
        QByteArray::fromHex("000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F");
    const QByteArray wrapped = QByteArray::fromHex(
        "28C9F404C4B810F4CBCCB35CFB87F8263F5786E2D80ED326CBC7F0E71A99F43BFB988B9B7A02DD21");
    QCOMPARE(KeyWrap::unwrap(secret(wrapping), wrapped).view().toByteArray().toHex().toUpper(),
             QByteArray("00112233445566778899AABBCCDDEEFF000102030405060708090A0B0C0D0E0F"));
}

void tst_Crypto::refusesDamagedKeys_data()
{
    QTest::addColumn<QByteArray>("wrapping");
    QTest::addColumn<QByteArray>("wrapped");
    const QByteArray wrapping(32, 'k');
    const QByteArray wrapped = QByteArray::fromHex(
        "28C9F404C4B810F4CBCCB35CFB87F8263F5786E2D80ED326CBC7F0E71A99F43BFB988B9B7A02DD21");
    QTest::newRow("another key") << wrapping << wrapped;
    QTest::newRow("short key") << wrapping.first(16) << wrapped;
    QTest::newRow("too short") << wrapping << wrapped.first(32);
    QTest::newRow("too long") << wrapping << wrapped + QByteArray(8, 'x');
    QTest::newRow("empty") << wrapping << QByteArray();
}

void tst_Crypto::refusesDamagedKeys()
{
    QFETCH(QByteArray, wrapping);
    QFETCH(QByteArray, wrapped);
    QVERIFY(KeyWrap::unwrap(secret(wrapping), wrapped).isEmpty());
}

void tst_Crypto::opensKeybags_data()
{
    QTest::addColumn<QByteArray>("bag");
    const QByteArray two = Encryption(quick()).keybag();
    const qsizetype firstRecord = two.indexOf("UUID", two.indexOf("UUID") + 4);
    QTest::newRow("two steps") << two;
    QTest::newRow("unknown tags") << entry("XXXX", "?") + two.first(firstRecord)
            + entry("NEWS", QByteArray(300, 'n')) + two.sliced(firstRecord) + entry("TAIL", "")
            + entry("SIGN", QByteArray(70, 's'));
    QTest::newRow("a class without a key")
        << two + entry("UUID", QByteArray(16, 'u')) + entry("CLAS", QByteArray("\0\0\0\3", 4));
    QTest::newRow("a class that only the phone opens") << two + entry("UUID", QByteArray(16, 'u'))
            + entry("CLAS", QByteArray("\0\0\0\3", 4)) + entry("WRAP", QByteArray("\0\0\0\1", 4))
            + entry("WPKY", QByteArray(40, 'w'));
    QTest::newRow("a damaged key of another class") << two + entry("UUID", QByteArray(16, 'u'))
            + entry("CLAS", QByteArray("\0\0\0\2", 4)) + entry("WRAP", QByteArray("\0\0\0\2", 4))
            + entry("WPKY", QByteArray(40, 'w'));
}

void tst_Crypto::opensKeybags()
{
    QFETCH(QByteArray, bag);
    QVERIFY(!Keybag::parse(bag).isCutOff());
    const auto keys = unlock(bag);
    QVERIFY2(keys, qPrintable(keys ? QString() : PhoneItems::words(keys.error().what)));
    QVERIFY(opens(keys, 3));
    QVERIFY(opens(keys, 4));
}

void tst_Crypto::tellsAWrongPassword()
{
    for (const bool twoSteps : { true, false }) {
        const QByteArray bag = Encryption(quick(twoSteps)).keybag();
        QVERIFY(unlock(bag));
        for (const QString &wrong : { u"correct horse"_s, u"Correct hörse"_s, u"x"_s })
            QCOMPARE(unlock(bag, wrong).error().fault, Fault::WrongPassword);
    }
}

void tst_Crypto::refusesOddKeybags_data()
{
    QTest::addColumn<QByteArray>("bag");
    QTest::addColumn<QString>("words");
    const QByteArray good = Encryption(quick()).keybag();
    const auto with = [&good](const char *tag, const QByteArray &number) {
        QByteArray bag = good;
        return bag.replace(bag.indexOf(tag) + 8, 4, QByteArray::fromHex(number));
    };
    QTest::newRow("nothing") << QByteArray() << u"contains no key"_s;
    QTest::newRow("noise") << QByteArray(500, 'x') << u"cut off"_s;
    QTest::newRow("no class") << good.first(good.indexOf("UUID", good.indexOf("UUID") + 4))
                              << u"contains no key"_s;
    QTest::newRow("no salt") << QByteArray(good).replace("SALT", "PALT") << u"does not say how"_s;
    QTest::newRow("no iterations")
        << QByteArray(good).replace("ITER", "JTER") << u"does not say how"_s;
    QTest::newRow("first step: 100 million and one") << with("DPIC", "05f5e101") << u"100000001"_s;
    QTest::newRow("first step: 4 billion") << with("DPIC", "ffffffff") << u"4294967295"_s;
    QTest::newRow("last step: 4 billion") << with("ITER", "ffffffff") << u"4294967295"_s;
    QTest::newRow("none at all") << with("ITER", "00000000") << u"asks for 0"_s;
}

void tst_Crypto::refusesOddKeybags()
{
    QFETCH(QByteArray, bag);
    QFETCH(QString, words);
    const auto keys = unlock(bag);
    QVERIFY(!keys);
    QCOMPARE(keys.error().fault, Fault::Corrupt);
    QVERIFY2(PhoneItems::words(keys.error().what).contains(words),
             qPrintable(PhoneItems::words(keys.error().what)));
    QVERIFY(PhoneItems::words(keys.error().what).contains(u"Manifest.plist"_s));
}

void tst_Crypto::survivesKeybagsCutAnywhere()
{
    const QByteArray bag = Encryption(quick()).keybag();
    const qsizetype behindClass3 = bag.indexOf("UUID", bag.indexOf("CLAS\0\0\0\4\0\0\0\3"_ba));
    QVERIFY(behindClass3 > 0);
    for (qsizetype size = 0; size < bag.size(); ++size) {
        const auto keys = unlock(bag.first(size));
        QCOMPARE(keys && opens(keys, 3), size >= behindClass3);
        if (!keys)
            QCOMPARE(keys.error().fault, Fault::Corrupt);
    }
}

void tst_Crypto::survivesDamagedKeybags()
{
    const QByteArray bag = Encryption(quick()).keybag();
    for (qsizetype i = 0; i < bag.size() * 8; i += 3) {
        QByteArray damaged = bag;
        damaged[i / 8] = static_cast<char>(damaged[i / 8] ^ (1 << (i % 8)));
        // Counts of iterations that are only long to wait for are another test's.
        const qsizetype at = i / 8;
        const bool isCount = (at >= bag.indexOf("ITER") + 8 && at < bag.indexOf("ITER") + 12)
            || (at >= bag.indexOf("DPIC") + 8 && at < bag.indexOf("DPIC") + 12);
        if (!isCount)
            static_cast<void>(unlock(damaged));
    }
    QVERIFY(unlock(bag));
}

void tst_Crypto::reportsLockedClasses()
{
    Encryption::Settings settings = quick();
    settings.classes = { 1, 2, 4 };
    const auto keys = unlock(Encryption(settings).keybag());
    QVERIFY(keys);
    QVERIFY(opens(keys, 4));
    const QByteArray wrapped = Encryption(settings).wrapped(QByteArray(32, 'k'), 3);
    QCOMPARE(keys.value().unwrap(wrapped).error().fault, Fault::Locked);
    QVERIFY(PhoneItems::words(keys.value().unwrap(wrapped).error().what).contains(u"class 3"_s));
    for (const QByteArray &odd :
         { QByteArray(), wrapped.first(43), QByteArray("\4\0\0\0", 4) + QByteArray(40, 'x') })
        QCOMPARE(keys.value().unwrap(odd).error().fault, Fault::Corrupt);
}

void tst_Crypto::decryptsFiles_data()
{
    QTest::addColumn<qsizetype>("size");
    for (const int size : { 0, 1, 15, 16, 17, 4096, 65519, 65520, 65535, 65536, 65537, 1000000 })
        QTest::addRow("%d", size) << qsizetype(size);
}

void tst_Crypto::decryptsFiles()
{
    QFETCH(qsizetype, size);
    const QByteArray plain = plainBytes(size);
    const QByteArray key(32, 'k');
    const QString path = m_dir.filePath(u"file"_s);
    QVERIFY(Files::write(path, Encryption::encrypted(plain, key)));

    for (const qint64 step : { qint64(1) << 20, qint64(16384), qint64(7) }) {
        bool damaged = false;
        DecryptedFile file(path, secret(key), [&](const Notice & /*what*/) { damaged = true; });
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray got;
        QByteArray chunk;
        do {
            chunk = file.read(step);
            got += chunk;
        } while (!chunk.isEmpty());
        QVERIFY(got == plain);
        QVERIFY(file.atEnd());
        QVERIFY(!damaged);
    }
}

void tst_Crypto::keepsWhatThereIsOfDamagedFiles_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QByteArray>("told");

    const QByteArray key(32, 'k');
    const QByteArray plain = plainBytes(200000);
    const QByteArray stored = Encryption::encrypted(plain, key);
    // Four bytes that are no padding, encrypted without any.
    const QByteArray unpadded = Encryption::encrypted(plain.first(65532) + "\1\2\3\4", key);
    const auto whole = [&](qsizetype size) { return plain.first(size); };
    QTest::newRow("no file at all") << QByteArray() << QByteArray() << QByteArray();
    QTest::newRow("cut between blocks")
        << stored.first(65536) << whole(65536) << "crypto.endDamaged"_ba;
    QTest::newRow("cut within a block")
        << stored.first(70001) << whole(70000) << "crypto.cutOff"_ba;
    QTest::newRow("less than a block") << stored.first(15) << QByteArray() << "crypto.cutOff"_ba;
    QTest::newRow("padding of another kind")
        << unpadded.first(65536) << plain.first(65532) + "\1\2\3\4"
        << "crypto.endDamaged"_ba;
}

void tst_Crypto::keepsWhatThereIsOfDamagedFiles()
{
    QFETCH(QByteArray, stored);
    QFETCH(QByteArray, expected);
    QFETCH(QByteArray, told);
    const QString path = m_dir.filePath(u"damaged"_s);
    QVERIFY(Files::write(path, stored));
    QByteArray code;
    DecryptedFile file(
        path, secret(QByteArray(32, 'k')), [&](const Notice &what) { code += what.code(); });
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == expected);
    QCOMPARE(code, told);
}

void tst_Crypto::opensRecords()
{
    // echo -n 'bplist00 a record' | openssl enc -aes-128-cbc -K … -iv 000102…0F, the key being the
    // first half of SHA-1("secretsalt").
    const QByteArray digest = QCryptographicHash::hash("secretsalt", QCryptographicHash::Sha1);
    const QByteArray plain = "bplist00 a record";
    EVP_CIPHER_CTX *context = EVP_CIPHER_CTX_new();
    const QByteArray vector = QByteArray::fromHex("000102030405060708090a0b0c0d0e0f");
    EVP_EncryptInit_ex(context,
                       EVP_aes_128_cbc(),
                       nullptr,
                       reinterpret_cast<const uchar *>(digest.constData()),
                       reinterpret_cast<const uchar *>(vector.constData()));
    QByteArray stored(64, '\0');
    auto *out = reinterpret_cast<uchar *>(stored.data());
    int size = 0;
    int rest = 0;
    EVP_EncryptUpdate(
        context, out, &size, reinterpret_cast<const uchar *>(plain.constData()), int(plain.size()));
    EVP_EncryptFinal_ex(context, out + size, &rest);
    EVP_CIPHER_CTX_free(context);
    stored.truncate(size + rest);

    const RecordKey key(secret("secret"), "salt");
    QCOMPARE(key.open(stored), plain);
    QCOMPARE(key.open(stored.toBase64()), plain);
    QCOMPARE(key.open(plain), plain);
    QCOMPARE(key.open("noise"), QByteArray("noise"));
    QCOMPARE(RecordKey(secret("other"), "salt").open(stored), stored);
}

QTEST_GUILESS_MAIN(tst_Crypto)
#include "tst_Crypto.moc"
