#include "system/thread/ZVStuckThread.h"

#include <cstdlib>
#include <unistd.h>

bool ZVStuckThread::Abandon(std::thread& thread)
{
    // What is registered last runs first.
    static const int s_registered = on_exit([](int status, void*) { _exit(status); }, nullptr);
    thread.detach();
    return s_registered == 0;
}
