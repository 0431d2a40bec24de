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
    \brief All that is done before the first file of an export is written.

    \par Owner
    Everything handed in is borrowed.
*/
class Preparation
{
public:
    //! \a request asks for the backup \a info.
    Preparation(const Request &request, const BackupInfo &info);

    //! OUTPUT as an absolute path.
    const QString &output() const { return m_output; }

    //! Whether OUTPUT will do. To be asked before somebody has to give a password.
    std::optional<Failure> checkOutput() const;

    /*!
        Reads what there is in the open \a backup and makes OUTPUT, unless there is too little room
        for it.
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
    Reads what there is in \a backup of the data types \a codes. A failure when \a keepGoing asked
   to stop, and when something could not be read because of the temporary folder.
*/
std::variant<Inventory, Failure> takeInventory(const Backup &backup,
                                               const QList<int> &codes,
                                               Observer &observer,
                                               const KeepGoing &keepGoing);

} // namespace Export

#endif
