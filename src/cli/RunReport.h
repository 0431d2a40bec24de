#ifndef CLI_RUNREPORT_H
#define CLI_RUNREPORT_H

#include "ReportFile.h"
#include "export/CIExportReport.h"

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace Cli {

/*!
    \brief Counts what an export wrote and what it could not, and notices when the output gives up.

    Every failure goes to export-report.csv as it comes; only the first ones are kept in memory.
*/
class RunReport final : public CIExportReport
{
public:
    struct Failed
    {
        QString type; //!< Display name of the data type.
        QString item; //!< Item with its group, or a source of the backup; may be empty.
        QString cause; //!< "Backup", "Output" or "Content": where the fault lies.
        QString reason;
    };

    struct Counts
    {
        int exported = 0;
        int failed = 0; //!< Items, not faults: an item may have more than one.
        int unreadable = 0; //!< Parts of the backup, each of which may have held many items.
        bool started = false;
        bool lost = false; //!< The data type as a whole was not written.
    };

    //! How many failures failures() holds at most.
    static constexpr int kKept = 1000;

    explicit RunReport(const QString &outputFolder);

    //! The data type that everything from now on belongs to.
    void typeStarts(int code);

    void itemFailed(const QString &typeName, const QString &itemName, const Fault &fault) override;
    void itemExported(const QString &typeName, const QString &itemName) override;

    //! Takes in a part of the backup that could not be read; \a code is -1 for the backup as a
    //! whole.
    void
    sourceLost(int code, const QString &typeName, const QString &source, const QString &reason);

    //! What the output refused, when nothing more can be written there.
    const std::optional<Failed> &outputFault() const;

    Counts counts(int code) const;
    int currentType() const; //!< -1 before the first.
    qint64 failureCount() const; //!< All failures, kept or not.
    const QList<Failed> &failures() const; //!< The first kKept.
    const ReportFile &file() const;

private:
    void add(const Failed &failed);
    bool outputRefuses(const QString &reason) const;

    QString m_outputFolder;
    ReportFile m_file;
    int m_code = -1;
    QHash<int, Counts> m_counts;
    QList<Failed> m_failures;
    qint64 m_failureCount = 0;
    std::optional<Failed> m_outputFault;
};

} // namespace Cli

#endif
