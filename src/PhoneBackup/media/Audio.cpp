#include "PhoneBackup/media/Audio.h"

#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/shared/FileData.h"

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kAudio = 5;
constexpr QByteArrayView kRecordings = "Media/Recordings/";

// Titles by file name.
QHash<QString, QString> ringtoneTitles(Source &source, QByteArrayView domain)
{
    QHash<QString, QString> titles;
    const QVariantMap tones =
        source.propertyList(kAudio, domain, u"Media/iTunes_Control/iTunes/Ringtones.plist"_s)
            .value("Ringtones")
            .toMap();
    for (auto it = tones.cbegin(); it != tones.cend(); ++it) {
        const QString title = it->toMap().value(u"Name"_s).toString().trimmed();
        if (!title.isEmpty())
            titles.insert(it.key(), title);
    }
    return titles;
}

} // namespace

void readAudio(Source &source, DataSets &sets)
{
    const FileIndex &index = source.index();
    std::vector<FileEntry> entries;
    for (const QByteArrayView domain :
         { QByteArrayView("TonesDomain"), QByteArrayView("MediaDomain") }) {
        const QHash<QString, QString> titles = ringtoneTitles(source, domain);
        const FileIndex::Range range = index.walk(domain, "Media/");
        for (FileIndex::Row row = range.first; row < range.last && source.keepGoing(); ++row) {
            const QByteArrayView path = index.path(row);
            if (index.kind(row) != FileIndex::Kind::File || mediaKind(path) != MediaKind::Audio
                || PathParts::isHidden(path) || path.startsWith(kRecordings))
                continue;
            FileEntry entry;
            entry.row = row;
            const QString title = titles.value(PathParts::text(PathParts::name(path)));
            entry.name =
                OutputNames::clean(title.isEmpty() ? PathParts::text(PathParts::stem(path)) : title,
                                   PathParts::text(PathParts::extension(path)));
            entries.push_back(entry);
        }
    }
    std::stable_sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) {
        return PathParts::compareNatural(a.name.toUtf8(), b.name.toUtf8()) < 0;
    });
    auto data = std::make_unique<FileData>(kAudio, source.files());
    for (const FileEntry &entry : entries)
        data->add(entry);
    sets[kAudio] = std::move(data);
}

} // namespace PhoneBackup
