#include "SelectedBackup.h"

#include <utility>

namespace Cli {

SelectedBackup::SelectedBackup(const BkBackup &backup,
                               const QList<int> &codes,
                               TypeStarts typeStarts)
    : m_backup(backup)
    , m_codes(codes)
    , m_typeStarts(std::move(typeStarts))
{
}

BkData *SelectedBackup::getBkData(int code) const
{
    return m_codes.contains(code) ? m_backup.getBkData(code) : nullptr;
}

QString SelectedBackup::dataTypeName(int code) const
{
    m_typeStarts(code);
    return m_backup.dataTypeName(code);
}

QString SelectedBackup::backupProperty(int key) const
{
    return m_backup.backupProperty(key);
}

} // namespace Cli
