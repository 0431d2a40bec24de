#include "PhoneBackup/messages/AttachmentFiles.h"

#include <array>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

QString withoutHome(const QString &path)
{
    static constexpr std::array<QLatin1StringView, 3> kHomes { "~/"_L1,
                                                               "/var/mobile/"_L1,
                                                               "/private/var/mobile/"_L1 };
    for (const QLatin1StringView home : kHomes) {
        if (path.startsWith(home))
            return path.sliced(home.size());
    }
    return path;
}

} // namespace

FileIndex::Row AttachmentFiles::find(const QString &path) const
{
    if (path.isEmpty())
        return FileIndex::kNone;
    const QString relative = withoutHome(path);
    for (const QByteArrayView domain : { kDomain, QByteArrayView("HomeDomain") }) {
        const FileIndex::Row row = m_index.find(domain, relative);
        if (row != FileIndex::kNone)
            return row;
    }
    const qsizetype folder = path.indexOf(QLatin1StringView(kFolder.data(), kFolder.size()));
    return folder < 0 ? FileIndex::kNone : m_index.find(kDomain, path.sliced(folder));
}

FileIndex::Row AttachmentFiles::findFile(const QString &path) const
{
    const FileIndex::Row row = find(path);
    return row != FileIndex::kNone && m_index.kind(row) == FileIndex::Kind::File ? row
                                                                                 : FileIndex::kNone;
}

} // namespace PhoneBackup
