#include "siblings/player/CPlayerCodecLog.h"

#include "system/log/ZVLog.h"
#include "video/film/ZVCodecLog.h"

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Image, L"CVideoPlayer::AVLog"};
}

void CPlayerCodecLog::Write(void* context, int level, const char* format, va_list arguments)
{
    ZVCodecLog::WriteTo(Source, context, level, format, arguments);
}
