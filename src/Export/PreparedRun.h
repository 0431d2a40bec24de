#ifndef EXPORT_PREPAREDRUN_H
#define EXPORT_PREPAREDRUN_H

#include "Archive/ArchiveWriter.h"
#include "Export/Backups.h"
#include "Export/CopiedFiles.h"
#include "Export/Outcome.h"
#include "Export/RunProgress.h"
#include "Export/RunReport.h"

#include <QElapsedTimer>
#include <QString>

#include <memory>

class QDir;

namespace Export {

class Observer;
struct Request;

/*!
    \brief Performs one export that has been prepared.

    \par Owner
    All arguments are borrowed.
*/
class PreparedRun
{
public:
    //! \a output is the absolute path of OUTPUT, which exists. \a keepGoing is called often;
    //! returning false stops the export at the next safe point.
    PreparedRun(const Request &request,
                const Backup &backup,
                const Inventory &inventory,
                const QString &output,
                Observer &observer,
                const KeepGoing &keepGoing);

    ~PreparedRun();

    PreparedRun(const PreparedRun &) = delete;
    PreparedRun &operator=(const PreparedRun &) = delete;

    //! Exports. Can be called once.
    Outcome execute();

private:
    void reportNewProblems();
    bool goesOn() const;
    void exportTypes(const QDir &folder);
    Outcome outcome() const;
    void judge(Outcome &result) const;
    void takeReport(Outcome &result) const;
    void writeArchive();
    void writeIndex(Outcome &result);

    const Request &m_request;
    const Backup &m_backup;
    const Inventory &m_inventory;
    QString m_output;
    Observer &m_observer;
    KeepGoing m_keepGoing;
    Archive::Plan m_plan;
    std::unique_ptr<Archive::ArchiveWriter> m_archive; // once everything is copied
    RunReport m_report;
    RunProgress m_progress;
    CopiedFiles m_copies;
    bool m_isArchiveWhole = false; // it is complete, and on the disk
    QElapsedTimer m_clock;
    qsizetype m_problemsReported = 0;
};

} // namespace Export

#endif
