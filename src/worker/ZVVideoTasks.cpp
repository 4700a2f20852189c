#include "worker/ZVVideoTasks.h"

#include "video/basic/CZVVideoAnalyzeHelper.h"
#include "video/blackbars/CZVVideoBlackBars.h"
#include "video/extended/CZVVideoAnalyzeExtended.h"
#include "video/film/ZVFilmAspect.h"
#include "worker/ZVWorkerCommand.h"

bool RunAnalyzeZVVidTask(const ZVWorkerRequest& request, ZVPropertyMap& result)
{
    CZVVideoAnalyzeHelper analysis;
    if (!analysis.AnalyzeFile(ZVFilename(request.Match.GetPath(0))))
        return false;
    result = analysis;
    return true;
}

bool RunAnalyzeVideoExtendedTask(const ZVWorkerRequest& request, ZVPropertyMap& result)
{
    CZVVideoAnalyzeExtended analysis;
    if (!analysis.AnalyzeFile(ZVFilename(request.Match.GetPath(0))))
        return false;
    result = analysis.Properties;
    return true;
}

bool RunAnalyzeVideoBlackBarsTask(const ZVWorkerRequest& request, ZVPropertyMap& result)
{
    CZVVideoBlackBars analysis;
    if (!analysis.AnalyzeFile(ZVFilename(request.Match.GetPath(0))))
        return false;
    // Two of the names are there for every film, if only with an empty value.
    for (const wchar_t* const name : {CZVVideoBlackBars::Crop, ZVFilmAspect::Property})
        result.SetString(name, analysis.Properties.GetString(name));
    result.SetString(CZVVideoBlackBars::Report, analysis.Properties.GetString(CZVVideoBlackBars::Report), true);
    return true;
}
