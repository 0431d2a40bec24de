#include "Export/Problems.h"

#include "Export/Text.h"
#include "PhoneItems/Backup.h"
#include "PhoneItems/words/Words.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Export {

namespace {

Problem::Kind kindOf(const PhoneBackup::Problem &problem)
{
    return problem.absent         ? Problem::Kind::Absence
        : problem.neverDownloaded ? Problem::Kind::NeverDownloaded
        : problem.loss            ? Problem::Kind::Loss
                                  : Problem::Kind::Warning;
}

} // namespace

QString Problem::sentence() const
{
    const bool isNamed = source.isEmpty() || what.contains(source);
    const QString where = isNamed ? QString() : u" (%1)"_s.arg(source);
    return u"%1: %2%3"_s.arg(type, what, where);
}

QList<Problem> problems(const PhoneItems::Backup &backup, qsizetype known)
{
    const QList<PhoneBackup::Problem> all = backup.problems();
    QList<Problem> found;
    for (qsizetype i = known; i < all.size(); ++i) {
        const PhoneBackup::Problem &problem = all.at(i);
        found += { kindOf(problem),
                   problem.dataType,
                   problem.dataType >= 0 ? backup.dataTypeName(problem.dataType) : u"Backup"_s,
                   problem.source,
                   PhoneItems::words(problem.what),
                   problem.systemError };
    }
    return found;
}

QStringList absences(const QList<Problem> &problems)
{
    QStringList lines;
    for (const Problem &problem : problems) {
        if (problem.kind == Problem::Kind::Absence)
            lines += u"%1: %2"_s.arg(problem.type, problem.what);
    }
    return lines;
}

qint64 neverDownloaded(const QList<Problem> &problems)
{
    return std::count_if(problems.begin(), problems.end(), [](const Problem &problem) {
        return problem.kind == Problem::Kind::NeverDownloaded;
    });
}

QString neverDownloadedSentence(qint64 files)
{
    return counted(files, u"file was"_s, u"files were"_s)
        + u" never downloaded to the phone, so the backup does not contain %1."_s.arg(
            files == 1 ? u"it"_s : u"them"_s);
}

std::optional<Failure> temporaryFolderFailure(const PhoneItems::Backup &backup)
{
    const QList<PhoneBackup::Problem> all = backup.problems();
    const auto found = std::find_if(all.begin(), all.end(), [](const auto &problem) {
        return problem.fault == PhoneBackup::Fault::TemporaryFolder;
    });
    if (found == all.end())
        return std::nullopt;
    return failureOf({ found->fault, found->source, found->what, found->systemError });
}

} // namespace Export
