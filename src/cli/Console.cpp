#include "Console.h"

#include "Export/NewFile.h"
#include "Export/Text.h"
#include "TextTable.h"

#include <cerrno>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using Export::printable;
using Export::writeAll;

namespace Cli {

namespace {

constexpr int kUsualColumns = 80;
constexpr const char *kEraseLine = "\r\033[K";

// What is said has no other place to go to when standard error is closed.
void writeToError(const QByteArray &bytes)
{
    static_cast<void>(writeAll(STDERR_FILENO, bytes));
}

bool canRedraw()
{
    return ::isatty(STDERR_FILENO) == 1 && qgetenv("TERM") != "dumb";
}

} // namespace

Console::Console(bool quiet)
    : m_quiet(quiet)
    , m_terminal(canRedraw())
{
}

Console::~Console()
{
    clearStatus();
}

bool Console::isQuiet() const
{
    return m_quiet;
}

bool Console::isTerminal() const
{
    return m_terminal;
}

int Console::columns() const
{
    winsize size {};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return kUsualColumns;
}

void Console::say(const QString &line)
{
    if (!m_quiet)
        writeLine(line);
}

void Console::warn(const QString &line)
{
    writeLine(u"Warning: "_s + line);
}

void Console::error(const QString &line)
{
    writeLine(u"Error: "_s + line);
}

void Console::note(const QString &line)
{
    writeLine(line);
}

void Console::status(const QString &line)
{
    if (m_quiet || !m_terminal)
        return;
    // The last column stays free: some terminals wrap when it is written.
    const QString shown = elided(printable(line), columns() - 1);
    writeToError(kEraseLine + shown.toUtf8());
    m_statusShown = true;
}

void Console::clearStatus()
{
    if (m_statusShown)
        writeToError(kEraseLine);
    m_statusShown = false;
}

bool Console::result(const QByteArray &text)
{
    clearStatus();
    const int fault = writeAll(STDOUT_FILENO, text);
    if (fault == 0 || fault == EPIPE)
        return true;
    error(
        u"The result could not be written to standard output: %1."_s.arg(Export::errorText(fault)));
    return false;
}

void Console::writeLine(const QString &line)
{
    clearStatus();
    writeToError(printable(line).toUtf8() + '\n');
}

} // namespace Cli
