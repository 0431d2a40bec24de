#include "Problems.h"

#include "Console.h"
#include "Text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Cli {

namespace {

// A backup with a million broken rows is not to push what matters off the screen.
constexpr qsizetype kSaid = 20;

} // namespace

QString problemType(const PhoneBackup::Backup &backup, const PhoneBackup::Problem &problem)
{
    return problem.dataType >= 0 ? backup.dataTypeName(problem.dataType) : u"Backup"_s;
}

void sayProblems(Console &console,
                 const PhoneBackup::Backup &backup,
                 const QList<PhoneBackup::Problem> &problems)
{
    const QList<PhoneBackup::Problem> said = problems.first(std::min(kSaid, problems.size()));
    for (const PhoneBackup::Problem &problem : said) {
        const bool named = problem.source.isEmpty() || problem.what.contains(problem.source);
        const QString where = named ? QString() : u" (%1)"_s.arg(problem.source);
        console.warn(u"%1: %2%3"_s.arg(problemType(backup, problem), problem.what, where));
    }
    if (problems.size() > said.size())
        console.warn(u"%1 more of that kind."_s.arg(grouped(problems.size() - said.size())));
}

} // namespace Cli
