#include "Export/RunReport.h"

#include "Export/NewFile.h"

#include <QFileInfo>

#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace Export {

QString RunReport::Failed::causeText() const
{
    if (!cause)
        return u"Never downloaded"_s;
    switch (*cause) {
    case Cause::Source:
        return u"Backup"_s;
    case Cause::Target:
        return u"Output"_s;
    case Cause::Resource:
        return u"Program"_s;
    case Cause::Content:
        return u"Content"_s;
    }
    return {};
}

RunReport::RunReport(const QString &outputFolder, TypeStarts typeStarts)
    : m_outputFolder(outputFolder)
    , m_typeStarts(std::move(typeStarts))
    , m_file(outputFolder)
{
}

void RunReport::typeStarts(int code, const QString & /*typeName*/)
{
    m_typeStarts(code);
    m_code = code;
    m_counts[code].started = true;
}

void RunReport::itemFailed(const QString &typeName, const QString &itemName, const Fault &fault)
{
    if (!itemName.isEmpty())
        ++m_counts[m_code].faults;
    // Before the list takes the last room.
    if (fault.cause == Cause::Target)
        outputRefused(itemName.isEmpty() ? typeName : typeName + u'/' + itemName,
                      fault.systemError);
    add({ m_code, typeName, itemName, fault.cause, fault.reason, fault.systemError });
}

void RunReport::itemExported(const QString & /*typeName*/, const QString & /*itemName*/)
{
    ++m_counts[m_code].exported;
}

void RunReport::outputEnded(const QString & /*typeName*/, Output output, End end)
{
    m_counts[m_code].outputs += { output, end };
}

void RunReport::sourceLost(const Problem &problem)
{
    ++m_counts[problem.code].unreadable;
    add({ problem.code,
          problem.type,
          problem.source,
          Cause::Source,
          problem.what,
          problem.systemError });
}

void RunReport::neverDownloaded(const Problem &problem)
{
    ++m_counts[problem.code].neverDownloaded;
    const Failed file { problem.code, problem.type, problem.source, std::nullopt, problem.what };
    if (m_neverDownloaded.size() < kKept)
        m_neverDownloaded += file;
    list(file);
}

void RunReport::outputRefused(const QString &what, int systemError)
{
    const bool isGone = systemError == ENOENT && !QFileInfo(m_outputFolder).isDir();
    if (!m_outputFault && (isGone || isOfWholeDisk(systemError)))
        m_outputFault = { what, systemError };
}

void RunReport::finish()
{
    m_file.sync();
    outputRefused(u"export-report.csv"_s, m_file.error());
}

const std::optional<RunReport::OutputFault> &RunReport::outputFault() const
{
    return m_outputFault;
}

RunReport::Counts RunReport::counts(int code) const
{
    return m_counts.value(code);
}

qint64 RunReport::failureCount() const
{
    return m_failureCount;
}

const QList<RunReport::Failed> &RunReport::failures() const
{
    return m_failures;
}

const QList<RunReport::Failed> &RunReport::neverDownloaded() const
{
    return m_neverDownloaded;
}

const ReportFile &RunReport::file() const
{
    return m_file;
}

void RunReport::add(const Failed &failed)
{
    ++m_failureCount;
    if (m_failures.size() < kKept)
        m_failures += failed;
    list(failed);
}

void RunReport::list(const Failed &failed)
{
    m_file.append({ failed.type, failed.item, failed.causeText(), failed.reason });
    outputRefused(u"export-report.csv"_s, m_file.error());
}

} // namespace Export
