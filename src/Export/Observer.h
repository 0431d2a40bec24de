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

//! How far a run is. Speeds are those of the last seconds.
struct Progress
{
    const TypeTotals &type; //!< What is exported now.
    int items = 0; //!< Of that type, that were tried.
    double fraction = 0; //!< Of the whole run, from 0 to 1.
    qint64 milliseconds = 0; //!< Since the run started.
    double bytesPerSecond = 0;
    double itemsPerSecond = 0;
    std::optional<double> secondsLeft; //!< None as long as the speeds are not to be relied on.
};

/*!
    \brief Told what a run does, as it does it: a terminal, a window.

    In this order: password() and makingKeys() if the backup is encrypted, readingIndex(), opened();
    readingType() for each data type, inventoryRead(); then typeStarts(), progressed() and
    typeEnds() for each type that has items. Problems may come before, between and behind. Nothing
    has to be done about any of it.
    \par Thread
    Called on the thread of the run, which waits.
*/
class Observer
{
public:
    virtual ~Observer();

    /*!
        The password of the encrypted backup \a info, or why there is none, which then is why the
        run failed. \a wrong tells that the last answer was not it; null at the first time. By
        default there is none.
    */
    virtual std::variant<Secret, Failure> password(const BackupInfo &info, const Failure *wrong);

    //! The keys are made from the password, which takes some seconds: \a percent of it are done.
    virtual void makingKeys(int percent);

    //! The index of the backup's files is read.
    virtual void readingIndex();

    //! The backup \a info is open.
    virtual void opened(const BackupInfo &info);

    //! The data set of the type called \a typeName is read to see how much there is.
    virtual void readingType(const QString &typeName);

    //! It is known how much there is of each type.
    virtual void inventoryRead(const Inventory &inventory);

    //! New \a problems with the backup: losses and warnings.
    virtual void problemsFound(const QList<Problem> &problems);

    //! \a type is exported from now on.
    virtual void typeStarts(const TypeTotals &type);

    //! About ten times a second while something is written.
    virtual void progressed(const Progress &progress);

    //! Nothing more is written of a type.
    virtual void typeEnds(const TypeOutcome &type);

    //! Nothing more is written of any type.
    virtual void allTypesEnded();
};

} // namespace Export

#endif
