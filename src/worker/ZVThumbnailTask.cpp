#include "worker/ZVThumbnailTask.h"

#include "system/file/ZVFileInfo.h"
#include "system/filename/ZVFilename.h"
#include "system/log/ZVLogScope.h"
#include "video/thumbnail/CZVVideoThumbHelper.h"
#include "worker/ZVWorkerCommand.h"

namespace
{
constexpr int32_t VideoParameter = 0;
constexpr int32_t ThumbnailParameter = 1;
constexpr int32_t MetadataParameter = 2;
constexpr int32_t TimeParameter = 3;

constexpr int32_t DefaultTimeMs = 5000;

// A parameter may be a name with properties.
ZVString GetPathOf(const ZVWorkerRequest& request, int32_t parameter)
{
    return ZVFilename(request.Match.GetPath(parameter)).GetPathOnly();
}
}

int32_t GetThumbnailTime(const ZVString& parameter)
{
    return !parameter.IsEmpty() && parameter.IsNumber() ? parameter.ToInt() : DefaultTimeMs;
}

bool RunThumbnailTask(const ZVWorkerRequest& request, ZVPropertyMap&)
{
    const ZVString thumbnail = GetPathOf(request, ThumbnailParameter);
    const ZVFilename video(request.Match.GetPath(VideoParameter));
    // A cover would take the place of the film that it is from.
    if (ZVFileInfo(thumbnail).IsSameFile(ZVFileInfo(video.GetPathOnly())))
    {
        request.Scope.Log("The result would take the place of the input: %s", thumbnail);
        return false;
    }
    return CZVVideoThumbHelper().GetThumbnailZV(video.GetPathOnly(), video.GetExtension(true), thumbnail,
                                                GetPathOf(request, MetadataParameter),
                                                GetThumbnailTime(request.Match.GetParameter(TimeParameter)));
}
