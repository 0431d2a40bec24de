#ifndef PHONEBACKUP_SAFARI_VISITEDPAGE_H
#define PHONEBACKUP_SAFARI_VISITEDPAGE_H

#include <QDateTime>
#include <QString>

namespace PhoneBackup {

//! A page that the browser's history tells of.
struct VisitedPage
{
    qint64 id = -1; //!< Number of its row in its database, -1 where pages have none.
    QString title; //!< The one that it had last, in one line; may be empty.
    QString address;
    QDateTime visited; //!< The last time; invalid when it is not known.
    int visits = 0; //!< As the phone counts them: those that it has forgotten, too.
    int knownVisits = 0; //!< Those that the history still has.
};

} // namespace PhoneBackup

#endif
