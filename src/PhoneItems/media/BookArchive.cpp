#include "PhoneItems/media/BookArchive.h"

#include "PhoneBackup/folder/BackupFiles.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <minizip/zip.h>

namespace PhoneItems {

using namespace PhoneBackup;

namespace {

constexpr qint64 kChunk = 131072;
constexpr QByteArrayView kMimeType = "mimetype";

struct CloseZip
{
    void operator()(void *zip) const { zipClose(zip, nullptr); }
};

// A name that no unpacking program would take outside the folder that it unpacks into.
bool staysInside(QByteArrayView name)
{
    return !name.isEmpty() && !name.startsWith('/') && !name.contains('\\')
        && !name.contains(QByteArrayView("\0", 1))
        && !('/' + name.toByteArray() + '/').contains("/../");
}

zip_fileinfo fileInfo(const QDateTime &modified)
{
    zip_fileinfo info {};
    const QDate date = modified.date();
    // Archives know no dates before 1980.
    if (date.isValid() && date.year() >= 1980) {
        const QTime time = modified.time();
        info.tmz_date.tm_year = static_cast<uInt>(date.year());
        info.tmz_date.tm_mon = static_cast<uInt>(date.month() - 1);
        info.tmz_date.tm_mday = static_cast<uInt>(date.day());
        info.tmz_date.tm_hour = static_cast<uInt>(time.hour());
        info.tmz_date.tm_min = static_cast<uInt>(time.minute());
        info.tmz_date.tm_sec = static_cast<uInt>(time.second());
    } else {
        info.dosDate = 0x00210000; // 1980-01-01
    }
    return info;
}

bool openEntry(void *zip, const QByteArray &name, const QDateTime &modified, bool stored)
{
    constexpr uLong kUtf8Names = 1 << 11;
    const zip_fileinfo info = fileInfo(modified);
    // No extra fields: the readers of books want none in front of the first entry's content.
    return zipOpenNewFileInZip4_64(zip,
                                   name.constData(),
                                   &info,
                                   nullptr,
                                   0,
                                   nullptr,
                                   0,
                                   nullptr,
                                   stored ? 0 : Z_DEFLATED,
                                   Z_DEFAULT_COMPRESSION,
                                   0,
                                   -MAX_WBITS,
                                   DEF_MEM_LEVEL,
                                   Z_DEFAULT_STRATEGY,
                                   nullptr,
                                   0,
                                   0,
                                   kUtf8Names,
                                   0)
        == ZIP_OK;
}

enum class Copied { Whole, Unreadable, Unwritable };

Copied writeContent(void *zip, QIODevice &content)
{
    QByteArray chunk(kChunk, Qt::Uninitialized);
    qint64 count = 0;
    while ((count = content.read(chunk.data(), chunk.size())) > 0) {
        if (zipWriteInFileInZip(zip, chunk.constData(), static_cast<unsigned>(count)) != ZIP_OK)
            return Copied::Unwritable;
    }
    return count == 0 ? Copied::Whole : Copied::Unreadable;
}

} // namespace

Result<QStringList> writeBookArchive(BackupFiles &files,
                                     const std::vector<FileIndex::Row> &rows,
                                     QByteArrayView folder,
                                     const QString &target)
{
    const auto nameOf = [&](FileIndex::Row row) {
        return files.index().path(row).sliced(folder.size() + 1);
    };
    std::vector<FileIndex::Row> ordered = rows;
    std::stable_partition(ordered.begin(), ordered.end(), [&](FileIndex::Row row) {
        return nameOf(row) == kMimeType;
    });

    const auto notWritten = [] { return PrivateFolder::writeError(errno); };
    std::unique_ptr<void, CloseZip> zip(
        zipOpen64(QFile::encodeName(target).constData(), APPEND_STATUS_CREATE));
    if (!zip)
        return notWritten();
    QStringList missing;
    for (const FileIndex::Row row : ordered) {
        const QByteArray name = nameOf(row).toByteArray();
        if (!staysInside(name))
            continue;
        const Result<std::unique_ptr<QIODevice>> content = files.openContent(row);
        if (!content) {
            missing.append(files.place(row));
            continue;
        }
        if (!openEntry(zip.get(), name, files.record(row).modified, nameOf(row) == kMimeType))
            return notWritten();
        const Copied copied = writeContent(zip.get(), *content.value());
        if (copied == Copied::Unreadable)
            missing.append(files.place(row));
        if (copied == Copied::Unwritable || zipCloseFileInZip(zip.get()) != ZIP_OK)
            return notWritten();
    }
    if (zipClose(zip.release(), nullptr) != ZIP_OK)
        return notWritten();
    if (missing.size() == qsizetype(rows.size())) {
        return Error { Fault::NotFound, missing.value(0), Notice("media.noBookFiles") };
    }
    return missing;
}

} // namespace PhoneItems
