#ifndef PHONEBACKUP_BASE_FOLDERREADER_H
#define PHONEBACKUP_BASE_FOLDERREADER_H

#include <QByteArray>
#include <QString>

#include <dirent.h>
#include <memory>
#include <sys/stat.h>
#include <sys/types.h>

namespace PhoneBackup {

/*!
    \brief Lists one folder and leaves its access time as it is, where the system grants that.

    Entries come in the file system's order, "." and ".." left out.
*/
class FolderReader
{
public:
    explicit FolderReader(const QString &path);

    //! The folder \a name inside \a parent; a symbolic link is not followed.
    FolderReader(const FolderReader &parent, const QByteArray &name);

    bool isOpen() const { return m_dir != nullptr; }

    //! What the system said, when it is not open.
    QString error() const;
    int errorCode() const { return m_errno; }

    //! The next name, empty at the end.
    QByteArray next();

    //! Status of the entry \a name itself, not of what a link points to.
    bool status(const QByteArray &name, struct stat &status) const;

private:
    struct Close
    {
        void operator()(DIR *dir) const { ::closedir(dir); }
    };

    void open(int parent, const QByteArray &path, int extraFlags);

    std::unique_ptr<DIR, Close> m_dir;
    int m_errno = 0;
};

} // namespace PhoneBackup

#endif
