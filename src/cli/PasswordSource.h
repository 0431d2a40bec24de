#ifndef CLI_PASSWORDSOURCE_H
#define CLI_PASSWORDSOURCE_H

#include "Export/Backups.h"

#include <QString>

#include <variant>

namespace Cli {

/*!
    \brief Where the password of an encrypted backup comes from: a file, the environment, or the
    person at the terminal; the first of them that there is.
*/
class PasswordSource
{
public:
    //! Of \a backup. \a file: path of the password file, empty for none.
    PasswordSource(const QString &file, const Export::BackupInfo &backup);

    //! The password to try next, or why there is none.
    std::variant<Export::Secret, Export::Failure> next();

    //! Whether another try makes sense: a person was asked, and not yet three times.
    bool canTryAgain() const;

private:
    std::variant<Export::Secret, Export::Failure> ask();

    QString m_file;
    Export::BackupInfo m_backup;
    int m_asked = 0;
};

} // namespace Cli

#endif
