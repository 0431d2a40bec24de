#include "PhoneBackup/media/Songs.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kTones = "TonesDomain";
constexpr QByteArrayView kMedia = "MediaDomain";
constexpr QByteArrayView kRecordings = "Media/Recordings/"; // voice memos

// By file name.
QHash<QString, Song> ringtones(Source &source, QByteArrayView domain)
{
    constexpr double kMsPerSecond = 1000;
    QHash<QString, Song> known;
    const QVariantMap tones =
        source
            .propertyList(DataType::Music, domain, u"Media/iTunes_Control/iTunes/Ringtones.plist"_s)
            .value("Ringtones")
            .toMap();
    for (auto it = tones.cbegin(); it != tones.cend(); ++it) {
        const QVariantMap tone = it->toMap();
        Song song;
        song.ringtone = true;
        song.identifier = tone.value(u"GUID"_s).toString();
        song.title = tone.value(u"Name"_s).toString().trimmed();
        if (const double ms = tone.value(u"Total Time"_s).toDouble(); ms > 0)
            song.seconds = ms / kMsPerSecond;
        known.insert(it.key(), song);
    }
    return known;
}

} // namespace

void readSongs(Source &source, const std::function<void(const Song &)> &sink)
{
    const FileIndex &index = source.index();
    for (const QByteArrayView domain : { kTones, kMedia }) {
        const QHash<QString, Song> known = ringtones(source, domain);
        const FileIndex::Range range = index.walk(domain, "Media/");
        for (FileIndex::Row row = range.first; row < range.last && source.keepGoing(); ++row) {
            const QByteArrayView path = index.path(row);
            if (index.kind(row) != FileIndex::Kind::File || mediaKind(path) != MediaKind::Audio
                || PathParts::isHidden(path) || path.startsWith(kRecordings))
                continue;
            Song song = known.value(PathParts::text(PathParts::name(path)));
            song.file = row;
            song.ringtone = song.ringtone || domain == kTones;
            sink(song);
        }
    }
}

} // namespace PhoneBackup
