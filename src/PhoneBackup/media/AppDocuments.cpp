#include "PhoneBackup/media/AppDocuments.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/shared/FileData.h"

#include <algorithm>
#include <array>

namespace PhoneBackup {

namespace {

constexpr int kAppDocuments = 10;

struct Place
{
    QByteArrayView domain; // beginning of the domain
    QByteArrayView folder;
};

constexpr std::array<Place, 3> kPlaces { {
    { "AppDomain-", "Documents/" },
    { "AppDomainGroup-", "Documents/" },
    { "AppDomainGroup-group.com.apple.FileProvider.LocalStorage", "File Provider Storage/" },
} };

bool isForPeople(QByteArrayView path)
{
    // The trash of the Files app is a hidden folder, too.
    return !PathParts::isHidden(path) && path.indexOf("/Caches/") < 0;
}

// The app's identifier: what follows the kind of its domain.
QByteArrayView identifier(QByteArrayView domain)
{
    return domain.sliced(domain.indexOf('-') + 1);
}

} // namespace

void readAppDocuments(Source &source, DataSets &sets)
{
    const FileIndex &index = source.index();
    std::vector<FileIndex::Row> rows;
    for (const Place &place : kPlaces) {
        for (const QByteArray &domain : index.domains(place.domain)) {
            const FileIndex::Range range = index.walk(domain, place.folder);
            for (FileIndex::Row row = range.first; row < range.last && source.keepGoing(); ++row) {
                if (index.kind(row) == FileIndex::Kind::File && isForPeople(index.path(row)))
                    rows.push_back(row);
            }
        }
    }
    const auto before = [&index](FileIndex::Row a, FileIndex::Row b) {
        if (index.domain(a).data() != index.domain(b).data()) {
            const int order =
                PathParts::compareNatural(identifier(index.domain(a)), identifier(index.domain(b)));
            return order != 0 ? order < 0 : a < b; // an app and a group of one name stay apart
        }
        return PathParts::compareNatural(index.path(a), index.path(b)) < 0;
    };
    // Stable: it profits from the index's order, which is nearly this one.
    std::stable_sort(rows.begin(), rows.end(), before);

    auto data = std::make_unique<FileData>(kAppDocuments, source.files());
    data->reserve(qsizetype(rows.size()));
    QByteArrayView domain;
    int group = -1;
    for (const FileIndex::Row row : rows) {
        if (index.domain(row).data() != domain.data()) {
            domain = index.domain(row);
            group = data->addGroup(PathParts::text(identifier(domain)));
        }
        FileEntry entry;
        entry.row = row;
        entry.group = group;
        data->add(entry);
    }
    sets[kAppDocuments] = std::move(data);
}

} // namespace PhoneBackup
