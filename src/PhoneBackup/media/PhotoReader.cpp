#include "PhoneBackup/media/PhotoReader.h"

#include "PhoneBackup/media/CameraRoll.h"
#include "PhoneBackup/media/PhotoFacts.h"
#include "PhoneBackup/source/Source.h"

#include <algorithm>
#include <span>

namespace PhoneBackup {

namespace {

using Files = std::span<const CameraFile>;

// Files of one stem, the originals first: "IMG_0001.HEIC", "IMG_0001.MOV", "FullSizeRender.jpg".
class Group
{
public:
    explicit Group(PhotoFacts &facts)
        : m_facts(facts)
    {
    }

    const std::vector<Photo> &read(Files files)
    {
        m_photos.clear();
        // A film belongs to a photo, unless the phone lists it on its own.
        for (const CameraFile &file : files) {
            if (!file.edited && (!file.video || m_facts.knows(file.row)))
                add(file);
        }
        for (const CameraFile &file : files) {
            if (!file.edited && file.video && !m_facts.knows(file.row))
                addFilm(file);
        }
        for (const CameraFile &file : files) {
            if (file.edited)
                addEdited(file);
        }
        return m_photos;
    }

private:
    Photo &add(const CameraFile &file)
    {
        Photo &photo = m_photos.emplace_back();
        photo.kind = file.video ? Photo::Kind::Video : Photo::Kind::Still;
        photo.file = file.row;
        m_facts.describe(file.row, photo);
        photo.deleted = photo.deleted || file.deleted; // the index may know, too
        return photo;
    }

    void addFilm(const CameraFile &file)
    {
        const auto still = std::find_if(m_photos.begin(), m_photos.end(), [](const Photo &photo) {
            return !photo.isVideo() && photo.film == FileIndex::kNone;
        });
        if (still == m_photos.end()) {
            add(file);
            return;
        }
        still->film = file.row;
        if (still->kind == Photo::Kind::Still)
            still->kind = Photo::Kind::Live;
    }

    void addEdited(const CameraFile &file)
    {
        const auto holds = [&](FileIndex::Row Photo::*place, bool video) {
            const auto found = std::find_if(m_photos.begin(), m_photos.end(), [&](const auto &p) {
                return p.isVideo() == video && p.*place == FileIndex::kNone;
            });
            if (found == m_photos.end())
                return false;
            (*found).*place = file.row;
            found->edited = true;
            return true;
        };
        if (file.video ? holds(&Photo::editedFile, true) || holds(&Photo::editedFilm, false)
                       : holds(&Photo::editedFile, false))
            return;
        Photo &photo = m_photos.emplace_back();
        photo.kind = file.video ? Photo::Kind::Video : Photo::Kind::Still;
        photo.editedFile = file.row;
        photo.edited = true;
        photo.deleted = file.deleted;
    }

    PhotoFacts &m_facts;
    std::vector<Photo> m_photos;
};

} // namespace

void readPhotos(Source &source, const std::function<void(const Photo &)> &sink)
{
    const std::vector<CameraFile> files = cameraFiles(source);
    PhotoFacts facts(source, DataType::Photos);
    Group group(facts);
    for (auto first = files.cbegin(); first != files.cend() && source.keepGoing();) {
        const auto last = std::find_if(first, files.cend(), [first](const CameraFile &file) {
            return file.folderRank != first->folderRank || file.stem != first->stem;
        });
        for (const Photo &photo : group.read({ first, last }))
            sink(photo);
        first = last;
    }
}

} // namespace PhoneBackup
