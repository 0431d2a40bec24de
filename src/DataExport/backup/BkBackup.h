#ifndef DATAEXPORT_BACKUP_BKBACKUP_H
#define DATAEXPORT_BACKUP_BKBACKUP_H

#include "DataExport_global.h"

#include <QString>

class BkData;

/*!
    \brief A parsed backup: its owner and its data sets.

    Item model, implemented by the application, which owns everything that it returns.
*/
class DATAEXPORT_EXPORT BkBackup
{
public:
    BkBackup() = default;
    virtual ~BkBackup();

    BkBackup(const BkBackup &) = delete;
    BkBackup &operator=(const BkBackup &) = delete;

    //! The data set of type \a code, a BkDataType::Code; null when the backup has none. Asked more
    //! than once per export.
    virtual BkData *getBkData(int code) const = 0;

    //! Display name of data type \a code, as BkDataType::displayName(); becomes the name of its
    //! output folder.
    virtual QString dataTypeName(int code) const = 0;

    //! Property \a key of the backup. 0: the name of its owner.
    virtual QString backupProperty(int key) const = 0;
};

#endif
