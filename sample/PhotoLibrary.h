#ifndef SAMPLE_PHOTOLIBRARY_H
#define SAMPLE_PHOTOLIBRARY_H

#include "sample/Database.h"

#include <QDateTime>

namespace Sample {

//! One picture or video, as the photo database records it.
struct Asset
{
    QString directory; //!< Below Media/.
    QString fileName;
    QString originalName; //!< Before it came to the phone; empty: the same.
    QString uuid;
    QDateTime taken;
    bool isVideo = false;
    int kindSubtype = 0;
    bool isTrashed = false;
    bool isHidden = false;
    bool isFavorite = false;
    bool isEdited = false;
    int savedType = 3; //!< 3 the owner's, 4 of a shared album, 6 from the cloud.
};

//! Photos.sqlite, with the phone's own table definitions.
class PhotoLibrary
{
public:
    enum class AlbumKind { Own = 2, Shared = 1505, RootFolder = 3999 };

    //! Makes the database at \a path, with the table names of system version 13 and before when
    //! \a oldStyle.
    PhotoLibrary(const QString &path, bool oldStyle);

    //! \return the asset's number.
    int addAsset(const Asset &asset);
    //! \return the album's number. \a cloudId names the folder of a shared album.
    int addAlbum(AlbumKind kind,
                 const QString &title,
                 const QString &uuid,
                 const QString &cloudId = {});
    void addToAlbum(int album, int asset);

    //! Closes the database. \return false when anything failed.
    bool finish();
    QString error() const { return m_database.error(); }

private:
    QByteArray m_assetTable;
    Database m_database;
    Statement m_insertAsset;
    Statement m_insertAttributes;
    Statement m_insertAlbum;
    Statement m_insertMember;
    int m_assets = 0;
    int m_albums = 0;
    int m_members = 0;
};

} // namespace Sample

#endif
