#include "Export/PreparedRun.h"

#include "Export/IndexPage.h"
#include "Export/NewFile.h"
#include "Export/Observer.h"
#include "Export/Problems.h"
#include "Export/Request.h"
#include "Export/SmallPicture.h"
#include "PhoneBackup/source/Source.h"
#include "backup/CBackupExporter.h"

#include <QDir>
#include <QStorageInfo>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace Export {

namespace {

// Lets the selected data types of a backup through and hides the others.
class SelectedBackup final : public BkBackup
{
public:
    SelectedBackup(const BkBackup &backup, const QList<int> &codes)
        : m_backup(backup)
        , m_codes(codes)
    {
    }

    BkData *getBkData(int code) const override
    {
        return m_codes.contains(code) ? m_backup.getBkData(code) : nullptr;
    }
    QString dataTypeName(int code) const override { return m_backup.dataTypeName(code); }
    QString backupProperty(int key) const override { return m_backup.backupProperty(key); }

private:
    const BkBackup &m_backup;
    const QList<int> &m_codes;
};

// Folders that were made for files of which none came. Whatever holds a file stays.
void removeEmptyFolders(const QDir &parent, const QString &name)
{
    const QDir folder(parent.filePath(name));
    const QStringList groups =
        folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks | QDir::Hidden);
    for (const QString &group : groups)
        folder.rmdir(group);
    parent.rmdir(name);
}

QStringList foldersBefore(const QDir &output)
{
    return output.entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
}

Failure outputFailure(const RunReport::OutputFault &fault, const QString &output)
{
    const bool full = fault.systemError == ENOSPC || fault.systemError == EDQUOT;
    const QStorageInfo disk(output);
    const QString mount = disk.isValid() ? u" (mounted at “%1”)"_s.arg(disk.rootPath()) : QString();
    const QString what = full ? u"The disk of OUTPUT “%1”%2 is full: “%3” could not be written."_s
                              : u"OUTPUT “%1”%2 can no longer be written to: “%3” failed."_s;
    return {
        full ? Failure::Cause::DiskFull : Failure::Cause::Output,
        what.arg(output, mount, fault.what),
        {},
        full
            ? u"Free up space or choose an OUTPUT on another disk, then export again."_s
            : u"Check that the disk is connected, has space and can be written to, then export again."_s,
        fault.systemError
    };
}

} // namespace

PreparedRun::PreparedRun(const Request &request,
                         const Backup &backup,
                         const Inventory &inventory,
                         const QString &output,
                         Observer &observer,
                         const KeepGoing &keepGoing)
    : m_request(request)
    , m_backup(backup)
    , m_inventory(inventory)
    , m_output(output)
    , m_observer(observer)
    , m_keepGoing(keepGoing)
    , m_report(output, [this](int code) { m_progress.typeStarts(code); })
    , m_progress(inventory, request.formats, m_report, observer, [this] { return goesOn(); })
    , m_copies(output, backup.source().index().count(), request.convertHeic, request.convertAudio)
{
}

PreparedRun::~PreparedRun() = default;

Outcome PreparedRun::execute()
{
    m_clock.start();
    reportNewProblems();
    const QDir folder(m_output);
    const QStringList before = foldersBefore(folder);
    exportTypes(folder);
    if (m_request.formats.hasRecords() && goesOn())
        writeArchive();
    reportNewProblems();
    m_report.finish();
    Outcome result = outcome();
    for (const TypeOutcome &type : result.types) {
        if (type.counts.started && type.exported == 0 && !before.contains(type.totals.name))
            removeEmptyFolders(folder, type.totals.name);
    }
    writeIndex(result);
    return result;
}

// Losses stand in the final list with everything else that is missing.
void PreparedRun::reportNewProblems()
{
    const QList<Problem> found = problems(m_backup, m_problemsReported);
    QList<Problem> warnings;
    for (const Problem &problem : found) {
        if (problem.kind == Problem::Kind::NeverDownloaded)
            m_report.neverDownloaded(problem);
        else if (problem.kind == Problem::Kind::Loss)
            m_report.sourceLost(problem);
        else if (problem.kind == Problem::Kind::Warning)
            warnings += problem;
    }
    m_problemsReported += found.size();
    if (!warnings.isEmpty())
        m_observer.problemsFound(warnings);
}

bool PreparedRun::goesOn() const
{
    return m_keepGoing() && !m_report.outputFault();
}

void PreparedRun::exportTypes(const QDir &folder)
{
    QList<int> written;
    for (const int code : m_request.types) {
        if (m_request.formats.areOf(code))
            written.append(code);
    }
    SelectedBackup selected(m_backup, written);
    CBackupExporter exporter;
    exporter.setOmitted(m_request.formats.omitted());
    exporter.setReport(&m_report);
    exporter.setCopyStep(&m_copies);
    exporter.setHardened(true); // anyone can send a message or a contact with markup in it
    exporter.exportBackup(&selected, folder, &m_progress);
}

Outcome PreparedRun::outcome() const
{
    Outcome result;
    result.hasStarted = true;
    result.backup = m_backup.info();
    result.output = m_request.output;
    result.absoluteOutput = m_output;
    for (const TypeTotals &totals : m_inventory.types) {
        TypeOutcome type = typeOutcome(totals, m_report, m_request.formats);
        if (type.isInArchiveOnly && !m_isArchiveWhole && totals.items > 0) {
            type.state = CIExportReport::End::Stopped;
            type.exported = 0;
        }
        result.types += type;
    }
    result.remarks = problems(m_backup);
    result.remarks.removeIf([](const Problem &problem) {
        return problem.kind != Problem::Kind::Warning && problem.kind != Problem::Kind::Absence;
    });
    result.jpegCopies = m_copies.jpegCopies();
    result.soundCopies = m_copies.soundCopies();
    result.seconds = static_cast<double>(m_clock.elapsed()) / 1000;
    takeReport(result);
    judge(result);
    return result;
}

void PreparedRun::takeReport(Outcome &result) const
{
    result.reportPath = m_report.file().path();
    result.reportError = m_report.file().error();
    result.failureCount = m_report.failureCount();
    result.failures = m_report.failures();
    result.neverDownloaded = m_report.neverDownloaded();
}

void PreparedRun::judge(Outcome &result) const
{
    const auto has = [&result](CIExportReport::End state) {
        return std::any_of(result.types.begin(), result.types.end(), [state](const auto &type) {
            return type.state == state;
        });
    };
    const bool isCut = (m_request.formats.hasRecords() && !m_isArchiveWhole)
        || has(CIExportReport::End::Stopped) || has(CIExportReport::End::NotStarted);
    if (const auto &fault = m_report.outputFault())
        result.failure = outputFailure(*fault, m_request.output);
    else if (auto failure = temporaryFolderFailure(m_backup))
        result.failure = failure;
    else if (isCut && !m_keepGoing())
        result.failure = Failure { Failure::Cause::Stopped, u"Stopped."_s };
    if (result.failure)
        result.status = result.failure->status();
    else if (isCut || has(CIExportReport::End::Failed) || result.failureCount > 0
             || result.reportError != 0)
        result.status = Status::Incomplete;
}

void PreparedRun::writeArchive()
{
    m_plan.output = m_output;
    m_plan.pages = m_request.formats.archive;
    m_plan.data = m_request.formats.json;
    m_plan.phone = m_backup.info().deviceName.isEmpty() ? m_backup.info().displayName
                                                        : m_backup.info().deviceName;
    for (const TypeTotals &totals : m_inventory.types) {
        if (totals.items > 0)
            m_plan.types.append(totals.code);
    }
    m_archive = std::make_unique<Archive::ArchiveWriter>(
        m_backup.source(),
        m_copies.files(),
        m_plan,
        &smallPicture,
        [this] { return goesOn(); },
        [this](const char *kind, qint64 records) {
            m_observer.archiving(QString::fromLatin1(kind), records);
        });
    m_isArchiveWhole = m_archive->write();
    if (const int number = m_archive->error()) {
        constexpr int kNoType = -1;
        const QString name = u"Archive"_s;
        m_report.typeStarts(kNoType, name);
        m_report.itemFailed(name,
                            m_archive->failedPath(),
                            { CIExportReport::Cause::Target,
                              u"It could not be written: %1."_s.arg(errorText(number)),
                              number });
    }
}

void PreparedRun::writeIndex(Outcome &result)
{
    if (result.isNothing())
        return;
    IndexPage page(result, m_backup, m_archive.get());
    const int number = page.write();
    result.indexPath = page.path();
    if (number == 0 || m_report.outputFault())
        return;
    m_report.outputRefused(u"index.html"_s, number);
    judge(result);
    if (!m_report.outputFault()) {
        result.indexError = number; // what the page leads to is there
        if (result.status == Status::Complete)
            result.status = Status::Incomplete;
    }
}

} // namespace Export
