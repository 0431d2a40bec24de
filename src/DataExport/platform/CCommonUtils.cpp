#include "platform/CCommonUtils.h"

#include "platform/NativeFile_p.h"
#include "platform/OutputFile_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <array>
#include <chrono>
#include <cmath>
#include <ctime>
#include <sys/stat.h>

namespace {

// A name that a broken symbolic link holds is taken, too: opening it would write elsewhere. A name
// that cannot be looked up (too long, no permission) is not: no number would make it better.
bool isTaken(const QString &path)
{
    struct stat status
    {
    };
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0;
}

QString numberedPath(const QString &folder, const QString &base, int number, const QString &suffix)
{
    if (number <= 1)
        return folder + base + suffix;
    return folder + base + QLatin1String(" (") + QString::number(number) + QLatin1Char(')')
        + suffix;
}

QString folderPrefix(const QDir &dir)
{
    const QString path = dir.absolutePath();
    return path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
}

// From 1970 to the end of 2099 QDateTime's local time is what the C library says.
constexpr qint64 kLastSecond = 4102444799;

// Lets the C library look at TZ, and at the system's zone file, when they may have changed. It
// looks at the file's state each time that it is asked to, and so does QDateTime: for a message of
// a hundred letters that costs more than all the rest.
void followTimeZone()
{
    using Clock = std::chrono::steady_clock;
    constexpr auto kTrusted = std::chrono::seconds(1);
    thread_local QByteArray zone;
    thread_local Clock::time_point nextLook {};
    const QByteArray current = qgetenv("TZ");
    const Clock::time_point now = Clock::now();
    if (now < nextLook && current == zone)
        return;
    tzset();
    zone = current;
    nextLook = now + kTrusted;
}

void putTwoDigits(QChar *at, int number)
{
    at[0] = QChar(u'0' + number / 10);
    at[1] = QChar(u'0' + number % 10);
}

// Empty for a moment that is left to QDateTime.
QString localMinute(const QDateTime &dateTime)
{
    if (dateTime.timeSpec() != Qt::UTC)
        return {};
    const qint64 ms = dateTime.toMSecsSinceEpoch();
    const std::time_t seconds = ms / 1000;
    if (ms < 0 || seconds > kLastSecond)
        return {};
    followTimeZone();
    std::tm local {};
    if (!localtime_r(&seconds, &local))
        return {};
    const int year = local.tm_year + 1900;
    QString text(16, u' ');
    QChar *at = text.data();
    putTwoDigits(at, year / 100);
    putTwoDigits(at + 2, year % 100);
    at[4] = at[7] = u'-';
    putTwoDigits(at + 5, local.tm_mon + 1);
    putTwoDigits(at + 8, local.tm_mday);
    putTwoDigits(at + 11, local.tm_hour);
    at[13] = u':';
    putTwoDigits(at + 14, local.tm_min);
    return text;
}

// The modes that media files had before they were made readable.
QHash<QString, mode_t> &liftedModes()
{
    static QHash<QString, mode_t> modes;
    return modes;
}

} // namespace

void CCommonUtils::rmDir(const QDir &dir, const QString &name, bool *ok)
{
    bool done = false;
    const QString cleaned = QDir::cleanPath(name);
    if (!name.isEmpty() && QDir::isRelativePath(name) && cleaned != QLatin1String(".")
        && cleaned != QLatin1String("..") && !cleaned.startsWith(QLatin1String("../"))) {
        const QFileInfo target(dir.absoluteFilePath(cleaned));
        // Canonical paths see through links in the middle of the name that lead elsewhere.
        const QString parent = folderPrefix(QDir(dir.canonicalPath()));
        if (target.isDir() && !target.isSymLink() && !dir.canonicalPath().isEmpty()
            && target.canonicalFilePath().startsWith(parent))
            done = QDir(target.absoluteFilePath()).removeRecursively();
    }
    if (ok)
        *ok = done;
}

bool CCommonUtils::copyFile(const QString &src, const QDir &dir, const QString &name)
{
    NativeFile source;
    OutputFile target;
    return source.openForReading(src)
        && target.open(
            dir.absoluteFilePath(name), OutputFile::Way::Staged, OutputFile::Existing::Replace)
        && target.copyFrom(source) && target.complete();
}

QString CCommonUtils::uniqFileName(const QDir &dir, const QString &base, const QString &suffix)
{
    const QString folder = folderPrefix(dir);
    const auto path = [&](int number) { return numberedPath(folder, base, number, suffix); };

    int taken = 1;
    if (!isTaken(path(taken)))
        return path(taken);
    // Doubling finds a free number, halving the free one next to a taken one: with 10,000 files of
    // one name a walk from 2 upwards would look at each of them again for every new file.
    int free = 2;
    while (isTaken(path(free))) {
        taken = free;
        free *= 2;
    }
    while (free - taken > 1) {
        const int middle = taken + (free - taken) / 2;
        (isTaken(path(middle)) ? taken : free) = middle;
    }
    return path(free);
}

QString CCommonUtils::uniqFileName(const QDir &dir,
                                   const QString &base,
                                   const QString &suffix,
                                   int &counter)
{
    const QString folder = folderPrefix(dir);
    int number = counter <= 0 ? 1 : counter + 1;
    while (isTaken(numberedPath(folder, base, number, suffix)))
        ++number;
    counter = number;
    return numberedPath(folder, base, number, suffix);
}

void CCommonUtils::protectMediaFile(const QString &path, bool protect)
{
    const QByteArray native = QFile::encodeName(path);
    if (protect) {
        const auto lifted = liftedModes().constFind(path);
        if (lifted == liftedModes().constEnd())
            return;
        ::chmod(native.constData(), *lifted);
        liftedModes().erase(lifted);
        return;
    }
    struct stat status
    {
    };
    if (::stat(native.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return;
    const mode_t mode = status.st_mode & 07777;
    if ((mode & S_IRUSR) == 0 && ::chmod(native.constData(), mode | S_IRUSR) == 0)
        liftedModes().insert(path, mode);
}

bool CCommonUtils::openForReading(QFile &file, QString *why)
{
    NativeFile native;
    if (!native.openForReading(file.fileName())) {
        if (why)
            *why = native.errorString();
        return false;
    }
    return file.open(native.release(),
                     QIODevice::ReadOnly | QIODevice::Unbuffered,
                     QFileDevice::AutoCloseHandle);
}

QString CCommonUtils::dateToString(const QDateTime &dateTime, bool utc)
{
    if (!dateTime.isValid())
        return {};
    return (utc ? dateTime.toUTC() : dateTime.toLocalTime()).date().toString(Qt::ISODate);
}

QString CCommonUtils::datetimeToMinute(const QDateTime &dateTime, bool local)
{
    if (!dateTime.isValid())
        return {};
    if (local) {
        const QString text = localMinute(dateTime);
        if (!text.isEmpty())
            return text;
    }
    return (local ? dateTime.toLocalTime() : dateTime.toUTC())
        .toString(QStringLiteral("yyyy-MM-dd hh:mm"));
}

QDateTime CCommonUtils::buildDateTimeBase2001(double seconds)
{
    constexpr double kBaseMs = 978307200000.0;
    constexpr double kLimitMs = 9.2e18; // near what 64 bits of milliseconds hold
    const double ms = std::round(seconds * 1000.0) + kBaseMs;
    if (!(std::abs(ms) < kLimitMs))
        return {};
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(ms), Qt::UTC);
}

QString CCommonUtils::fileSizeToString(long long bytes, char format, int precision)
{
    static constexpr std::array<const char *, 5> kUnits { "B", "KB", "MB", "GB", "TB" };
    std::size_t unit = 0;
    auto value = static_cast<double>(bytes);
    while (value >= 1024.0 && unit + 1 < kUnits.size()) {
        value /= 1024.0;
        ++unit;
    }
    const QString number =
        unit == 0 ? QString::number(bytes) : QString::number(value, format, precision);
    return number + QLatin1Char(' ') + QLatin1String(kUnits[unit]);
}
