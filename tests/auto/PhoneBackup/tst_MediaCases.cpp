#include "PhoneBackup/media/AppDocuments.h"
#include "PhoneBackup/media/Books.h"
#include "PhoneBackup/media/MusicLibrary.h"
#include "PhoneBackup/media/PhotoFacts.h"
#include "PhoneBackup/media/PhotoReader.h"
#include "PhoneBackup/media/SharedAlbums.h"
#include "PhoneBackup/media/Songs.h"
#include "PhoneBackup/media/VoiceMemos.h"
#include "support/CaseFile.h"

#include <array>

using namespace Qt::StringLiterals;
using namespace PhoneBackup;

namespace {

QString nameOf(Source &source, FileIndex::Row row)
{
    return row == FileIndex::kNone ? QString() : QString::fromUtf8(source.index().path(row));
}

QJsonValue number(std::optional<double> value)
{
    return value ? QJsonValue(*value) : QJsonValue();
}

QJsonObject json(Source &source, const Photo &photo)
{
    static constexpr std::array kKinds { "still", "panorama",   "live",      "screenshot",
                                         "video", "slowMotion", "timeLapse", "screenRecording" };
    QJsonArray albums;
    for (const PhotoAlbum &album : photo.albums)
        albums.append(album.identifier + u'/' + album.title);
    return CaseFile::filled({
        { u"file"_s, nameOf(source, photo.file) },
        { u"film"_s, nameOf(source, photo.film) },
        { u"editedFile"_s, nameOf(source, photo.editedFile) },
        { u"editedFilm"_s, nameOf(source, photo.editedFilm) },
        { u"id"_s, photo.identifier },
        { u"row"_s, photo.row < 0 ? QJsonValue() : QJsonValue(photo.row) },
        { u"kind"_s, QString::fromLatin1(kKinds.at(std::size_t(photo.kind))) },
        { u"title"_s, photo.title },
        { u"caption"_s, photo.caption },
        { u"originalName"_s, photo.originalName },
        { u"taken"_s, CaseFile::text(photo.taken) },
        { u"zoneSeconds"_s, photo.zoneSeconds ? QJsonValue(*photo.zoneSeconds) : QJsonValue() },
        { u"added"_s, CaseFile::text(photo.added) },
        { u"seconds"_s, number(photo.seconds) },
        { u"size"_s,
          photo.widthPx > 0 ? QJsonArray { photo.widthPx, photo.heightPx } : QJsonArray() },
        { u"place"_s,
          photo.place ? QJsonArray { photo.place->latitude, photo.place->longitude }
                      : QJsonArray() },
        { u"burst"_s, photo.burst ? photo.burst->identifier : QString() },
        { u"chosen"_s, photo.burst && photo.burst->chosen },
        { u"onTop"_s, photo.burst && photo.burst->onTop },
        { u"albums"_s, albums },
        { u"favourite"_s, photo.favourite },
        { u"hidden"_s, photo.hidden },
        { u"edited"_s, photo.edited },
        { u"deleted"_s, photo.deleted },
        { u"deletedOn"_s, CaseFile::text(photo.deletedOn) },
    });
}

CaseFile::Records photos(Source &source)
{
    CaseFile::Records records;
    readPhotos(source, [&](const Photo &photo) { records.append(json(source, photo)); });
    return records;
}

CaseFile::Records albums(Source &source)
{
    CaseFile::Records records;
    PhotoFacts facts(source, DataType::SharedAlbums);
    for (const SharedAlbum &album : sharedAlbums(source)) {
        records.append(CaseFile::filled({ { u"id"_s, QString::fromUtf8(album.identifier) },
                                          { u"owner"_s, QString::fromUtf8(album.owner) },
                                          { u"title"_s, album.title } }));
        for (const FileIndex::Row row : album.files) {
            Photo photo;
            photo.file = row;
            facts.describe(row, photo);
            records.append(json(source, photo));
        }
    }
    return records;
}

CaseFile::Records memos(Source &source)
{
    CaseFile::Records records;
    for (const VoiceMemo &memo : voiceMemos(source)) {
        records.append(CaseFile::filled({
            { u"file"_s, nameOf(source, memo.file) },
            { u"id"_s, memo.identifier },
            { u"row"_s, memo.row < 0 ? QJsonValue() : QJsonValue(memo.row) },
            { u"title"_s, memo.title },
            { u"stem"_s, memo.stem },
            { u"folder"_s, memo.folder },
            { u"date"_s, CaseFile::text(memo.date) },
            { u"seconds"_s, number(memo.seconds) },
            { u"deleted"_s, memo.deleted },
            { u"deletedOn"_s, CaseFile::text(memo.deletedOn) },
            { u"transcript"_s, transcriptOf(source, memo) },
        }));
    }
    return records;
}

CaseFile::Records bookList(Source &source)
{
    static constexpr std::array kKinds { "epub", "pdf", "authored" };
    CaseFile::Records records;
    for (const Book &book : books(source)) {
        records.append(CaseFile::filled({
            { u"path"_s, QString::fromUtf8(book.path) },
            { u"parts"_s,
              book.parts.empty() ? QJsonValue() : QJsonValue(qint64(book.parts.size())) },
            { u"kind"_s, QString::fromLatin1(kKinds.at(std::size_t(book.kind))) },
            { u"id"_s, book.identifier },
            { u"title"_s, book.title },
            { u"author"_s, book.author },
        }));
    }
    return records;
}

CaseFile::Records songs(Source &source)
{
    CaseFile::Records records;
    const MusicLibrary library(source);
    readSongs(source, [&](Song song) {
        library.describe(song);
        records.append(CaseFile::filled({
            { u"file"_s, nameOf(source, song.file) },
            { u"ringtone"_s, song.ringtone },
            { u"id"_s, song.identifier },
            { u"title"_s, song.title },
            { u"artist"_s, song.artist },
            { u"album"_s, song.album },
            { u"seconds"_s, number(song.seconds) },
        }));
    });
    return records;
}

CaseFile::Records documents(Source &source)
{
    CaseFile::Records records;
    const AppDocuments documents(source);
    for (std::size_t i = 0; i < documents.count(); ++i) {
        const AppDocument document = documents.at(i);
        records.append({ { u"domain"_s, QString::fromUtf8(document.domain) },
                         { u"app"_s, QString::fromUtf8(document.app) },
                         { u"path"_s, QString::fromUtf8(document.path) } });
    }
    return records;
}

CaseFile::Records readCase(Source &source, const QString &what)
{
    static const QHash<QString, CaseFile::Records (*)(Source &)> kReaders {
        { u"photos"_s, &photos },  { u"albums"_s, &albums }, { u"memos"_s, &memos },
        { u"books"_s, &bookList }, { u"songs"_s, &songs },   { u"documents"_s, &documents },
    };
    return kReaders.value(what)(source);
}

} // namespace

class tst_MediaCases : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void records_data() { CaseFile::addRows(u"media"_s); }
    void records()
    {
        QFETCH(QString, path);
        const QByteArray difference = CaseFile::difference(path, &readCase);
        QVERIFY2(difference.isEmpty(), difference.constData());
    }
};

QTEST_GUILESS_MAIN(tst_MediaCases)
#include "tst_MediaCases.moc"
