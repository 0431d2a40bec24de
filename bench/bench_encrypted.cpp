// Copies out of an encrypted backup against copies out of the same backup without encryption, in
// pairs, and key derivation against the crypto library's own.
// Usage: bench_encrypted FOLDER [COUNT [SIZE [PAIRS]]]; FOLDER is made and removed, and lies on the
// disk to be measured.
#include "PhoneBackup/crypto/KeyDerivation.h"
#include "PhoneItems/Backup.h"
#include "backup/BkData.h"
#include "backup/CBackupExporter.h"
#include "bench/Usage.h"
#include "sample/BackupWriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTextStream>

#include <openssl/evp.h>

#include <algorithm>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPhotos = 0;
constexpr quint32 kIterations = 10'000'000;
const QString kPassword = u"bench"_s;

bool makeBackup(const QString &root, bool encrypted, int count, qint64 size)
{
    Sample::BackupWriter writer(root);
    if (encrypted) {
        Sample::Encryption::Settings settings;
        settings.password = kPassword;
        settings.iterations = 10;
        writer.setEncryption(settings);
    }
    QByteArray content(size, Qt::Uninitialized);
    for (qint64 i = 0; i < size; ++i)
        content[i] = static_cast<char>(i * 7919 >> 3);
    for (int i = 0; i < count; ++i) {
        const QString path = u"Media/DCIM/%1APPLE/IMG_%2.JPG"_s.arg(100 + i / 1000)
                                 .arg(i % 1000, 4, 10, QLatin1Char('0'));
        writer.addFile(u"CameraRollDomain"_s, path, content);
    }
    return writer.finish();
}

struct Cost
{
    double wallSeconds = 0;
    double cpuSeconds = 0;
};

template <class Work>
Cost measured(const Work &work)
{
    ::sync(); // what the run before left to write is not this run's to pay for
    Cost cost;
    const double cpuBefore = Bench::cpuSeconds(RUSAGE_SELF);
    QElapsedTimer timer;
    timer.start();
    work();
    cost.wallSeconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    cost.cpuSeconds = Bench::cpuSeconds(RUSAGE_SELF) - cpuBefore;
    return cost;
}

Cost exported(const PhoneItems::Backup &backup, const QString &target)
{
    QDir().mkpath(target);
    const Cost cost = measured([&] {
        CBackupExporter::exportFile(
            backup.getBkData(kPhotos), QDir(target), u"Ann"_s, u"Photos"_s, nullptr, nullptr);
    });
    QDir(target).removeRecursively();
    return cost;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void compareDerivation(QTextStream &out)
{
    const QByteArray salt(20, 's');
    QByteArray theirs(PhoneBackup::KeyDerivation::kKeyBytes, '\0');
    const Cost library = measured([&] {
        PKCS5_PBKDF2_HMAC("bench",
                          5,
                          reinterpret_cast<const uchar *>(salt.constData()),
                          static_cast<int>(salt.size()),
                          kIterations,
                          EVP_sha256(),
                          static_cast<int>(theirs.size()),
                          reinterpret_cast<uchar *>(theirs.data()));
    });
    PhoneBackup::Secret ours;
    const Cost own = measured([&] {
        ours = PhoneBackup::KeyDerivation::key(
            PhoneBackup::KeyDerivation::Digest::Sha256, "bench", salt, kIterations, {});
    });
    out << kIterations << " rounds: " << own.cpuSeconds << " s of processor time, the library's "
        << "own function " << library.cpuSeconds << " s"
        << (ours.view() == QByteArrayView(theirs) ? "" : "; the keys DIFFER") << Qt::endl;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    QTextStream out(stdout);
    if (arguments.size() < 2 || QDir(arguments[1]).exists()) {
        out << "Usage: bench_encrypted FOLDER [COUNT [SIZE [PAIRS]]]; FOLDER must be new.\n";
        return 2;
    }
    const QString folder = arguments[1];
    const int count = arguments.value(2, u"500"_s).toInt();
    const qint64 size = arguments.value(3, u"2500000"_s).toLongLong();
    const int pairs = std::max(1, arguments.value(4, u"5"_s).toInt());
    compareDerivation(out);

    PhoneBackup::Password password;
    password.text = PhoneBackup::Secret(QByteArrayView(kPassword.toUtf8()));
    const bool made = makeBackup(folder + "/plain"_L1, false, count, size)
        && makeBackup(folder + "/encrypted"_L1, true, count, size);
    const auto plain = PhoneItems::Backup::open(folder + "/plain"_L1);
    const auto encrypted = PhoneItems::Backup::open(folder + "/encrypted"_L1, {}, password);
    if (!made || !plain || !encrypted) {
        out << "The backups could not be made.\n";
        QDir(folder).removeRecursively();
        return 1;
    }
    std::vector<double> wallRatios;
    std::vector<double> cpuRatios;
    out << "pair: encrypted s (cpu), plain s (cpu), ratio\n";
    for (int pair = 0; pair < pairs; ++pair) {
        const bool plainFirst = pair % 2 == 0;
        Cost first = exported(plainFirst ? *plain.value() : *encrypted.value(), folder + "/1"_L1);
        Cost second = exported(plainFirst ? *encrypted.value() : *plain.value(), folder + "/2"_L1);
        if (plainFirst)
            std::swap(first, second);
        wallRatios.push_back(first.wallSeconds / second.wallSeconds);
        cpuRatios.push_back(first.cpuSeconds / second.cpuSeconds);
        out << pair << ": " << first.wallSeconds << " (" << first.cpuSeconds << "), "
            << second.wallSeconds << " (" << second.cpuSeconds << "), " << wallRatios.back()
            << Qt::endl;
    }
    out << count << " files of " << size << " bytes: median ratio " << median(wallRatios)
        << " of wall time, " << median(cpuRatios) << " of processor time; peak memory "
        << Bench::peakMemoryMb() << " MB\n";
    QDir(folder).removeRecursively();
    return 0;
}
