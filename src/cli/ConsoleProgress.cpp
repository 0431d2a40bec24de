#include "ConsoleProgress.h"

#include "Console.h"
#include "Export/Inventory.h"
#include "Export/Outcome.h"
#include "Export/Text.h"
#include "Options.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using Export::grouped;

namespace Cli {

namespace {

constexpr qint64 kLogEveryMs = 2000;
constexpr int kLogEveryPercent = 10;
constexpr int kMostBarColumns = 30;
constexpr int kFewestBarColumns = 8;

// A backup with a million broken rows is not to push what matters off the screen.
constexpr qsizetype kProblemsSaid = 20;

QString bar(int columns, double fraction)
{
    const int inner = columns - 2;
    const int full = std::clamp(static_cast<int>(fraction * inner), 0, inner);
    return u'[' + QString(full, u'#') + QString(inner - full, u'-') + u']';
}

QString rateText(const Export::Progress &progress)
{
    if (progress.type.sizeBytes > 0)
        return Export::sizeText(static_cast<qint64>(progress.bytesPerSecond)) + u"/s"_s;
    return u"%1 items/s"_s.arg(grouped(static_cast<qint64>(progress.itemsPerSecond)));
}

} // namespace

ConsoleProgress::ConsoleProgress(Console &console, const Options &options)
    : m_console(console)
    , m_options(options)
{
}

void ConsoleProgress::readingType(const QString &typeName)
{
    m_console.status(u"Reading %1 …"_s.arg(typeName));
}

void ConsoleProgress::inventoryRead(const Export::Inventory &inventory)
{
    m_console.clearStatus();
    if (!m_options.messages.isEmpty() && !inventory.hasMessages())
        m_console.warn(u"No messages fit what --since, --until and --chat ask for."_s);
}

void ConsoleProgress::problemsFound(const QList<Export::Problem> &problems)
{
    const QList<Export::Problem> said = problems.first(std::min(kProblemsSaid, problems.size()));
    for (const Export::Problem &problem : said)
        m_console.warn(problem.sentence());
    if (problems.size() > said.size())
        m_console.warn(u"%1 more of that kind."_s.arg(grouped(problems.size() - said.size())));
}

void ConsoleProgress::typeStarts(const Export::TypeTotals &type)
{
    if (m_console.isTerminal())
        return;
    // Conversations and the like have no size before they are written.
    const QString size =
        type.sizeBytes > 0 ? u", "_s + Export::sizeText(type.sizeBytes) : QString();
    m_console.say(
        u"%1: %2%3"_s.arg(type.name, Export::counted(type.items, u"item"_s, u"items"_s), size));
}

void ConsoleProgress::progressed(const Export::Progress &progress)
{
    if (m_console.isTerminal())
        draw(progress);
    else
        logStep(progress);
}

void ConsoleProgress::typeEnds(const Export::TypeOutcome &type)
{
    if (m_console.isTerminal())
        return;
    const QString failed = type.failed > 0 ? u", %1 failed"_s.arg(grouped(type.failed)) : QString();
    m_console.say(u"%1: %2 exported%3"_s.arg(type.totals.name, grouped(type.exported), failed));
}

void ConsoleProgress::allTypesEnded()
{
    m_console.clearStatus();
}

void ConsoleProgress::draw(const Export::Progress &progress)
{
    const QString percent = u"%1%"_s.arg(static_cast<int>(progress.fraction * 100), 3);
    QStringList parts { u"%1  %2 of %3"_s.arg(
        progress.type.name, grouped(progress.items), grouped(progress.type.items)) };
    if (progress.secondsLeft)
        parts +=
            { rateText(progress), u"%1 left"_s.arg(Export::durationText(*progress.secondsLeft)) };
    // What does not fit is left out, the least needed first.
    const int columns = m_console.columns() - 1;
    const auto width = [&] { return parts.join(u"  "_s).size() + 2 + percent.size(); };
    while (parts.size() > 1 && width() > columns)
        parts.removeAt(parts.size() == 3 ? 1 : parts.size() - 1);
    if (width() > columns)
        parts = { progress.type.name };
    const auto room = static_cast<int>(columns - width() - 2);
    if (room >= kFewestBarColumns)
        parts.insert(1, bar(std::min(room, kMostBarColumns), progress.fraction));
    parts.insert(room >= kFewestBarColumns ? 2 : 1, percent);
    m_console.status(parts.join(u"  "_s));
}

void ConsoleProgress::logStep(const Export::Progress &progress)
{
    const int percent = static_cast<int>(progress.fraction * 100);
    if (progress.milliseconds - m_loggedAtMs < kLogEveryMs
        || percent < m_loggedPercent + kLogEveryPercent)
        return;
    m_loggedAtMs = progress.milliseconds;
    m_loggedPercent = percent;
    m_console.say(u"%1% done"_s.arg(percent));
}

} // namespace Cli
