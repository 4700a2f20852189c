#include "worker/ZVVideoTasks.h"

#include "video/extended/CZVVideoAnalyzeExtended.h"
#include "worker/ZVWorkerCommand.h"

namespace
{
// UTF-8 without a mark.
constexpr int32_t UTF8File = 2;

bool WriteResult(const ZVPropertyMap& properties, const ZVString& path)
{
    ZVString text;
    properties.ToXML(text, L"XMLPH", false, 1.0);
    return text.SaveToFile(path, UTF8File);
}
}

bool RunAnalyzeVideoExtendedTask(const ZVWorkerRequest& request)
{
    CZVVideoAnalyzeExtended analysis;
    return analysis.AnalyzeFile(request.Match.GetPath(0), false) &&
           WriteResult(analysis.Properties, request.Match.GetPath(1));
}
