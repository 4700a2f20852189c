#include "mp4/MediaSubTypes.h"

#include "core/property/ZVPropertyMap.h"

namespace
{
struct MediaSubType
{
    const wchar_t* Key;
    int32_t Number;
    const wchar_t* Word;
};

// The first that fits tells the word.
constexpr MediaSubType MediaSubTypes[] = {
    {L"stik",    1,  L"Music"      },
    {L"stik",    2,  L"Audiobook"  },
    {L"stik",    6,  L"Music Video"},
    {L"stik",    9,  L"Movie"      },
    {L"stik",    10, L"TV Show"    },
    {L"stik",    14, L"Ringtone"   },
    {L"Podcast", 1,  L"Podcast"    },
};
}

void SetMediaSubType(ZVPropertyMap& map)
{
    for (const MediaSubType& type : MediaSubTypes)
        if (map.IsSet(type.Key) && map.GetInt(type.Key) == type.Number)
        {
            map.SetString(L"Media Sub Type", type.Word);
            return;
        }
}
