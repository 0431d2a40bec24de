#include "Console.h"
#include "ExportCommand.h"
#include "Interrupt.h"
#include "ListCommand.h"
#include "Options.h"

#include <QCoreApplication>
#include <QDir>

#include <csignal>
#include <exception>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// A file of the export must never get the number of an output that the caller has closed.
void occupyStandardStreams()
{
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (::fcntl(fd, F_GETFD) == -1)
            static_cast<void>(::open("/dev/null", O_RDWR)); // takes the lowest free number
    }
}

// The program says all that it has to say itself; the framework's own remarks are for developers.
void dropMessage(QtMsgType /*type*/,
                 const QMessageLogContext & /*context*/,
                 const QString & /*text*/)
{
}

// Where the formats of pictures lie that the image library does not read by itself.
void addPluginFolder()
{
    const QDir installed(QCoreApplication::applicationDirPath()
                         + u"/" DATAEXPORT_PLUGINS_FROM_PROGRAM ""_s);
    QCoreApplication::addLibraryPath(installed.exists() ? installed.canonicalPath()
                                                        : u"" DATAEXPORT_BUILD_PLUGINS ""_s);
}

Cli::ExitCode run(int argc, const char *const *argv)
{
    auto parsed = Cli::parseOptions(argc, argv);
    if (const auto *exitCode = std::get_if<Cli::ExitCode>(&parsed))
        return *exitCode;
    const auto &options = std::get<Cli::Options>(parsed);
    Cli::Interrupt::install();
    Cli::Console console(options.quiet);
    try {
        return options.list ? Cli::runList(console, options) : Cli::runExport(console, options);
    } catch (const std::exception &fault) {
        console.error(u"The program cannot continue: %1."_s.arg(QString::fromUtf8(fault.what())));
        return Cli::ExitCode::Failed;
    }
}

} // namespace

int main(int argc, char **argv)
{
    occupyStandardStreams();
    // Writing says what went wrong; a signal would only end the export half-way.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    if (qEnvironmentVariableIsEmpty("QT_LOGGING_RULES"))
        qInstallMessageHandler(dropMessage);
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"dataexport"_s);
    QCoreApplication::setApplicationVersion(u"" DATAEXPORT_VERSION ""_s);
    addPluginFolder();
    return static_cast<int>(run(argc, argv));
}
