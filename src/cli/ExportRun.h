#ifndef CLI_EXPORTRUN_H
#define CLI_EXPORTRUN_H

#include "ExitCode.h"
#include "HeicCopies.h"
#include "RunReport.h"
#include "Summary.h"

#include <QElapsedTimer>
#include <QString>

class QDir;

namespace Cli {

class Console;
struct Options;

/*!
    \brief One export, once backup and OUTPUT are known to be good: does it and tells what became
    of it.

    \par Owner
    Everything handed in is borrowed.
*/
class ExportRun
{
public:
    //! \a output is the absolute path of OUTPUT, which exists.
    ExportRun(Console &console,
              const Options &options,
              const PhoneItems::Backup &backup,
              const Inventory &inventory,
              const QString &output);

    //! To be called once.
    ExitCode execute();

private:
    void takeProblems();
    bool goesOn() const;
    void exportTypes(const QDir &folder);
    Outcome outcome() const;
    void judge(Outcome &result) const;
    void writeIndex(Outcome &result);
    ExitCode tell(const Outcome &result);

    Console &m_console;
    const Options &m_options;
    const PhoneItems::Backup &m_backup;
    const Inventory &m_inventory;
    QString m_output;
    RunReport m_report;
    HeicCopies m_heicCopies { m_report };
    QElapsedTimer m_clock;
    qsizetype m_problemsTaken = 0;
};

} // namespace Cli

#endif
