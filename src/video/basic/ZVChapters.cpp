#include "video/basic/ZVChapters.h"

#include "contracts/IZVVideoPlayer.h"
#include "core/containers/ZVStringArray.h"
#include "core/property/ZVPropertyMap.h"
#include "system/library/ZVDllString.h"

namespace
{
constexpr wchar_t Separator[] = L"|";
}

void WriteChapters(IZVVideoPlayer& player, ZVPropertyMap& properties)
{
    const int32_t count = player.GetChapterCount();
    if (count <= 0)
        return;
    ZVStringArray names;
    ZVStringArray times;
    for (int32_t index = 0; index < count; ++index)
    {
        ZVString name;
        ZVDllString value(name);
        player.GetChapterName(index, value);
        names.Add(name);
        times.Add(ZVString::FromInt(player.GetChapterTime(index)));
    }
    properties.SetInt(L"$!@_Chapters", count);
    properties.SetString(L"$!@_ChapterNames", names.GetJoined(Separator));
    properties.SetString(L"$!@_ChapterTimes", times.GetJoined(Separator));
}
