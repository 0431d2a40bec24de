#ifndef PHONEBACKUP_FOLDER_PRIVATEFOLDER_H
#define PHONEBACKUP_FOLDER_PRIVATEFOLDER_H

#include "folder/Result.h"

#include <QStringList>

#include <memory>

class QTemporaryDir;

namespace PhoneBackup {

/*!
    \brief A temporary folder that only its owner may enter, removed with this object.

    It lies in the system's temporary folder (TMPDIR), is made with the first path that is asked
    for, and refuses to lie inside the backup.
*/
class PrivateFolder
{
public:
    //! \a forbidden: the folder in which nothing may be written.
    explicit PrivateFolder(const QString &forbidden = {});
    ~PrivateFolder();

    //! Path of a new, empty folder in it.
    Result<QString> newSubFolder();

    /*!
        Copies the file \a source to the new file \a target, which must lie in this folder. Only
        bytes are copied; a failed copy is removed.
    */
    static Result<> copy(const QString &source, const QString &target);

private:
    QString m_forbidden;
    std::unique_ptr<QTemporaryDir> m_dir;
    int m_count = 0;
};

} // namespace PhoneBackup

#endif
