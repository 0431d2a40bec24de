#include "Problems.h"

#include "Console.h"
#include "PhoneItems/words/Words.h"
#include "Text.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

// A backup with a million broken rows is not to push what matters off the screen.
constexpr qsizetype kSaid = 20;

} // namespace

ProblemKind kindOf(const PhoneBackup::Problem &problem)
{
    return problem.absent         ? ProblemKind::Absence
        : problem.neverDownloaded ? ProblemKind::NeverDownloaded
        : problem.loss            ? ProblemKind::Loss
                                  : ProblemKind::Warning;
}

QStringList absences(const PhoneItems::Backup &backup)
{
    QStringList lines;
    const QList<PhoneBackup::Problem> problems = backup.problems();
    for (const PhoneBackup::Problem &problem : problems) {
        if (kindOf(problem) == ProblemKind::Absence)
            lines += u"%1: %2"_s.arg(problemType(backup, problem), PhoneItems::words(problem.what));
    }
    return lines;
}

std::optional<Failure> temporaryFolderFailure(const PhoneItems::Backup &backup)
{
    const QList<PhoneBackup::Problem> problems = backup.problems();
    const auto found = std::find_if(problems.begin(), problems.end(), [](const auto &problem) {
        return problem.fault == PhoneBackup::Fault::TemporaryFolder;
    });
    if (found == problems.end())
        return std::nullopt;
    return failureOf({ found->fault, found->source, found->what, found->systemError });
}

qint64 neverDownloaded(const QList<PhoneBackup::Problem> &problems)
{
    return std::count_if(problems.begin(), problems.end(), [](const auto &problem) {
        return kindOf(problem) == ProblemKind::NeverDownloaded;
    });
}

QString problemType(const PhoneItems::Backup &backup, const PhoneBackup::Problem &problem)
{
    return problem.dataType >= 0 ? backup.dataTypeName(problem.dataType) : u"Backup"_s;
}

void sayProblems(Console &console,
                 const PhoneItems::Backup &backup,
                 const QList<PhoneBackup::Problem> &problems)
{
    QList<PhoneBackup::Problem> faults;
    std::copy_if(
        problems.begin(), problems.end(), std::back_inserter(faults), [](const auto &problem) {
            const ProblemKind kind = kindOf(problem);
            return kind == ProblemKind::Loss || kind == ProblemKind::Warning;
        });
    const QList<PhoneBackup::Problem> said = faults.first(std::min(kSaid, faults.size()));
    for (const PhoneBackup::Problem &problem : said) {
        const QString what = PhoneItems::words(problem.what);
        const bool named = problem.source.isEmpty() || what.contains(problem.source);
        const QString where = named ? QString() : u" (%1)"_s.arg(problem.source);
        console.warn(u"%1: %2%3"_s.arg(problemType(backup, problem), what, where));
    }
    if (faults.size() > said.size())
        console.warn(u"%1 more of that kind."_s.arg(grouped(faults.size() - said.size())));
}

} // namespace Cli
