#ifndef CLI_PASSWORDSOURCE_H
#define CLI_PASSWORDSOURCE_H

#include "Export/Backups.h"

#include <QString>

#include <variant>

namespace Cli {

/*!
    \brief Gets the password of an encrypted backup from a file, the environment or the user at the
    terminal, whichever is available first.
*/
class PasswordSource
{
public:
    //! For \a backup. \a file is the path of the password file; empty if there is none.
    PasswordSource(const QString &file, const Export::BackupInfo &backup);

    //! The next password to try, or why there is none.
    std::variant<Export::Secret, Export::Failure> next();

    //! Whether the user was asked, but fewer than three times.
    bool canTryAgain() const;

private:
    std::variant<Export::Secret, Export::Failure> ask();

    QString m_file;
    Export::BackupInfo m_backup;
    int m_asked = 0;
};

} // namespace Cli

#endif
