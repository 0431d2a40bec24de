#include "Interrupt.h"

#include <csignal>
#include <initializer_list>
#include <poll.h>

namespace Cli::Interrupt {

namespace {

volatile std::sig_atomic_t stopRequested = 0;

void noteSignal(int /*number*/)
{
    stopRequested = 1;
}

} // namespace

void install()
{
    for (const int number : { SIGINT, SIGTERM, SIGHUP }) {
        struct sigaction action = {};
        if (::sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = noteSignal;
        // Reads and writes go on where they were: a copy is only ever stopped between two chunks.
        action.sa_flags = SA_RESTART;
        ::sigaction(number, &action, nullptr);
    }
}

bool requested()
{
    return stopRequested != 0;
}

bool mayGoOn()
{
    return !requested();
}

bool waitForInput(int descriptor)
{
    constexpr int kLookMs = 200; // a signal may come just before the wait begins
    pollfd input { descriptor, POLLIN, 0 };
    while (!requested()) {
        if (::poll(&input, 1, kLookMs) > 0)
            return true;
    }
    return false;
}

} // namespace Cli::Interrupt
