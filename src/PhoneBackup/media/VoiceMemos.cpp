#include "PhoneBackup/media/VoiceMemos.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/media/Transcript.h"
#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/MovieBoxes.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/Table.h"

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
        std::optional<RowDatabase> database =
            RowDatabase::open(m_source,
                              DataType::VoiceMemos,
                              place.domain,
                              PathParts::text(place.folder) + name,
                              RowDatabase::Consequence::filesStay());
        if (!database)
            return;
        const QHash<qint64, QString> folders = readFolders(*database);
        for (const QString &table : { u"ZCLOUDRECORDING"_s, u"ZRECORDING"_s })
            readTable(*database, table, folders);
    }

    static QHash<qint64, QString> readFolders(RowDatabase &database)
    {
        QHash<qint64, QString> folders;
        Table table(database, u"ZFOLDER"_s);
        const auto name = table.column(u"ZENCRYPTEDNAME"_s);
        table.forEach(
            [&](const Table::Row &row) { folders.insert(row.id(), row.text(name).trimmed()); });
        return folders;
    }

    void
    readTable(RowDatabase &database, const QString &name, const QHash<qint64, QString> &folders)
    {
        Table table(database, name);
        const auto path = table.column(u"ZPATH"_s);
        const auto title = table.column(u"ZENCRYPTEDTITLE"_s); // plain text, whatever it is called
        const auto labels = table.columns(u"ZCUSTOMLABELFORSORTING"_s, u"ZCUSTOMLABEL"_s);
        const auto date = table.column(u"ZDATE"_s);
        const auto evicted = table.column(u"ZEVICTIONDATE"_s);
        const auto seconds = table.column(u"ZDURATION"_s);
        const auto folder = table.column(u"ZFOLDER"_s);
        const auto identifier = table.column(u"ZUNIQUEID"_s);
        table.forEach([&, this](const Table::Row &row) {
            const QByteArray file = PathParts::name(row.bytes(path)).toByteArray();
            if (file.isEmpty()) // not downloaded
                return;
            VoiceMemo memo;
            memo.title = row.text(title).trimmed();
            for (const Table::Column label : labels) {
                const QString text = row.text(label).trimmed();
                if (memo.title.isEmpty() && !isTime(text))
                    memo.title = text;
            }
            memo.date = PhoneTime::since2001(row.number(date));
            memo.deleted = row.number(evicted).value_or(0) != 0;
            memo.deletedOn = PhoneTime::since2001(row.number(evicted));
            memo.row = row.id();
            memo.seconds = row.number(seconds);
            memo.folder = folders.value(row.integer(folder));
            memo.identifier = row.text(identifier);
            // Newer places come first, and what they tell is kept.
            for (const QByteArray &key : { file, PathParts::stem(file).toByteArray() }) {
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
