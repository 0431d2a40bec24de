#ifndef EXPORT_OBSERVER_H
#define EXPORT_OBSERVER_H

#include "Export/Backups.h"
#include "Export/Problems.h"

#include <QList>
#include <QString>

#include <optional>
#include <variant>

namespace Export {

struct Inventory;
struct TypeOutcome;
struct TypeTotals;

//! How far a run has come. Speeds cover the last few seconds.
struct Progress
{
    const TypeTotals &type; //!< The type being exported.
    int items = 0; //!< Items of that type tried so far.
    double fraction = 0; //!< Of the whole run, from 0 to 1.
    qint64 milliseconds = 0; //!< Since the run started.
    double bytesPerSecond = 0;
    double itemsPerSecond = 0;
    std::optional<double> secondsLeft; //!< Not set while speeds are not yet reliable.
};

/*!
    \brief Notified of what a run does while it runs.

    The order of calls is: password() and makingKeys() if the backup is encrypted, readingIndex(),
    opened(); readingType() for each data type, inventoryRead(); then typeStarts(), progressed() and
    typeEnds() for each type that has items. Problems can be reported at any point. All functions do
    nothing by default.
    \par Thread
    Called on the thread of the run, which waits for the call to return.
*/
class Observer
{
public:
    virtual ~Observer();

    /*!
        Returns the password of the encrypted backup \a info, or the failure with which the run
        ends. \a wrong is the failure of the previous answer, null at first. By default, no password
        is known.
    */
    virtual std::variant<Secret, Failure> password(const BackupInfo &info, const Failure *wrong);

    //! The keys are being derived from the password, which takes seconds; \a percent is done.
    virtual void makingKeys(int percent);

    //! The index of the backup's files is being read.
    virtual void readingIndex();

    //! The backup \a info has been opened.
    virtual void opened(const BackupInfo &info);

    //! The items of the type called \a typeName are being counted.
    virtual void readingType(const QString &typeName);

    //! All types have been counted.
    virtual void inventoryRead(const Inventory &inventory);

    //! New warnings about the backup. Losses are in Outcome::failures.
    virtual void problemsFound(const QList<Problem> &problems);

    //! The export of \a type starts.
    virtual void typeStarts(const TypeTotals &type);

    //! Called about ten times a second during the export.
    virtual void progressed(const Progress &progress);

    //! The export of a type has ended.
    virtual void typeEnds(const TypeOutcome &type);

    //! The archive is being written; \a records of a \a kind ("messages", "notes", …) are done.
    virtual void archiving(const QString &kind, qint64 records);

    //! The export of all types has ended.
    virtual void allTypesEnded();
};

} // namespace Export

#endif
