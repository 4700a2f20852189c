#pragma once

#include <thread>

#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

// Calls the function on a thread that may not raise its priority, and that passes this on to the threads it starts.
template <class Function>
void ZVRunWithoutPriorityRights(const Function& function)
{
    const auto limit = [](__rlimit_resource_t resource)
    {
        rlimit limits = {};
        getrlimit(resource, &limits);
        limits.rlim_cur = 0;
        setrlimit(resource, &limits);
    };
    limit(RLIMIT_NICE);
    limit(RLIMIT_RTPRIO);
    const auto drop = [&function]
    {
        __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct capabilities[2] = {};
        syscall(SYS_capget, &header, capabilities);
        capabilities[0].effective &= ~(1u << CAP_SYS_NICE);
        syscall(SYS_capset, &header, capabilities);
        function();
    };
    std::thread(drop).join();
}
