#ifndef PHONEBACKUP_MEDIA_PHOTOFACTS_H
#define PHONEBACKUP_MEDIA_PHOTOFACTS_H

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/media/Photo.h"
#include "PhoneBackup/source/Table.h"

#include <QHash>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace PhoneBackup {

class Source;

/*!
    \brief What the photo database tells of the files of the camera roll and of shared albums.

    \par Cost
    A pass over three tables when it is made, some look-ups by number a photo, and about 50 bytes a
    row. Who only lists files does without.
*/
class PhotoFacts
{
public:
    //! What is wrong with the database becomes a problem of \a type.
    PhotoFacts(Source &source, DataType::Code type);
    ~PhotoFacts();

    //! Whether the database has a row for the file \a file of the index.
    bool knows(FileIndex::Row file) const { return rowOf(file) >= 0; }

    //! Fills in what is known of the file \a file, which is no film of a live photo.
    void describe(FileIndex::Row file, Photo &photo);

private:
    struct Assets;
    struct Attributes;
    struct Captions;

    // Numbers of rows by those of others, sorted once they are all there.
    using Pairs = std::vector<std::pair<qint64, qint64>>;

    qint64 rowOf(FileIndex::Row file) const;
    void readPairs(const QString &table, const QString &from, const QString &to, Pairs &pairs);
    void readFiles();
    void readAlbums();
    void fillAsset(const Table::Row &row, Photo &photo) const;
    void fillAttributes(const Table::Row &row, Photo &photo) const;

    Source &m_source;
    std::optional<RowDatabase> m_database;
    Pairs m_rows; // of assets by files
    Pairs m_attributes; // by assets
    Pairs m_albumsOf; // by assets
    QHash<qint64, PhotoAlbum> m_albums;
    std::unique_ptr<Assets> m_assets;
    std::unique_ptr<Attributes> m_details;
    std::unique_ptr<Captions> m_captions;
};

} // namespace PhoneBackup

#endif
