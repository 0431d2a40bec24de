#ifndef PHONEBACKUP_MODEL_BACKUP_H
#define PHONEBACKUP_MODEL_BACKUP_H

#include "backup/BkBackup.h"
#include "folder/BackupInfo.h"
#include "folder/Password.h"
#include "folder/Result.h"

#include <QList>

#include <functional>
#include <memory>

namespace PhoneBackup {

struct MessageFilter;

//! Something of the backup that could not be read, though other things can.
struct Problem
{
    int dataType = -1; //!< Code of the data type that it belongs to, -1 for the backup as a whole.
    QString source; //!< What could not be read: domain and path, or a file of the folder.
    QString what; //!< Whole sentences for a person.
    bool loss = true; //!< false: a warning; everything that is there is exported all the same.
    bool absent = false; //!< No fault at all: backups of this kind never hold it.
    Fault fault = Fault::Corrupt; //!< What kind of fault it is.
    int systemError = 0; //!< As Error::systemError.
    bool neverDownloaded = false; //!< No fault: the phone itself does not have the file \c source.
    qint64 row = 0; //!< Keeps apart what has one name.
};

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
    //! Asked now and then while something long is read; false stops it with Fault::Cancelled.
    using KeepGoing = std::function<bool()>;

    /*!
        Opens the backup folder \a path (BackupInfo::path of findBackups()). \a keepGoing is kept
        and asked while data sets are read, too; a set that it stopped is incomplete, and problems()
        says so. An encrypted backup needs its \a password: Fault::Encrypted without one,
        Fault::WrongPassword, after as long as a right one takes, with another.
    */
    static Result<std::unique_ptr<Backup>>
    open(const QString &path, const KeepGoing &keepGoing = {}, const Password &password = {});
    ~Backup() override;

    const BackupInfo &info() const;

    //! Codes of the data types that this reader can read, in the order of their codes.
    static QList<int> dataTypes();

    /*!
        Limits the conversations and what was sent in them to what \a filter accepts; conversations
        without a message left are not listed. To be called before a data set is asked for: what has
        been read stays as it is.
    */
    void setMessageFilter(const MessageFilter &filter);

    //! How many messages are stored in the conversations of data type \a code that the filter
    //! accepts, reactions and the like among them; -1 for a type that has none.
    qint64 messageCount(int code) const;

    //! What could not be read so far. Grows with the data sets that are asked for.
    QList<Problem> problems() const;

    BkData *getBkData(int code) const override;
    QString dataTypeName(int code) const override;
    QString backupProperty(int key) const override;

private:
    class Private;
    explicit Backup(std::unique_ptr<Private> d);

    std::unique_ptr<Private> m_d;
};

} // namespace PhoneBackup

#endif
