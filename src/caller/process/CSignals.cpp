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
    sigset_t kept;
    sigemptyset(&kept);
    struct sigaction action
    {
    };
    action.sa_handler = OnSignal;
    for (const int number : Signals)
    {
        sigaddset(&kept, number);
        sigaction(number, &action, nullptr);
    }
    sigprocmask(SIG_BLOCK, &kept, nullptr);
    // A reader that goes away is a failed write.
    signal(SIGPIPE, SIG_IGN);
}

bool CSignals::IsInterrupted()
{
    // One that came while nobody waited.
    sigset_t pending;
    sigpending(&pending);
    for (const int number : Signals)
        if (sigismember(&pending, number) == 1)
            s_isInterrupted = 1;
    return s_isInterrupted != 0;
}
