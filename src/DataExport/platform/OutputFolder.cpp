#include "platform/OutputFolder_p.h"
#include "platform/Translation_p.h"

#include <QFile>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

DATAEXPORT_USE_TR(DataExport);

QString OutputFolder::Made::reason(const QString &path) const
{
    if (error == ENOTDIR || error == EEXIST)
        return tr("The folder “%1” could not be created: a file of that name exists.").arg(path);
    if (error == ELOOP)
        return tr("“%1” is a symbolic link, and nothing is written through links. Remove it or "
                  "choose another folder.")
            .arg(path);
    return tr("The folder “%1” could not be created: %2.").arg(path, qt_error_string(error));
}

OutputFolder::Made OutputFolder::make(const QString &path, Links links)
{
    const QByteArray native = QFile::encodeName(path);
    if (::mkdir(native.constData(), 0777) == 0)
        return { 0, true };
    const int error = errno;
    struct stat status
    {
    };
    if (::lstat(native.constData(), &status) != 0)
        return { error };
    if (S_ISLNK(status.st_mode)) {
        if (links == Links::Refused)
            return { ELOOP };
        if (::stat(native.constData(), &status) != 0)
            return { errno };
    }
    return { S_ISDIR(status.st_mode) ? 0 : ENOTDIR };
}

void OutputFolder::removeEmpty(const QString &path)
{
    ::rmdir(QFile::encodeName(path).constData());
}
