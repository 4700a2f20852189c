#include "caller/process/CSignals.h"

#include <csignal>

namespace
{
constexpr int Signals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t s_isInterrupted = 0;

void OnSignal(int)
{
    s_isInterrupted = 1;
}
}

void CSignals::Prepare()
{
    struct sigaction action
    {
    };
    action.sa_handler = OnSignal;
    for (const int number : Signals)
        sigaction(number, &action, nullptr);
    // A reader that goes away is a failed write.
    signal(SIGPIPE, SIG_IGN);
}

bool CSignals::IsInterrupted()
{
    return s_isInterrupted != 0;
}
