#ifndef EXPORT_PREPARATION_H
#define EXPORT_PREPARATION_H

#include "Export/Backups.h"
#include "Export/Failure.h"
#include "Export/Inventory.h"

#include <QString>

#include <optional>
#include <variant>

namespace Export {

class Observer;
struct Request;

/*!
    \brief Everything done before the first file of an export is written.

    \par Owner
    All arguments are borrowed.
*/
class Preparation
{
public:
    //! \a info is the backup that \a request names.
    Preparation(const Request &request, const BackupInfo &info);

    //! OUTPUT as an absolute path.
    const QString &output() const { return m_output; }

    //! Checks whether OUTPUT can be used. Call it before asking for a password.
    std::optional<Failure> checkOutput() const;

    /*!
        Reads what the open \a backup contains and creates OUTPUT, unless there is not enough space.
    */
    std::variant<Inventory, Failure>
    prepare(const Backup &backup, Observer &observer, const KeepGoing &keepGoing) const;

private:
    std::optional<Failure> makeOutput() const;

    const Request &m_request;
    const BackupInfo &m_info;
    QString m_output;
    bool m_isLink;
};

/*!
    Reads what \a backup contains of the data types \a codes. Fails if \a keepGoing asked to stop,
    or if something could not be read because of the temporary folder.
*/
std::variant<Inventory, Failure> takeInventory(const Backup &backup,
                                               const QList<int> &codes,
                                               Observer &observer,
                                               const KeepGoing &keepGoing);

} // namespace Export

#endif
