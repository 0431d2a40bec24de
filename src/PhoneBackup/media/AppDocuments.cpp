#include "PhoneBackup/media/AppDocuments.h"

#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

#include <algorithm>
#include <array>

namespace PhoneBackup {

namespace {

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

AppDocuments::AppDocuments(Source &source)
    : m_index(source.index())
{
    const FileIndex &index = m_index;
    for (const Place &place : kPlaces) {
        for (const QByteArray &domain : index.domains(place.domain)) {
            const FileIndex::Range range = index.walk(domain, place.folder);
            for (FileIndex::Row row = range.first; row < range.last && source.keepGoing(); ++row) {
                if (index.kind(row) == FileIndex::Kind::File && isForPeople(index.path(row)))
                    m_rows.push_back(row);
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
    std::stable_sort(m_rows.begin(), m_rows.end(), before);
}

AppDocument AppDocuments::at(std::size_t position) const
{
    const FileIndex::Row row = m_rows[position];
    const QByteArrayView domain = m_index.domain(row);
    return { row, domain, identifier(domain), m_index.path(row) };
}

} // namespace PhoneBackup
