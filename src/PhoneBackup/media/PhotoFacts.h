#ifndef PHONEBACKUP_MEDIA_PHOTOFACTS_H
#define PHONEBACKUP_MEDIA_PHOTOFACTS_H

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/media/Photo.h"
#include "PhoneBackup/sqlite/Database.h"

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
    // Numbers of rows by those of others, sorted once they are all there.
    using Pairs = std::vector<std::pair<qint64, qint64>>;

    qint64 rowOf(FileIndex::Row file) const;
    bool prepare(std::optional<Statement> &statement,
                 const QString &table,
                 std::initializer_list<const char *> columns);
    bool find(std::optional<Statement> &statement, qint64 row);
    void readPairs(const QString &sql, Pairs &pairs);
    void readFiles();
    void readAttributes();
    void readAlbums();
    void fillAsset(Photo &photo);
    void fillAttributes(Photo &photo);

    Source &m_source;
    DataType::Code m_type;
    std::optional<Database> m_database;
    QString m_table; // of the assets
    Pairs m_rows; // of assets by files
    Pairs m_attributes; // by assets
    Pairs m_albumsOf; // by assets
    QHash<qint64, PhotoAlbum> m_albums;
    std::optional<Statement> m_asset;
    std::optional<Statement> m_attribute;
    std::optional<Statement> m_description;
};

} // namespace PhoneBackup

#endif
