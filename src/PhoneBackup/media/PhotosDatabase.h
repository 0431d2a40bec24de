#ifndef PHONEBACKUP_MEDIA_PHOTOSDATABASE_H
#define PHONEBACKUP_MEDIA_PHOTOSDATABASE_H

#include "PhoneBackup/folder/FileIndex.h"
#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/RowDatabase.h"

#include <QHash>
#include <QSet>

#include <optional>
#include <vector>

namespace PhoneBackup {

class Source;

//! What Photos.sqlite tells of the files of the camera roll. Paths are those of the index.
struct PhotoAssets
{
    bool complete = false; //!< Every row was read.
    QSet<QByteArray> deleted; //!< Files in "recently deleted".
    QSet<QByteArray> deletedStems; //!< Their paths without extensions.
    QSet<QByteArray> kept; //!< Files that share a stem with a deleted one and are not deleted.
    QHash<QByteArray, MediaKind> kinds; //!< Of the files whose extension tells none.
    std::vector<FileIndex::Row> elsewhere; //!< Files outside the camera roll's folders.
};

//! The phone's photo database, Photos.sqlite.
class PhotosDatabase
{
public:
    static constexpr const char *kDomain = "CameraRollDomain";

    //! Folders of the camera roll, and of shared albums, in that domain.
    static constexpr const char *kCamera = "Media/DCIM/";
    static constexpr const char *kCloud = "Media/PhotoData/CPLAssets/";
    static constexpr const char *kEdited = "Media/PhotoData/Mutations/";
    static constexpr const char *kShared = "Media/PhotoData/PhotoCloudSharingData/";

    static std::optional<RowDatabase> open(Source &source, int dataType);

    //! The name of the table of photos and videos, which changed once.
    static QString assetTable(const RowDatabase &database);

    //! Path in the domain of the file \a name in \a folder, as the table of photos tells both.
    static QByteArray path(QByteArrayView folder, QByteArrayView name);

    //! Opens it; what is wrong with it becomes a problem of \a dataType.
    PhotosDatabase(Source &source, int dataType);

    PhotoAssets assets();

    //! Titles of the shared albums by their identifier, in lower case.
    QHash<QByteArray, QString> sharedAlbumTitles();

private:
    Source &m_source;
    std::optional<RowDatabase> m_database;
};

} // namespace PhoneBackup

#endif
