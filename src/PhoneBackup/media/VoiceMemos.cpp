#include "PhoneBackup/media/VoiceMemos.h"

#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/shared/FileData.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kVoiceMemos = 3;
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

// What a database tells of a recording.
struct Memo
{
    QString title;
    QDateTime date;
    qint64 id = -1;
    bool deleted = false;
};

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

    void read(DataSets &sets)
    {
        for (const Place &place : kPlaces) {
            readDatabase(place, u"CloudRecordings.db"_s);
            readDatabase(place, u"Recordings.db"_s);
        }
        for (const Place &place : kPlaces)
            collect(place);
        std::stable_sort(m_entries.begin(), m_entries.end(), [](const auto &a, const auto &b) {
            return PhoneTime::isNewer(a.date, b.date);
        });
        auto data = std::make_unique<FileData>(kVoiceMemos, m_source.files());
        for (const FileEntry &entry : m_entries)
            data->add(entry);
        sets[kVoiceMemos] = std::move(data);
    }

private:
    void readDatabase(const Place &place, const QString &name)
    {
        const std::optional<Database> database =
            m_source.openDatabase(kVoiceMemos, place.domain, PathParts::text(place.folder) + name);
        if (!database)
            return;
        for (const QString &table : { u"ZCLOUDRECORDING"_s, u"ZRECORDING"_s })
            readTable(*database, table);
    }

    void readTable(const Database &database, const QString &table)
    {
        const QStringList columns = database.columns(table);
        if (!columns.contains("ZPATH"_L1))
            return;
        const auto column = [&](const QString &name) { return columnOrNull(columns, name); };
        const QString sql = u"SELECT ZPATH, %1, %2, %3, %4, %5, Z_PK FROM %6"_s.arg(
            column(u"ZENCRYPTEDTITLE"_s),
            column(u"ZCUSTOMLABELFORSORTING"_s),
            column(u"ZCUSTOMLABEL"_s),
            column(u"ZDATE"_s),
            column(u"ZEVICTIONDATE"_s),
            table);
        m_source.query(kVoiceMemos, database, sql, [this](const Statement &row) {
            const QByteArray name = PathParts::name(row.bytes(0)).toByteArray();
            if (name.isEmpty()) // not downloaded
                return;
            Memo memo;
            for (int field = 1; field <= 3 && memo.title.isEmpty(); ++field) {
                const QString title = row.text(field).trimmed();
                if (field == 1 || !isTime(title))
                    memo.title = title;
            }
            memo.date = PhoneTime::since2001(row.number(4));
            memo.deleted = row.number(5).value_or(0) != 0;
            memo.id = row.integer(6);
            if (!m_memos.contains(name))
                m_memos.insert(name, memo);
            const QByteArray stem = PathParts::stem(name).toByteArray();
            if (!m_memos.contains(stem))
                m_memos.insert(stem, memo);
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
        Memo memo = m_memos.value(PathParts::name(path).toByteArray());
        if (memo.id < 0)
            memo = m_memos.value(stem);
        if (memo.title.isEmpty())
            memo.title = titleInComposition(place, recording, stem);
        if (memo.title.isEmpty())
            memo.title = PathParts::text(stem);
        if (!memo.date.isValid())
            memo.date = dateInName(stem);
        if (!memo.date.isValid())
            memo.date = m_source.files().record(row).modified;

        FileEntry entry;
        entry.row = row;
        entry.name = OutputNames::clean(memo.title, PathParts::text(PathParts::extension(path)));
        entry.date = memo.date;
        entry.id = memo.id;
        entry.deleted = memo.deleted;
        m_entries.append(entry);
    }

    QString titleInComposition(const Place &place, QByteArrayView recording, const QByteArray &stem)
    {
        const QString list = PathParts::text(PathParts::folder(recording)) + u'/'
            + PathParts::text(stem) + ".composition/manifest.plist"_L1;
        return m_source.propertyList(kVoiceMemos, place.domain, list)
            .value("RCSavedRecordingTitle")
            .toString()
            .trimmed();
    }

    Source &m_source;
    QHash<QByteArray, Memo> m_memos; // by file name, with and without its extension
    QList<FileEntry> m_entries;
};

} // namespace

void readVoiceMemos(Source &source, DataSets &sets)
{
    VoiceMemos(source).read(sets);
}

} // namespace PhoneBackup
