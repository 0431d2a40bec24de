#include "Export/Preflight.h"

#include "Export/NewFile.h"
#include "Export/Text.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Export::Preflight {

namespace {

// The file system's own identity of a folder: it sees through links, second mounts and case.
struct Identity
{
    dev_t device = 0;
    ino_t inode = 0;
    bool valid = false;

    explicit Identity(const QString &path)
    {
        struct stat data = {};
        if (::stat(QFile::encodeName(path).constData(), &data) != 0)
            return;
        device = data.st_dev;
        inode = data.st_ino;
        valid = true;
    }

    bool operator==(const Identity &other) const
    {
        return valid && other.valid && device == other.device && inode == other.inode;
    }
};

QString nearestExisting(QString path)
{
    while (!QFileInfo::exists(path) && path != QDir::rootPath())
        path = QFileInfo(path).path();
    return QFileInfo(path).canonicalFilePath();
}

bool isInside(const QString &path, const QString &folder)
{
    const Identity wanted(folder);
    for (QString at = nearestExisting(path);; at = QFileInfo(at).path()) {
        if (Identity(at) == wanted)
            return true;
        if (at == QDir::rootPath())
            return false;
    }
}

Failure inside(const QString &output)
{
    return { Failure::Cause::Unsuitable,
             u"OUTPUT “%1” is inside the backup, which is never written to."_s.arg(output),
             {},
             u"Choose a folder outside the backup."_s };
}

// Hidden files and dead links, too.
constexpr QDir::Filters kEverything =
    QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;

// What file systems and desktops put into every folder by themselves.
bool isOfTheSystem(const QString &name)
{
    static constexpr std::array kNames {
        ".DS_Store"_L1,       ".localized"_L1,  ".fseventsd"_L1,
        ".Spotlight-V100"_L1, ".Trashes"_L1,    "lost+found"_L1,
        "Thumbs.db"_L1,       "desktop.ini"_L1, "System Volume Information"_L1,
        "$RECYCLE.BIN"_L1
    };
    return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

bool isEmptyForPeople(const QString &folder)
{
    QDirIterator entries(folder, kEverything);
    while (entries.hasNext()) {
        entries.next();
        if (!isOfTheSystem(entries.fileName()))
            return false;
    }
    return true;
}

// An export writes at most one group's folder and one page's image folder below a type's folder.
constexpr int kOutputDepth = 3;

// Where a chain of links ends, be anything there or not.
QString linkTarget(QFileInfo link)
{
    constexpr int kLongestChain = 40;
    for (int i = 0; i < kLongestChain && link.isSymLink(); ++i)
        link.setFile(link.symLinkTarget());
    return link.filePath();
}

QString linkInto(const QString &folder, const QString &backup, int depth)
{
    QDirIterator entries(folder, kEverything);
    while (entries.hasNext()) {
        entries.next();
        const QFileInfo entry = entries.fileInfo();
        if (entry.isSymLink()) {
            if (isInside(linkTarget(entry), backup))
                return entry.filePath();
        } else if (entry.isDir() && depth > 1) {
            const QString found = linkInto(entry.filePath(), backup, depth - 1);
            if (!found.isEmpty())
                return found;
        }
    }
    return {};
}

} // namespace

QString absoluteOutput(const QString &output)
{
    return QDir::cleanPath(QDir::current().absoluteFilePath(output));
}

std::optional<Failure> checkApart(const QString &output, const QStringList &backups)
{
    for (const QString &backup : backups) {
        if (isInside(output, backup))
            return inside(output);
        if (QFileInfo::exists(output) && isInside(backup, output))
            return Failure {
                Failure::Cause::Unsuitable,
                u"The backup “%1” is inside OUTPUT “%2” and could be overwritten."_s.arg(backup,
                                                                                         output),
                {},
                u"Choose an OUTPUT that does not contain the backup."_s
            };
    }
    return std::nullopt;
}

std::optional<Failure> checkOutput(const QString &output, const QString &backup, bool intoExisting)
{
    const QFileInfo info(output);
    if (info.exists() && !info.isDir())
        return Failure { Failure::Cause::Unsuitable,
                         u"OUTPUT “%1” is a file, not a folder."_s.arg(output),
                         {},
                         u"Choose a new or empty folder."_s };
    if (info.isDir() && !intoExisting && !isEmptyForPeople(output))
        return Failure { Failure::Cause::NotEmpty,
                         u"OUTPUT “%1” is not empty."_s.arg(output),
                         {},
                         u"Choose a new or empty folder."_s };
    if (info.isDir() && intoExisting) {
        const QString link = linkInto(output, backup, kOutputDepth);
        if (!link.isEmpty())
            return inside(link);
    }
    const QString folder = nearestExisting(output);
    if (!QFileInfo(folder).isDir())
        return Failure { Failure::Cause::Unsuitable,
                         u"OUTPUT “%1” cannot be created: “%2” is a file."_s.arg(output, folder),
                         {},
                         u"Choose a new or empty folder."_s };
    if (::access(QFile::encodeName(folder).constData(), W_OK | X_OK) != 0) {
        const int number = errno;
        return Failure { Failure::Cause::Output,
                         u"OUTPUT “%1” cannot be written to: %2 (“%3”)."_s.arg(
                             output, errorText(number), folder),
                         {},
                         u"Choose a folder that you may write to."_s,
                         number };
    }
    return std::nullopt;
}

std::optional<Failure> checkSpace(const QString &output, qint64 neededBytes)
{
    struct statvfs disk = {};
    const QString folder = nearestExisting(output);
    // A file system that does not say how full it is has to show it while it is written.
    if (::statvfs(QFile::encodeName(folder).constData(), &disk) != 0 || disk.f_blocks == 0)
        return std::nullopt;
    const auto available = static_cast<qint64>(disk.f_bavail) * static_cast<qint64>(disk.f_frsize);
    if (neededBytes <= available)
        return std::nullopt;
    return Failure { Failure::Cause::NoRoom,
                     u"There is not enough space in OUTPUT “%1”: %2 needed, %3 available."_s.arg(
                         output, sizeText(neededBytes), sizeText(available)),
                     {},
                     u"Free up space, choose an OUTPUT on another disk, or export less."_s };
}

Failure replaced(const QString &output)
{
    return { Failure::Cause::Output,
             u"OUTPUT “%1” was replaced while the backup was being read."_s.arg(output),
             {},
             u"Choose a folder that nobody else can change."_s };
}

std::optional<Failure> createOutput(const QString &output)
{
    if (QFileInfo(output).isDir())
        return std::nullopt;
    // What it will hold is nobody else's business, whatever the mode of the folders around it.
    constexpr mode_t kForUserAlone = S_IRWXU;
    errno = 0;
    if (QDir().mkpath(QFileInfo(output).path())
        && ::mkdir(QFile::encodeName(output).constData(), kForUserAlone) == 0)
        return std::nullopt;
    const int number = errno;
    return Failure { Failure::Cause::Output,
                     number != 0
                         ? u"OUTPUT “%1” could not be created: %2."_s.arg(output, errorText(number))
                         : u"OUTPUT “%1” could not be created."_s.arg(output),
                     {},
                     u"Choose a folder that you may write to."_s,
                     number };
}

} // namespace Export::Preflight
