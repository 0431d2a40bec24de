#include "ConsoleProgress.h"

#include "Console.h"
#include "PhoneItems/shared/DurationText.h"
#include "RunReport.h"
#include "Summary.h"
#include "Text.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

constexpr double kUnitsPerItem = 100;
constexpr double kWorkPerItem = 16384; // opening and closing a file costs about as much as this

constexpr qint64 kDrawEveryMs = 100;
constexpr qint64 kLogEveryMs = 2000;
constexpr int kLogEveryPercent = 10;
constexpr double kSpeedMemorySeconds = 4;
constexpr qint64 kSureOfSpeedMs = 1500;

// Between two looks at the clock as many calls as take about this long.
constexpr qint64 kLookEveryMs = 20;
constexpr int kMostCallsBetweenLooks = 1024;

constexpr int kMostBarColumns = 30;
constexpr int kFewestBarColumns = 8;
constexpr double kMsPerSecond = 1000;

double workOf(const TypeTotals &type)
{
    return static_cast<double>(type.sizeBytes) + kWorkPerItem * type.items;
}

QString bar(int columns, double fraction)
{
    const int inner = columns - 2;
    const int full = std::clamp(static_cast<int>(fraction * inner), 0, inner);
    return u'[' + QString(full, u'#') + QString(inner - full, u'-') + u']';
}

} // namespace

void ConsoleProgress::Speed::advance(double position, double seconds)
{
    if (seconds <= 0)
        return;
    const double now = (position - m_position) / seconds;
    const double weight = m_known ? 1 - std::exp(-seconds / kSpeedMemorySeconds) : 1;
    m_perSecond += (now - m_perSecond) * weight;
    m_position = position;
    m_known = true;
}

ConsoleProgress::ConsoleProgress(Console &console,
                                 const Inventory &inventory,
                                 const RunReport &report,
                                 KeepGoing keepGoing)
    : m_console(console)
    , m_inventory(inventory)
    , m_report(report)
    , m_keepGoing(std::move(keepGoing))
{
    for (const TypeTotals &type : inventory.types)
        m_workTotal += workOf(type);
    m_clock.start();
}

void ConsoleProgress::typeStarts(int code)
{
    endType();
    m_type = m_inventory.find(code);
    m_units = 0;
    if (m_type && !m_console.isTerminal()) {
        // Conversations and the like have no size before they are written.
        const QString size =
            m_type->sizeBytes > 0 ? u", "_s + sizeText(m_type->sizeBytes) : QString();
        m_console.say(
            u"%1: %2%3"_s.arg(m_type->name, counted(m_type->items, u"item"_s, u"items"_s), size));
    }
}

void ConsoleProgress::initRange(int total)
{
    m_range = total;
}

int ConsoleProgress::range()
{
    return m_range;
}

bool ConsoleProgress::progress(double delta)
{
    m_units += delta;
    if (--m_callsLeft <= 0)
        lookAtClock();
    return m_keepGoing();
}

bool ConsoleProgress::finish()
{
    endType();
    m_console.clearStatus();
    return m_keepGoing();
}

void ConsoleProgress::endType()
{
    if (!m_type)
        return;
    if (!m_console.isTerminal()) {
        const TypeOutcome type = typeOutcome(*m_type, m_report);
        const QString failed =
            type.failed > 0 ? u", %1 failed"_s.arg(grouped(type.failed)) : QString();
        m_console.say(u"%1: %2 exported%3"_s.arg(m_type->name, grouped(type.exported), failed));
    }
    m_workBefore += workOf(*m_type);
    m_bytesBefore += m_type->sizeBytes;
    m_itemsBefore += m_type->items;
    m_type = nullptr;
}

void ConsoleProgress::lookAtClock()
{
    const qint64 now = m_clock.elapsed();
    const qint64 passed = now - m_lookedAtMs;
    if (passed < kLookEveryMs / 2)
        m_callsBetweenLooks = std::min(m_callsBetweenLooks * 2, kMostCallsBetweenLooks);
    else if (passed > kLookEveryMs * 2)
        m_callsBetweenLooks = std::max(m_callsBetweenLooks / 4, 1);
    m_callsLeft = m_callsBetweenLooks;
    m_lookedAtMs = now;
    if (!m_type || m_console.isQuiet())
        return;
    if (!m_console.isTerminal())
        logStep(now);
    else if (now - m_drawnAtMs >= kDrawEveryMs)
        draw();
}

void ConsoleProgress::draw()
{
    const qint64 now = m_clock.elapsed();
    const double seconds = static_cast<double>(now - m_drawnAtMs) / kMsPerSecond;
    const double fraction = typeFraction();
    m_workSpeed.advance(workDone(), seconds);
    m_byteSpeed.advance(static_cast<double>(m_bytesBefore)
                            + fraction * static_cast<double>(m_type->sizeBytes),
                        seconds);
    m_itemSpeed.advance(static_cast<double>(m_itemsBefore) + fraction * m_type->items, seconds);
    m_drawnAtMs = now;

    const double whole = m_workTotal > 0 ? std::min(workDone() / m_workTotal, 1.0) : 0;
    const QString percent = u"%1%"_s.arg(static_cast<int>(whole * 100), 3);
    const RunReport::Counts counts = m_report.counts(m_type->code);
    QStringList parts { u"%1  %2 of %3"_s.arg(
        m_type->name,
        grouped(std::min(counts.exported + counts.faults, m_type->items)),
        grouped(m_type->items)) };
    if (now >= kSureOfSpeedMs && m_workSpeed.perSecond() > 0) {
        const double left = (m_workTotal - workDone()) / m_workSpeed.perSecond();
        parts += { rateText(),
                   u"%1 left"_s.arg(PhoneItems::durationText(std::llround(std::max(left, 0.0)))) };
    }
    // What does not fit is left out, the least needed first.
    const int columns = m_console.columns() - 1;
    const auto width = [&] { return parts.join(u"  "_s).size() + 2 + percent.size(); };
    while (parts.size() > 1 && width() > columns)
        parts.removeAt(parts.size() == 3 ? 1 : parts.size() - 1);
    if (width() > columns)
        parts = { m_type->name };
    const auto room = static_cast<int>(columns - width() - 2);
    if (room >= kFewestBarColumns)
        parts.insert(1, bar(std::min(room, kMostBarColumns), whole));
    parts.insert(room >= kFewestBarColumns ? 2 : 1, percent);
    m_console.status(parts.join(u"  "_s));
}

void ConsoleProgress::logStep(qint64 nowMs)
{
    if (nowMs - m_loggedAtMs < kLogEveryMs || m_workTotal <= 0)
        return;
    const int percent = static_cast<int>(workDone() / m_workTotal * 100);
    if (percent < m_loggedPercent + kLogEveryPercent)
        return;
    m_loggedAtMs = nowMs;
    m_loggedPercent = percent;
    m_console.say(u"%1% done"_s.arg(percent));
}

double ConsoleProgress::typeFraction() const
{
    return m_type && m_type->items > 0 ? std::min(m_units / (kUnitsPerItem * m_type->items), 1.0)
                                       : 0;
}

double ConsoleProgress::workDone() const
{
    return m_workBefore + (m_type ? typeFraction() * workOf(*m_type) : 0);
}

QString ConsoleProgress::rateText() const
{
    if (m_type->sizeBytes > 0)
        return sizeText(static_cast<qint64>(m_byteSpeed.perSecond())) + u"/s"_s;
    return u"%1 items/s"_s.arg(grouped(static_cast<qint64>(m_itemSpeed.perSecond())));
}

} // namespace Cli
