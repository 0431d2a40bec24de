#ifndef PHONEITEMS_BACKUP_H
#define PHONEITEMS_BACKUP_H

#include "PhoneBackup/base/KeepGoing.h"
#include "PhoneBackup/base/Problem.h"
#include "PhoneBackup/base/Result.h"
#include "PhoneBackup/folder/BackupInfo.h"
#include "PhoneBackup/folder/Password.h"
#include "backup/BkBackup.h"

#include <QList>

#include <functional>
#include <memory>

namespace PhoneBackup {
class Source;
struct MessageFilter;
} // namespace PhoneBackup

namespace PhoneItems {

/*!
    \brief The item model over a backup folder on disk.

    Opening reads the index; a data set is read when it is first asked for, and then kept. A damaged
    source leaves its own data set shorter or without names, says so in problems(), and takes no
    other with it.
    \par Files
    The items of an encrypted backup are streams; who asks for paths nevertheless gets a decrypted
    copy that lasts until the next path is asked for.
    Everything is opened read-only; nothing in the folder is written, access times included where
    the system grants that.
    \par Thread
    Reentrant, not thread-safe.
*/
class Backup : public BkBackup
{
public:
    /*!
        Opens the backup folder \a path (BackupInfo::path of findBackups()). \a keepGoing is kept
        and asked while data sets are read, too; a set that it stopped is incomplete, and problems()
        says so. An encrypted backup needs its \a password: Fault::Encrypted without one,
        Fault::WrongPassword, after as long as a right one takes, with another.
    */
    static PhoneBackup::Result<std::unique_ptr<Backup>>
    open(const QString &path,
         const PhoneBackup::KeepGoing &keepGoing = {},
         const PhoneBackup::Password &password = {});
    ~Backup() override;

    const PhoneBackup::BackupInfo &info() const;

    //! Codes of the data types that this reader can read, in the order of their codes.
    static QList<int> dataTypes();

    /*!
        Limits the conversations and what was sent in them to what \a filter accepts; conversations
        without a message left are not listed. To be called before a data set is asked for: what has
        been read stays as it is.
    */
    void setMessageFilter(const PhoneBackup::MessageFilter &filter);

    //! How many messages are stored in the conversations of data type \a code that the filter
    //! accepts, reactions and the like among them; -1 for a type that has none.
    qint64 messageCount(int code) const;

    //! What everything is read from; what is noticed there stands in problems(), too.
    PhoneBackup::Source &source() const;

    //! What could not be read so far. Grows with the data sets that are asked for.
    QList<PhoneBackup::Problem> problems() const;

    BkData *getBkData(int code) const override;
    QString dataTypeName(int code) const override;
    QString backupProperty(int key) const override;

private:
    class Private;
    explicit Backup(std::unique_ptr<Private> d);

    std::unique_ptr<Private> m_d;
};

} // namespace PhoneItems

#endif
