#ifndef EXPORT_RUNREPORT_H
#define EXPORT_RUNREPORT_H

#include "Export/Problems.h"
#include "Export/ReportFile.h"
#include "export/CIExportReport.h"

#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace Export {

/*!
    \brief Counts what was exported and what failed, and notices when OUTPUT can no longer be written.

    Every failure is written to export-report.csv at once; only the first kKept are held in memory.
*/
class RunReport final : public CIExportReport
{
public:
    struct Failed
    {
        int code = -1; //!< Code of the data type, -1 for the backup as a whole.
        QString type; //!< Display name of the data type.
        QString item; //!< Item with its group, or a source of the backup; may be empty.
        std::optional<Cause> cause; //!< Not set for a file that was never downloaded.
        QString reason;
        int systemError = 0; //!< The system's error number, if the system refused.

        QString
        causeText() const; //!< "Backup", "Output", "Program", "Content", "Never downloaded".
    };

    //! The write after which OUTPUT can no longer be written.
    struct OutputFault
    {
        QString what; //!< Type and item, or the name of a file.
        int systemError;
    };

    struct OutputEnd
    {
        Output output;
        End end;
    };

    struct Counts
    {
        int exported = 0; //!< Items in the first output of the type.
        int faults = 0; //!< Of items and their parts; an item can have several.
        int unreadable = 0; //!< Parts of the backup, each of which can have held many items.
        int neverDownloaded = 0; //!< Files that were only in the cloud.
        bool started = false;
        QList<OutputEnd> outputs; //!< Those that have ended.
    };

    //! The maximum number of entries in failures() and neverDownloaded().
    static constexpr int kKept = 1000;

    using TypeStarts = std::function<void(int code)>;

    //! \a typeStarts is called for each data type before anything is counted for it.
    RunReport(const QString &outputFolder, TypeStarts typeStarts);

    void typeStarts(int code, const QString &typeName) override;
    void itemFailed(const QString &typeName, const QString &itemName, const Fault &fault) override;
    void itemExported(const QString &typeName, const QString &itemName) override;

    void outputEnded(const QString &typeName, Output output, End end) override;

    //! Records a part of the backup that could not be read.
    void sourceLost(const Problem &problem);

    //! Records a file that was never downloaded to the phone, which is not a failure.
    void neverDownloaded(const Problem &problem);

    //! Records that \a what could not be written, with the error number \a systemError or 0.
    void outputRefused(const QString &what, int systemError);

    //! Ends the list of failures and waits until it is on the disk.
    void finish();

    //! Set once nothing more can be written to OUTPUT.
    const std::optional<OutputFault> &outputFault() const;

    Counts counts(int code) const;
    qint64 failureCount() const; //!< All failures, kept or not.
    const QList<Failed> &failures() const; //!< The first kKept.
    const QList<Failed> &neverDownloaded() const; //!< Files of that kind, the first kKept.
    const ReportFile &file() const;

private:
    void add(const Failed &failed);
    void list(const Failed &failed);

    QString m_outputFolder;
    TypeStarts m_typeStarts;
    ReportFile m_file;
    int m_code = -1;
    QHash<int, Counts> m_counts;
    QList<Failed> m_failures;
    qint64 m_failureCount = 0;
    QList<Failed> m_neverDownloaded;
    std::optional<OutputFault> m_outputFault;
};

} // namespace Export

#endif
