#ifndef CLI_BACKUPACCESS_H
#define CLI_BACKUPACCESS_H

#include "Export/Backups.h"

#include <QList>
#include <QString>

#include <memory>
#include <variant>

//! From the BACKUP of the command line to an open backup.
namespace Cli {

class Console;
struct Options;

//! No backup was chosen; several says among which ones the user has to.
struct NoChoice
{
    Export::Failure failure;
    QList<Export::BackupInfo> several;
    QStringList table; //!< The same for a person.
};

//! The backup at \a path, or the only one in it.
std::variant<Export::BackupInfo, NoChoice> chooseBackup(Console &console, const QString &path);

/*!
    Opens the backup \a info as \a options want it, and says which one it is. For an encrypted one
    the password is fetched, and asked for up to three times.
*/
std::variant<std::unique_ptr<Export::Backup>, Export::Failure>
openBackup(Console &console, const Export::BackupInfo &info, const Options &options);

} // namespace Cli

#endif
