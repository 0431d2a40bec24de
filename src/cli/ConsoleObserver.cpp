#include "ConsoleObserver.h"

#include "Console.h"
#include "Export/Inventory.h"
#include "Export/Text.h"
#include "Options.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using Export::grouped;

namespace Cli {

namespace {

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

ConsoleObserver::ConsoleObserver(Console &console, const Options &options)
    : m_console(console)
    , m_options(options)
{
}

std::variant<Export::Secret, Export::Failure>
ConsoleObserver::password(const Export::BackupInfo &info, const Export::Failure *wrong)
{
    if (!m_passwords)
        m_passwords.emplace(m_options.passwordFile, info);
    if (wrong) {
        if (!m_passwords->canTryAgain())
            return *wrong;
        m_console.error(wrong->what);
    }
    return m_passwords->next();
}

// It takes some seconds: nobody is to believe that nothing happens.
void ConsoleObserver::makingKeys(int percent)
{
    if (m_console.isTerminal())
        m_console.status(u"Deriving the keys from the password … %1%"_s.arg(percent));
    else if (percent == 0)
        m_console.say(u"Deriving the keys from the password …"_s);
}

void ConsoleObserver::readingIndex()
{
    m_console.status(u"Reading the backup’s index …"_s);
}

void ConsoleObserver::opened(const Export::BackupInfo &info)
{
    m_console.say(u"Backup: %1"_s.arg(Export::describe(info)));
}

void ConsoleObserver::readingType(const QString &typeName)
{
    m_console.status(u"Reading %1 …"_s.arg(typeName));
}

void ConsoleObserver::inventoryRead(const Export::Inventory &inventory)
{
    m_console.clearStatus();
    if (!m_options.messages.isEmpty() && !inventory.hasMessages())
        m_console.warn(u"No messages match --since, --until and --chat."_s);
}

void ConsoleObserver::problemsFound(const QList<Export::Problem> &problems)
{
    const QList<Export::Problem> said = problems.first(std::min(kProblemsSaid, problems.size()));
    for (const Export::Problem &problem : said)
        m_console.warn(problem.sentence());
    if (problems.size() > said.size())
        m_console.warn(
            u"%1 more problems like these."_s.arg(grouped(problems.size() - said.size())));
}

void ConsoleObserver::archiving(const QString &kind, qint64 records)
{
    m_console.status(u"Writing the archive: %1 %2"_s.arg(kind, grouped(records)));
}

void ConsoleObserver::allTypesEnded()
{
    m_console.clearStatus();
}

void ConsoleObserver::progressed(const Export::Progress &progress)
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

} // namespace Cli
