#include "PhoneBackup/media/VoiceMemos.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/media/Transcript.h"
#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/MovieBoxes.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

#include <QIODevice>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kLayers = ".composition/";

struct Place
{
    QByteArrayView domain;
    QByteArrayView folder;
};

// Newest first: what a newer place tells of a memo goes first.
constexpr std::array<Place, 3> kPlaces { {
    { "AppDomainGroup-group.com.apple.VoiceMemos.shared", "Recordings/" },
    { "MediaDomain", "Media/Recordings/" },
    { "MediaDomain", "Library/Recordings/" },
} };

// Newer systems keep the moment of recording where older ones keep the title.
bool isTime(const QString &label)
{
    static const QRegularExpression kIsoTime(uR"(^\d{4}-\d\d-\d\d[T ]\d\d:\d\d(:\d\d)?)"_s);
    return kIsoTime.match(label).hasMatch();
}

bool isRecording(QByteArrayView path)
{
    const MediaKind kind = mediaKind(path);
    return kind == MediaKind::Audio || kind == MediaKind::Video;
}

// "…/Name" of ".../Name.composition/fragments/1.m4a", empty for what is no layer.
QByteArrayView mainRecording(QByteArrayView path)
{
    const qsizetype layers = path.indexOf(kLayers);
    return layers < 0 ? QByteArrayView() : path.first(layers);
}

// The names of recordings begin with their moment: "20230308 202640-ABCD.m4a".
QDateTime dateInName(QByteArrayView path)
{
    constexpr qsizetype kLength = 15;
    const QString name = PathParts::text(PathParts::stem(path));
    return QDateTime::fromString(name.left(kLength), u"yyyyMMdd HHmmss"_s);
}

class VoiceMemos
{
public:
    explicit VoiceMemos(Source &source)
        : m_source(source)
    {
    }

    std::vector<VoiceMemo> read()
    {
        for (const Place &place : kPlaces) {
            readDatabase(place, u"CloudRecordings.db"_s);
            readDatabase(place, u"Recordings.db"_s);
        }
        for (const Place &place : kPlaces)
            collect(place);
        std::stable_sort(m_found.begin(), m_found.end(), [](const auto &a, const auto &b) {
            return PhoneTime::isNewer(a.date, b.date);
        });
        return std::move(m_found);
    }

private:
    void readDatabase(const Place &place, const QString &name)
    {
        const std::optional<Database> database = m_source.openDatabase(
            DataType::VoiceMemos, place.domain, PathParts::text(place.folder) + name);
        if (!database)
            return;
        const QHash<qint64, QString> folders = readFolders(*database);
        for (const QString &table : { u"ZCLOUDRECORDING"_s, u"ZRECORDING"_s })
            readTable(*database, table, folders);
    }

    QHash<qint64, QString> readFolders(const Database &database)
    {
        QHash<qint64, QString> folders;
        const QStringList columns = database.columns(u"ZFOLDER"_s);
        if (columns.contains("Z_PK"_L1) && columns.contains("ZENCRYPTEDNAME"_L1)) {
            m_source.query(DataType::VoiceMemos,
                           database,
                           u"SELECT Z_PK, ZENCRYPTEDNAME FROM ZFOLDER"_s,
                           [&folders](const Statement &row) {
                               folders.insert(row.integer(0), row.text(1).trimmed());
                           });
        }
        return folders;
    }

    void
    readTable(const Database &database, const QString &table, const QHash<qint64, QString> &folders)
    {
        enum Column {
            Path,
            Title,
            SortingLabel,
            Label,
            Date,
            Evicted,
            Number,
            Seconds,
            Folder,
            Id
        };
        const QStringList columns = database.columns(table);
        if (!columns.contains("ZPATH"_L1))
            return;
        QStringList wanted;
        for (const char *name : { "ZPATH",
                                  "ZENCRYPTEDTITLE", // plain text, whatever it is called
                                  "ZCUSTOMLABELFORSORTING",
                                  "ZCUSTOMLABEL",
                                  "ZDATE",
                                  "ZEVICTIONDATE",
                                  "Z_PK",
                                  "ZDURATION",
                                  "ZFOLDER",
                                  "ZUNIQUEID" })
            wanted.append(columnOrNull(columns, QString::fromLatin1(name)));
        const QString sql = u"SELECT %1 FROM %2"_s.arg(wanted.join(u", "_s), table);
        m_source.query(DataType::VoiceMemos, database, sql, [&](const Statement &row) {
            const QByteArray name = PathParts::name(row.bytes(Path)).toByteArray();
            if (name.isEmpty()) // not downloaded
                return;
            VoiceMemo memo;
            for (const Column column : { Title, SortingLabel, Label }) {
                const QString title = row.text(column).trimmed();
                if (memo.title.isEmpty() && (column == Title || !isTime(title)))
                    memo.title = title;
            }
            memo.date = PhoneTime::since2001(row.number(Date));
            memo.deleted = row.number(Evicted).value_or(0) != 0;
            memo.deletedOn = PhoneTime::since2001(row.number(Evicted));
            memo.row = row.integer(Number);
            memo.seconds = row.number(Seconds);
            memo.folder = folders.value(row.integer(Folder));
            memo.identifier = row.text(Id);
            // Newer places come first, and what they tell is kept.
            for (const QByteArray &key : { name, PathParts::stem(name).toByteArray() }) {
                if (!m_memos.contains(key))
                    m_memos.insert(key, memo);
            }
        });
    }

    void collect(const Place &place)
    {
        const FileIndex &index = m_source.index();
        const FileIndex::Range range = index.walk(place.domain, place.folder);
        for (FileIndex::Row row = range.first; row < range.last && m_source.keepGoing(); ++row) {
            const QByteArrayView path = index.path(row);
            if (index.kind(row) != FileIndex::Kind::File || PathParts::isHidden(path)
                || !isRecording(path))
                continue;
            const QByteArrayView main = mainRecording(path);
            // Layers are parts of a recording that is there in one piece.
            if (main.isEmpty() || !hasRecording(place, main))
                add(place, row, main.isEmpty() ? path : main);
        }
    }

    bool hasRecording(const Place &place, QByteArrayView stem) const
    {
        const FileIndex &index = m_source.index();
        const FileIndex::Range range = index.walk(place.domain, stem.toByteArray() + '.');
        for (FileIndex::Row row = range.first; row < range.last; ++row) {
            const QByteArrayView path = index.path(row);
            if (index.kind(row) == FileIndex::Kind::File && isRecording(path)
                && mainRecording(path).isEmpty() && PathParts::stem(path) == PathParts::name(stem))
                return true;
        }
        return false;
    }

    // \a recording: the path of the recording that the file is or belongs to.
    void add(const Place &place, FileIndex::Row row, QByteArrayView recording)
    {
        const FileIndex &index = m_source.index();
        const QByteArrayView path = index.path(row);
        const QByteArray stem = recording == path ? PathParts::stem(path).toByteArray()
                                                  : PathParts::name(recording).toByteArray();
        // Layers are called alike in all recordings: their own names tell nothing.
        VoiceMemo memo =
            m_memos.value(recording == path ? PathParts::name(path).toByteArray() : stem);
        if (memo.row < 0)
            memo = m_memos.value(stem);
        memo.file = row;
        memo.stem = PathParts::text(stem);
        if (memo.title.isEmpty())
            memo.title = titleInComposition(place, recording, stem);
        if (!memo.date.isValid())
            memo.date = dateInName(stem);
        if (!memo.date.isValid())
            memo.date = m_source.files().record(row).modified;
        m_found.push_back(memo);
    }

    QString titleInComposition(const Place &place, QByteArrayView recording, const QByteArray &stem)
    {
        const QString list = PathParts::text(PathParts::folder(recording)) + u'/'
            + PathParts::text(stem) + ".composition/manifest.plist"_L1;
        return m_source.propertyList(DataType::VoiceMemos, place.domain, list)
            .value("RCSavedRecordingTitle")
            .toString()
            .trimmed();
    }

    Source &m_source;
    QHash<QByteArray, VoiceMemo> m_memos; // by file name, with and without its extension
    std::vector<VoiceMemo> m_found;
};

} // namespace

std::vector<VoiceMemo> voiceMemos(Source &source)
{
    return VoiceMemos(source).read();
}

QString transcriptOf(Source &source, const VoiceMemo &memo)
{
    constexpr qint64 kMaxMovieBytes = 32 << 20; // hours of speech, each word with its time
    const Result<std::unique_ptr<QIODevice>> file = source.files().openContent(memo.file);
    return file ? recordingTranscript(MovieBoxes::movie(*file.value(), kMaxMovieBytes)) : QString();
}

} // namespace PhoneBackup
