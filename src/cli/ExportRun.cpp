#include "ExportRun.h"

#include "Console.h"
#include "ConsoleProgress.h"
#include "Failure.h"
#include "IndexPage.h"
#include "Interrupt.h"
#include "NewFile.h"
#include "Options.h"
#include "PhoneItems/words/Words.h"
#include "Problems.h"
#include "SelectedBackup.h"
#include "Text.h"
#include "backup/CBackupExporter.h"

#include <QDir>
#include <QStorageInfo>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

constexpr qsizetype kFailuresSaid = 10;

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
                              : u"OUTPUT “%1”%2 can no longer be written: it refused “%3”."_s;
    return {
        ExitCode::Output,
        what.arg(output, mount, fault.what),
        {},
        full ? u"Make room or choose an OUTPUT on another disk, and export again."_s
             : u"See that the disk is there, has room and may be written, and export again."_s
    };
}

QString whereStopped(const TypeOutcome &type)
{
    const int tried = type.exported + type.failed;
    return tried == type.totals.items
        ? u"%1: %2"_s.arg(type.totals.name, stateText(type))
        : u"%1 after %2 of %3"_s.arg(
            type.totals.name, grouped(tried), counted(type.totals.items, u"item"_s, u"items"_s));
}

void sayWhatIsThere(Console &console, const QList<TypeOutcome> &types, const QString &output)
{
    QStringList complete;
    QStringList stopped;
    QStringList failed;
    QStringList notBegun;
    for (const TypeOutcome &type : types) {
        if (type.totals.items == 0)
            continue;
        switch (type.state) {
        case CIExportReport::End::Complete:
            complete += u"%1 (%2)"_s.arg(type.totals.name, grouped(type.exported));
            break;
        case CIExportReport::End::Stopped:
            stopped += whereStopped(type);
            break;
        case CIExportReport::End::Failed:
            failed += u"%1 (%2)"_s.arg(type.totals.name, stateText(type));
            break;
        case CIExportReport::End::NotStarted:
            notBegun += type.totals.name;
            break;
        }
    }
    const auto line = [&console](const QString &label, const QStringList &names) {
        if (!names.isEmpty())
            console.note(u"  "_s + label.leftJustified(12) + names.join(u", "_s));
    };
    line(u"Complete:"_s, complete);
    line(u"Stopped in:"_s, stopped);
    line(u"Failed:"_s, failed);
    line(u"Not begun:"_s, notBegun);
    console.note(u"  No half-written file is left in “%1”."_s.arg(output));
}

void sayFirstFailures(Console &console, const RunReport &report)
{
    console.warn(u"This could not be exported (%1 in all):"_s.arg(grouped(report.failureCount())));
    const qsizetype said = std::min(kFailuresSaid, report.failures().size());
    for (qsizetype i = 0; i < said; ++i) {
        const RunReport::Failed &failed = report.failures().at(i);
        const QString item = failed.item.isEmpty() ? QString() : u'/' + failed.item;
        console.note(u"  %1%2: %3"_s.arg(failed.type, item, failed.reason));
    }
    if (report.failureCount() > said)
        console.note(u"  … and %1 more"_s.arg(grouped(report.failureCount() - said)));
}

void sayFailures(Console &console, const RunReport &report, const QList<TypeOutcome> &types)
{
    if (report.failureCount() > 0)
        sayFirstFailures(console, report);
    const qint64 notThere = Sums(types).neverDownloaded;
    if (notThere > 0)
        console.say(u"Never downloaded to the phone, and so not in the backup: %1."_s.arg(
            counted(notThere, u"file"_s, u"files"_s)));
    const QString &list = report.file().path();
    if (!list.isEmpty() && report.failureCount() > 0)
        console.note(u"The whole list is in “%1”."_s.arg(list));
    else if (!list.isEmpty())
        console.say(u"The whole list is in “%1”."_s.arg(list));
    if (report.file().error() != 0)
        console.error(u"The list export-report.csv could not be written%1: %2."_s.arg(
            list.isEmpty() ? QString() : u" to its end"_s, errorText(report.file().error())));
}

} // namespace

ExportRun::ExportRun(Console &console,
                     const Options &options,
                     const PhoneItems::Backup &backup,
                     const Inventory &inventory,
                     const QString &output)
    : m_console(console)
    , m_options(options)
    , m_backup(backup)
    , m_inventory(inventory)
    , m_output(output)
    , m_report(output)
{
}

ExitCode ExportRun::execute()
{
    m_clock.start();
    takeProblems();
    const QDir folder(m_output);
    const QStringList before = foldersBefore(folder);
    exportTypes(folder);
    takeProblems();
    m_report.finish();
    Outcome result = outcome();
    for (const TypeOutcome &type : result.types) {
        if (type.counts.started && type.exported == 0 && !before.contains(type.totals.name))
            removeEmptyFolders(folder, type.totals.name);
    }
    writeIndex(result);
    return tell(result);
}

void ExportRun::writeIndex(Outcome &result)
{
    const bool hasAnything = std::any_of(result.types.begin(),
                                         result.types.end(),
                                         [](const TypeOutcome &type) { return !type.isNothing(); });
    if (!hasAnything && m_report.failureCount() == 0)
        return;
    IndexPage page(result, m_backup, m_report);
    const int number = page.write();
    result.indexPath = page.path();
    if (number == 0 || m_report.outputFault())
        return;
    m_report.outputRefused(u"index.html"_s, number);
    judge(result);
    if (!m_report.outputFault()) {
        // What the page leads to is there.
        m_console.error(u"index.html could not be written: %1."_s.arg(errorText(number)));
        if (result.exitCode == ExitCode::Complete)
            result.exitCode = ExitCode::Incomplete;
    }
}

// Losses stand in the final list with everything else that is missing.
void ExportRun::takeProblems()
{
    const QList<PhoneBackup::Problem> problems = m_backup.problems();
    QList<PhoneBackup::Problem> warnings;
    for (; m_problemsTaken < problems.size(); ++m_problemsTaken) {
        const PhoneBackup::Problem &problem = problems.at(m_problemsTaken);
        if (problem.neverDownloaded)
            m_report.neverDownloaded(problem.dataType,
                                     problemType(m_backup, problem),
                                     problem.source,
                                     PhoneItems::words(problem.what));
        else if (problem.loss)
            m_report.sourceLost(problem.dataType,
                                problemType(m_backup, problem),
                                problem.source,
                                PhoneItems::words(problem.what));
        else
            warnings += problem;
    }
    sayProblems(m_console, m_backup, warnings);
}

bool ExportRun::goesOn() const
{
    return !Interrupt::requested() && !m_report.outputFault();
}

void ExportRun::exportTypes(const QDir &folder)
{
    ConsoleProgress progress(m_console, m_inventory, m_report, [this] { return goesOn(); });
    SelectedBackup selected(m_backup, m_options.types, [&](int code) {
        progress.typeStarts(code);
        m_report.typeStarts(code);
    });
    CBackupExporter exporter;
    if (m_options.convertHeic)
        exporter.setReport(&m_heicCopies);
    else
        exporter.setReport(&m_report);
    exporter.setHardened(true); // anyone can send a message or a contact with markup in it
    exporter.exportBackup(&selected, folder, &progress);
}

Outcome ExportRun::outcome() const
{
    Outcome result;
    result.output = m_options.output;
    result.absoluteOutput = m_output;
    for (const TypeTotals &totals : m_inventory.types)
        result.types += typeOutcome(totals, m_report);
    result.absences = absences(m_backup);
    result.seconds = static_cast<double>(m_clock.elapsed()) / 1000;
    judge(result);
    return result;
}

void ExportRun::judge(Outcome &result) const
{
    const auto has = [&result](CIExportReport::End state) {
        return std::any_of(result.types.begin(), result.types.end(), [state](const auto &type) {
            return type.state == state;
        });
    };
    const bool isCut = has(CIExportReport::End::Stopped) || has(CIExportReport::End::NotStarted);
    if (m_report.outputFault()) {
        result.exitCode = ExitCode::Output;
        result.message = outputFailure(*m_report.outputFault(), m_options.output).what;
    } else if (const auto failure = temporaryFolderFailure(m_backup)) {
        result.exitCode = ExitCode::Output;
        result.message = failure->what;
    } else if (isCut && Interrupt::requested()) {
        result.exitCode = ExitCode::Cancelled;
        result.message = u"Stopped."_s;
    } else if (isCut || has(CIExportReport::End::Failed) || m_report.failureCount() > 0
               || m_report.file().error() != 0) {
        result.exitCode = ExitCode::Incomplete;
    }
}

ExitCode ExportRun::tell(const Outcome &result)
{
    if (m_report.outputFault())
        say(m_console, outputFailure(*m_report.outputFault(), m_options.output));
    else if (result.exitCode == ExitCode::Output)
        say(m_console, temporaryFolderFailure(m_backup).value());
    else if (result.exitCode == ExitCode::Cancelled)
        m_console.note(result.message);
    if (!result.message.isEmpty())
        sayWhatIsThere(m_console, result.types, m_options.output);
    sayFailures(m_console, m_report, result.types);
    if (m_heicCopies.count() > 0 && !m_options.quiet)
        m_console.note(
            u"JPEG copies made of HEIC pictures: %1"_s.arg(grouped(m_heicCopies.count())));
    const QByteArray text = m_options.json ? summaryJson(result, m_backup, m_report)
        : m_options.quiet                  ? QByteArray()
                                           : summaryText(result);
    const bool told = m_console.result(text);
    return told || result.exitCode != ExitCode::Complete ? result.exitCode : ExitCode::Failed;
}

} // namespace Cli
