#include "worker/ZVMonitorTask.h"

#include "devices/monitor/ZVMonitor.h"
#include "worker/ZVWorkerCommand.h"

namespace
{
constexpr int32_t NumberArgument = 1;
constexpr int32_t PathArgument = 2;

constexpr int32_t NoMonitor = -1;
constexpr int32_t UTF8Mode = 2;  // as ZVString::SaveToFile counts them
}

bool RunMonitorTask(const ZVWorkerRequest& request, ZVPropertyMap&)
{
    ZVMonitor monitor(NoMonitor);
    if (monitor.Monitors.IsEmpty())
        return false;
    monitor.SetMonitor(request.CommandLine.GetArgument(NumberArgument).ToInt());
    return monitor.GetRect().GetText(L",").SaveToFile(request.CommandLine.GetPath(PathArgument), UTF8Mode);
}
