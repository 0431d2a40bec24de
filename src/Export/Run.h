#ifndef EXPORT_RUN_H
#define EXPORT_RUN_H

#include "Export/Backups.h"
#include "Export/Inventory.h"
#include "Export/Outcome.h"
#include "Export/Problems.h"

#include <QList>

#include <variant>

//! What a front end can have done with a backup. It is a terminal, a window or a test: it observes,
//! answers for the password, and may say at any time that it is enough.
namespace Export {

class Observer;
struct Request;

//! What there is in a backup of the types that were asked for.
struct Contents
{
    BackupInfo backup;
    Inventory inventory;
    QList<Problem> problems;

    Status status() const; //!< Incomplete when something could not be read.
};

/*!
    Reads what there is in the backup of \a request; its output is of no interest. \a keepGoing is
    asked often; false ends it with Failure::Cause::Stopped.
*/
std::variant<Contents, Refusal>
look(const Request &request, Observer &observer, const KeepGoing &keepGoing);

/*!
    Does what \a request asks for. \a keepGoing is asked often; false stops the export at the next
    safe point: what is complete by then stays, and no half-written file.
    \par Process
    While an encrypted backup is exported, files that this process makes are for its user alone.
*/
Outcome run(const Request &request, Observer &observer, const KeepGoing &keepGoing);

} // namespace Export

#endif
