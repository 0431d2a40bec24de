#ifndef EXPORT_RUN_H
#define EXPORT_RUN_H

#include "Export/Backups.h"
#include "Export/Inventory.h"
#include "Export/Outcome.h"
#include "Export/Problems.h"

#include <QList>

#include <variant>

//! What a front end (a terminal, a window, a test) can do with a backup. It observes the work,
//! provides the password, and can stop at any time.
namespace Export {

class Observer;
struct Request;

//! What a backup contains of the requested data types.
struct Contents
{
    BackupInfo backup;
    Inventory inventory;
    QList<Problem> problems;

    Status status() const; //!< Incomplete if something could not be read.
};

/*!
    Reads what the backup of \a request contains; the request's output is ignored. \a keepGoing is
    called often; returning false ends the work with Failure::Cause::Stopped.
*/
std::variant<Contents, Refusal>
look(const Request &request, Observer &observer, const KeepGoing &keepGoing);

/*!
    Exports as \a request says. \a keepGoing is called often; returning false stops the export at
    the next safe point: complete files stay, and no partial file is left.
    \par Process
    While an encrypted backup is exported, new files of this process are readable by its user only.
*/
Outcome run(const Request &request, Observer &observer, const KeepGoing &keepGoing);

} // namespace Export

#endif
