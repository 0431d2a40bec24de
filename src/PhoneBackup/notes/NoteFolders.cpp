#include "PhoneBackup/notes/NoteFolders.h"

#include <QSet>
#include <QStringList>

namespace PhoneBackup {

namespace {

constexpr int kMostLevels = 32; // of folders in folders

} // namespace

QString NoteFolders::path(qint64 key) const
{
    QStringList names;
    QSet<qint64> seen;
    for (int level = 0; level < kMostLevels && !seen.contains(key); ++level) {
        const auto folder = m_folders.constFind(key);
        if (folder == m_folders.constEnd())
            break;
        seen.insert(key);
        names.prepend(folder->title);
        key = folder->parent;
    }
    return names.join(u'/');
}

bool NoteFolders::isTrash(qint64 key) const
{
    for (int level = 0; level < kMostLevels; ++level) {
        const auto folder = m_folders.constFind(key);
        if (folder == m_folders.constEnd())
            return false;
        if (folder->isTrash)
            return true;
        key = folder->parent;
    }
    return false;
}

} // namespace PhoneBackup
