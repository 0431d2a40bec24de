#include "Export/Run.h"

#include "Export/Observer.h"
#include "Export/Preparation.h"
#include "Export/PreparedRun.h"
#include "Export/Request.h"

#include <algorithm>
#include <sys/stat.h>

namespace Export {

namespace {

// Who encrypted a backup does not want its contents to be readable for all.
class FilesForUserAlone
{
public:
    FilesForUserAlone()
        : m_before(::umask(0))
    {
        ::umask(m_before | S_IRWXG | S_IRWXO);
    }
    ~FilesForUserAlone() { ::umask(m_before); }

    FilesForUserAlone(const FilesForUserAlone &) = delete;
    FilesForUserAlone &operator=(const FilesForUserAlone &) = delete;

private:
    mode_t m_before;
};

Outcome refused(const Refusal &refusal)
{
    Outcome outcome;
    outcome.status = refusal.failure.status();
    outcome.failure = refusal.failure;
    outcome.several = refusal.several;
    return outcome;
}

} // namespace

Status Contents::status() const
{
    const bool isComplete =
        std::none_of(problems.begin(), problems.end(), [](const Problem &problem) {
            return problem.kind == Problem::Kind::Loss;
        });
    return isComplete ? Status::Complete : Status::Incomplete;
}

std::variant<Contents, Refusal>
look(const Request &request, Observer &observer, const KeepGoing &keepGoing)
{
    const auto choice = chooseBackup(request.backup);
    if (const auto *refusal = std::get_if<Refusal>(&choice))
        return *refusal;
    const auto opened =
        openBackup(std::get<BackupInfo>(choice), request.messages, observer, keepGoing);
    if (const auto *failure = std::get_if<Failure>(&opened))
        return Refusal { *failure, {} };
    const Backup &backup = *std::get<0>(opened);
    const auto taken = takeInventory(backup, request.types, observer, keepGoing);
    if (const auto *failure = std::get_if<Failure>(&taken))
        return Refusal { *failure, {} };
    return Contents { backup.info(), std::get<Inventory>(taken), problems(backup) };
}

Outcome run(const Request &request, Observer &observer, const KeepGoing &keepGoing)
{
    const auto choice = chooseBackup(request.backup);
    if (const auto *refusal = std::get_if<Refusal>(&choice))
        return refused(*refusal);
    const auto &info = std::get<BackupInfo>(choice);
    const Preparation preparation(request, info);
    if (const auto failure = preparation.checkOutput())
        return refused({ *failure, {} });
    const auto opened = openBackup(info, request.messages, observer, keepGoing);
    if (const auto *failure = std::get_if<Failure>(&opened))
        return refused({ *failure, {} });
    const Backup &backup = *std::get<0>(opened);

    std::optional<FilesForUserAlone> privacy;
    if (info.encrypted)
        privacy.emplace();
    const auto prepared = preparation.prepare(backup, observer, keepGoing);
    if (const auto *failure = std::get_if<Failure>(&prepared))
        return refused({ *failure, {} });
    PreparedRun run(
        request, backup, std::get<Inventory>(prepared), preparation.output(), observer, keepGoing);
    return run.execute();
}

} // namespace Export
