#ifndef PHONEBACKUP_BASE_PRIVATEFOLDER_H
#define PHONEBACKUP_BASE_PRIVATEFOLDER_H

#include "PhoneBackup/base/KeepGoing.h"
#include "PhoneBackup/base/Result.h"

#include <QStringList>

#include <functional>
#include <memory>

class QIODevice;

namespace PhoneBackup {

/*!
    \brief A temporary folder that only its owner may enter, removed with this object.

    It lies in the system's temporary folder (TMPDIR), is made with the first path that is asked
    for, and refuses to lie inside the backup. While it is in use it is locked: what a run that was
    killed left behind has no lock, and is removed by the next one.
*/
class PrivateFolder
{
public:
    //! Asked between two pieces of a copy; false stops it.

    //! \a forbidden: the folder in which nothing may be written.
    explicit PrivateFolder(const QString &forbidden = {});
    ~PrivateFolder();

    //! Removes the private folders of the same user that no running program holds.
    static void removeLeftovers();

    /*!
        Path of a new, empty folder in it. Fault::TemporaryFolder when it cannot be made, and when
        there is no room in it for \a bytes.
    */
    Result<QString> newSubFolder(qint64 bytes = 0);

    //! What it is when the system refused to write there with \a systemError.
    static Error writeError(int systemError);

    /*!
        Copies the file \a source, which messages call \a name, to the new file \a target, which
        must lie in this folder. Only bytes are copied; a failed copy is removed. Fault::Io when \a
        source cannot be read, Fault::TemporaryFolder when \a target cannot be written.
    */
    static Result<> copy(const QString &source, const QString &name, const QString &target);

    //! The same from the open \a source.
    static Result<>
    copy(QIODevice &source, const QString &name, const QString &target, const KeepGoing &keepGoing);

private:
    class Folder;

    Result<> make();

    QString m_forbidden;
    std::unique_ptr<Folder> m_folder;
    int m_count = 0;
};

} // namespace PhoneBackup

#endif
