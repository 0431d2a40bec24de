#include "Refusal.h"

#include "Console.h"
#include "Json.h"
#include "Options.h"

namespace Cli {

ExitCode refuse(Console &console, const Options &options, const Failure &failure)
{
    return refuse(console, options, NoChoice { failure, {}, {} });
}

ExitCode refuse(Console &console, const Options &options, const NoChoice &choice)
{
    say(console, choice.failure);
    const QByteArray result = options.json ? Json::document(Json::failed(choice))
        : choice.table.isEmpty()           ? QByteArray()
                                           : choice.table.join(u'\n').toUtf8() + '\n';
    return console.result(result) ? choice.failure.exitCode : ExitCode::Failed;
}

} // namespace Cli
