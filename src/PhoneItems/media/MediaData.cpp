#include "PhoneItems/media/MediaData.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/media/AppDocuments.h"
#include "PhoneBackup/media/CameraRoll.h"
#include "PhoneBackup/media/SharedAlbums.h"
#include "PhoneBackup/media/Songs.h"
#include "PhoneBackup/media/VoiceMemos.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/shared/FileData.h"

#include <algorithm>

namespace PhoneItems {

using namespace PhoneBackup;

namespace {

// "FullSizeRender.jpg", as all edited versions are called, says nothing without the original.
QString editedName(const CameraFile &file, QByteArrayView path)
{
    return PathParts::text(file.stem) + u' ' + PathParts::text(PathParts::name(path));
}

std::unique_ptr<BkData>
cameraData(Source &source, const std::vector<CameraFile> &files, DataType::Code type)
{
    auto data = std::make_unique<FileData>(type, source.files());
    int folder = -1;
    FileEntry entry;
    for (const CameraFile &file : files) {
        if (file.video != (type == DataType::Videos))
            continue;
        if (file.folderRank != folder) {
            folder = file.folderRank;
            entry.group = data->addGroup(PathParts::text(PathParts::name(file.folder)));
        }
        entry.row = file.row;
        entry.deleted = file.deleted;
        entry.name = file.edited ? editedName(file, source.index().path(file.row)) : QString();
        data->add(entry);
    }
    return data;
}

} // namespace

void readCameraRoll(Source &source, DataSets &sets)
{
    const std::vector<CameraFile> files = cameraFiles(source);
    sets[DataType::Photos] = cameraData(source, files, DataType::Photos);
    sets[DataType::Videos] = cameraData(source, files, DataType::Videos);
}

void readSharedAlbums(Source &source, DataSets &sets)
{
    auto data = std::make_unique<FileData>(DataType::SharedAlbums, source.files());
    FileEntry entry;
    for (const SharedAlbum &album : sharedAlbums(source)) {
        entry.group =
            data->addGroup(album.title.isEmpty() ? PathParts::text(album.identifier) : album.title);
        for (const FileIndex::Row row : album.files) {
            entry.row = row;
            data->add(entry);
        }
    }
    sets[DataType::SharedAlbums] = std::move(data);
}

void readVoiceMemos(Source &source, DataSets &sets)
{
    auto data = std::make_unique<FileData>(DataType::VoiceMemos, source.files());
    for (const VoiceMemo &memo : voiceMemos(source)) {
        FileEntry entry;
        entry.row = memo.file;
        entry.name = FileData::nameOf(memo.title.isEmpty() ? memo.stem : memo.title,
                                      source.index().path(memo.file));
        entry.date = memo.date;
        entry.id = memo.row;
        entry.deleted = memo.deleted;
        data->add(entry);
    }
    sets[DataType::VoiceMemos] = std::move(data);
}

void readSongs(Source &source, DataSets &sets)
{
    std::vector<FileEntry> entries;
    PhoneBackup::readSongs(source, [&](const Song &song) {
        FileEntry entry;
        entry.row = song.file;
        entry.name = FileData::nameOf(song.title, source.index().path(song.file));
        entries.push_back(entry);
    });
    std::stable_sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) {
        return PathParts::compareNatural(a.name.toUtf8(), b.name.toUtf8()) < 0;
    });
    auto data = std::make_unique<FileData>(DataType::Music, source.files());
    for (const FileEntry &entry : entries)
        data->add(entry);
    sets[DataType::Music] = std::move(data);
}

void readAppDocuments(Source &source, DataSets &sets)
{
    const AppDocuments documents(source);
    auto data = std::make_unique<FileData>(DataType::AppDocuments, source.files());
    data->reserve(qsizetype(documents.count()));
    QByteArrayView domain;
    FileEntry entry;
    for (std::size_t i = 0; i < documents.count(); ++i) {
        const AppDocument document = documents.at(i);
        if (document.domain.data() != domain.data()) {
            domain = document.domain;
            entry.group = data->addGroup(PathParts::text(document.app));
        }
        entry.row = document.file;
        data->add(entry);
    }
    sets[DataType::AppDocuments] = std::move(data);
}

} // namespace PhoneItems
