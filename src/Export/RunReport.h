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
    \brief Counts what an export wrote and what it could not, and notices when the output gives up.

    Every failure goes to export-report.csv as it comes; only the first ones are kept in memory.
*/
class RunReport final : public CIExportReport
{
public:
    struct Failed
    {
        int code = -1; //!< Of the data type, -1 for the backup as a whole.
        QString type; //!< Display name of the data type.
        QString item; //!< Item with its group, or a source of the backup; may be empty.
        std::optional<Cause> cause; //!< None for a file that was never downloaded.
        QString reason;
        int systemError = 0; //!< The system's error number, where it was the system that refused.

        QString
        causeText() const; //!< "Backup", "Output", "Program", "Content", "Never downloaded".
    };

    //! What the output refused, for good.
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
        int exported = 0; //!< In the first output of the type.
        int faults = 0; //!< Items and parts of them; an item may have more than one.
        int unreadable = 0; //!< Parts of the backup, each of which may have held many items.
        int neverDownloaded = 0; //!< Files that the phone left in the cloud.
        bool started = false;
        QList<OutputEnd> outputs; //!< Those that have ended.
    };

    //! How many failures failures() holds at most.
    static constexpr int kKept = 1000;

    using TypeStarts = std::function<void(int code)>;

    //! \a typeStarts hears of each data type before anything is counted for it.
    RunReport(const QString &outputFolder, TypeStarts typeStarts);

    void typeStarts(int code, const QString &typeName) override;
    void itemFailed(const QString &typeName, const QString &itemName, const Fault &fault) override;
    void itemExported(const QString &typeName, const QString &itemName) override;

    void outputEnded(const QString &typeName, Output output, End end) override;

    //! Takes in a part of the backup that could not be read.
    void sourceLost(const Problem &problem);

    //! Takes in a file that is not in the backup because it was never on the phone: no failure.
    void neverDownloaded(const Problem &problem);

    //! OUTPUT refused \a what with the error number \a systemError; 0: none is known.
    void outputRefused(const QString &what, int systemError);

    //! Nothing more is to be listed: waits until the list is on the disk.
    void finish();

    //! What the output refused, when nothing more can be written there.
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
