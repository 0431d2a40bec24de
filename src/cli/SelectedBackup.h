#ifndef CLI_SELECTEDBACKUP_H
#define CLI_SELECTEDBACKUP_H

#include "backup/BkBackup.h"

#include <QList>

#include <functional>

namespace Cli {

/*!
    \brief Lets the selected data types of a backup through and hides the others.

    The exporter asks for a type's name just before it exports it: that is how the program learns
    what is being exported now.
    \par Owner
    The backup is borrowed.
*/
class SelectedBackup final : public BkBackup
{
public:
    using TypeStarts = std::function<void(int code)>;

    SelectedBackup(const BkBackup &backup, const QList<int> &codes, TypeStarts typeStarts);

    BkData *getBkData(int code) const override;
    QString dataTypeName(int code) const override;
    QString backupProperty(int key) const override;

private:
    const BkBackup &m_backup;
    QList<int> m_codes;
    TypeStarts m_typeStarts;
};

} // namespace Cli

#endif
