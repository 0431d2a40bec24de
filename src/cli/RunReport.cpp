#include "RunReport.h"

#include <QTemporaryFile>

#include <algorithm>
#include <array>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

QString causeText(CIExportReport::Cause cause)
{
    switch (cause) {
    case CIExportReport::Cause::Source:
        return u"Backup"_s;
    case CIExportReport::Cause::Target:
        return u"Output"_s;
    case CIExportReport::Cause::Resource:
        return u"Program"_s;
    case CIExportReport::Cause::Content:
        return u"Content"_s;
    }
    return {};
}

// The file system takes a small file: what it refused concerned one name or one size only.
bool takesFile(const QString &folder)
{
    constexpr int kProbeBytes = 4096;
    QTemporaryFile probe(folder + u"/.dataexport-XXXXXX"_s);
    return probe.open() && probe.write(QByteArray(kProbeBytes, '\0')) == kProbeBytes
        && probe.flush();
}

} // namespace

RunReport::RunReport(const QString &outputFolder)
    : m_outputFolder(outputFolder)
    , m_file(outputFolder)
{
}

void RunReport::typeStarts(int code)
{
    m_code = code;
    m_counts[code].started = true;
}

void RunReport::itemFailed(const QString &typeName, const QString &itemName, const Fault &fault)
{
    Counts &counts = m_counts[m_code];
    if (itemName.isEmpty())
        counts.lost = true;
    else
        ++counts.failed;
    const Failed failed { typeName, itemName, causeText(fault.cause), fault.reason };
    // Asked before the report file takes the last room, and after the partial file gave its own
    // back: the reason tells a full disk, room alone does not.
    if (fault.cause == Cause::Target && !m_outputFault && outputRefuses(fault.reason))
        m_outputFault = failed;
    add(failed);
}

void RunReport::itemExported(const QString & /*typeName*/, const QString & /*itemName*/)
{
    ++m_counts[m_code].exported;
}

void RunReport::sourceLost(int code,
                           const QString &typeName,
                           const QString &source,
                           const QString &reason)
{
    ++m_counts[code].unreadable;
    add({ typeName, source, causeText(Cause::Source), reason });
}

const std::optional<RunReport::Failed> &RunReport::outputFault() const
{
    return m_outputFault;
}

RunReport::Counts RunReport::counts(int code) const
{
    return m_counts.value(code);
}

int RunReport::currentType() const
{
    return m_code;
}

qint64 RunReport::failureCount() const
{
    return m_failureCount;
}

const QList<RunReport::Failed> &RunReport::failures() const
{
    return m_failures;
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
    m_file.append({ failed.type, failed.item, failed.cause, failed.reason });
}

bool RunReport::outputRefuses(const QString &reason) const
{
    constexpr std::array kHopeless { ENOSPC, EDQUOT, EROFS, EIO, ENODEV, ENXIO, ESTALE, ENOTCONN };
    // Sinks word a fault with the same function, so that its text can be recognised.
    const bool said = std::any_of(kHopeless.begin(), kHopeless.end(), [&](int number) {
        return reason.contains(qt_error_string(number));
    });
    return said || !takesFile(m_outputFolder);
}

} // namespace Cli
