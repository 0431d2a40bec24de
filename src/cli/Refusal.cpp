#include "Refusal.h"

#include "Console.h"
#include "Json.h"
#include "Options.h"

namespace Cli {

ExitCode refuse(Console &console, const Options &options, const Failure &failure)
{
    return refuse(console, options, NoChoice { failure, {} });
}

ExitCode refuse(Console &console, const Options &options, const NoChoice &choice)
{
    say(console, choice.failure);
    if (options.json && !console.result(Json::document(Json::failed(choice))))
        return ExitCode::Failed;
    return choice.failure.exitCode;
}

} // namespace Cli
