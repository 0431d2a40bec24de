#include "Export/RunProgress.h"

#include "Export/Observer.h"
#include "Export/Outcome.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Export {

namespace {

constexpr double kUnitsPerItem = 100;
constexpr double kWorkPerItem = 16384; // opening and closing a file costs about as much as this

constexpr qint64 kTellEveryMs = 100;
constexpr double kSpeedMemorySeconds = 4;
constexpr qint64 kSureOfSpeedMs = 1500;

// Between two looks at the clock as many calls as take about this long.
constexpr qint64 kLookEveryMs = 20;
constexpr int kMostCallsBetweenLooks = 1024;

constexpr double kMsPerSecond = 1000;

double workOf(const TypeTotals &type)
{
    return static_cast<double>(type.sizeBytes) + kWorkPerItem * type.items;
}

} // namespace

void RunProgress::Speed::advance(double position, double seconds)
{
    if (seconds <= 0)
        return;
    const double now = (position - m_position) / seconds;
    const double weight = m_known ? 1 - std::exp(-seconds / kSpeedMemorySeconds) : 1;
    m_perSecond += (now - m_perSecond) * weight;
    m_position = position;
    m_known = true;
}

RunProgress::RunProgress(const Inventory &inventory,
                         const Formats &formats,
                         const RunReport &report,
                         Observer &observer,
                         PhoneBackup::KeepGoing keepGoing)
    : m_inventory(inventory)
    , m_formats(formats)
    , m_report(report)
    , m_observer(observer)
    , m_keepGoing(std::move(keepGoing))
{
    for (const TypeTotals &type : inventory.types)
        m_workTotal += workOf(type);
    m_clock.start();
}

void RunProgress::typeStarts(int code)
{
    endType();
    m_type = m_inventory.find(code);
    m_units = 0;
    if (m_type)
        m_observer.typeStarts(*m_type);
}

void RunProgress::initRange(int total)
{
    m_range = total;
}

int RunProgress::range()
{
    return m_range;
}

bool RunProgress::progress(double delta)
{
    m_units += delta;
    if (--m_callsLeft <= 0)
        lookAtClock();
    return m_keepGoing();
}

bool RunProgress::finish()
{
    endType();
    m_observer.allTypesEnded();
    return m_keepGoing();
}

void RunProgress::endType()
{
    if (!m_type)
        return;
    m_observer.typeEnds(typeOutcome(*m_type, m_report, m_formats));
    m_workBefore += workOf(*m_type);
    m_bytesBefore += m_type->sizeBytes;
    m_itemsBefore += m_type->items;
    m_type = nullptr;
}

void RunProgress::lookAtClock()
{
    const qint64 now = m_clock.elapsed();
    const qint64 passed = now - m_lookedAtMs;
    if (passed < kLookEveryMs / 2)
        m_callsBetweenLooks = std::min(m_callsBetweenLooks * 2, kMostCallsBetweenLooks);
    else if (passed > kLookEveryMs * 2)
        m_callsBetweenLooks = std::max(m_callsBetweenLooks / 4, 1);
    m_callsLeft = m_callsBetweenLooks;
    m_lookedAtMs = now;
    if (m_type && now - m_toldAtMs >= kTellEveryMs)
        tell(now);
}

void RunProgress::tell(qint64 nowMs)
{
    const double seconds = static_cast<double>(nowMs - m_toldAtMs) / kMsPerSecond;
    const double fraction = typeFraction();
    m_workSpeed.advance(workDone(), seconds);
    m_byteSpeed.advance(static_cast<double>(m_bytesBefore)
                            + fraction * static_cast<double>(m_type->sizeBytes),
                        seconds);
    m_itemSpeed.advance(static_cast<double>(m_itemsBefore) + fraction * m_type->items, seconds);
    m_toldAtMs = nowMs;

    const RunReport::Counts counts = m_report.counts(m_type->code);
    Progress progress { *m_type,
                        std::min(counts.exported + counts.faults, m_type->items),
                        m_workTotal > 0 ? std::min(workDone() / m_workTotal, 1.0) : 0,
                        nowMs,
                        m_byteSpeed.perSecond(),
                        m_itemSpeed.perSecond(),
                        std::nullopt };
    if (nowMs >= kSureOfSpeedMs && m_workSpeed.perSecond() > 0) {
        const double left = (m_workTotal - workDone()) / m_workSpeed.perSecond();
        progress.secondsLeft = std::max(left, 0.0);
    }
    m_observer.progressed(progress);
}

double RunProgress::typeFraction() const
{
    return m_type && m_type->items > 0 ? std::min(m_units / (kUnitsPerItem * m_type->items), 1.0)
                                       : 0;
}

double RunProgress::workDone() const
{
    return m_workBefore + (m_type ? typeFraction() * workOf(*m_type) : 0);
}

} // namespace Export
