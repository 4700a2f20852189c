#include "worker/ZVVideoTasks.h"

#include "video/extended/CZVVideoAnalyzeExtended.h"
#include "worker/ZVWorkerCommand.h"

bool RunAnalyzeVideoExtendedTask(const ZVWorkerRequest& request, ZVPropertyMap& result)
{
    CZVVideoAnalyzeExtended analysis;
    if (!analysis.AnalyzeFile(ZVFilename(request.Match.GetPath(0))))
        return false;
    result = analysis.Properties;
    return true;
}
