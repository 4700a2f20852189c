#include "siblings/player/CTagNames.h"

namespace
{
struct RenamedTag
{
    char Name[24];
    char NewName[24];
};

// Tags of the ASF container and of the recordings that have its tags.
constexpr RenamedTag RenamedTags[] = {
    {"WM/AlbumArtist",          "album_artist"    },
    {"WM/AlbumTitle",           "album"           },
    {"WM/Composer",             "composer"        },
    {"WM/EncodedBy",            "encoded_by"      },
    {"WM/EncodingSettings",     "encoder"         },
    {"WM/Genre",                "genre"           },
    {"WM/Language",             "language"        },
    {"WM/OriginalFilename",     "filename"        },
    {"WM/PartOfSet",            "disc"            },
    {"WM/Publisher",            "publisher"       },
    {"WM/Tool",                 "encoder"         },
    {"WM/TrackNumber",          "track"           },
    {"WM/MediaStationCallSign", "service_provider"},
    {"WM/MediaStationName",     "service_name"    },
};

char ToLowerASCII(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}
}

// Does not use the locale: some locales do not pair "I" with "i".
bool CTagNames::AreSame(const char* a, const char* b)
{
    while (*a != '\0' && ToLowerASCII(*a) == ToLowerASCII(*b))
    {
        ++a;
        ++b;
    }
    return ToLowerASCII(*a) == ToLowerASCII(*b);
}

const char* CTagNames::FindNewName(const char* name)
{
    for (const RenamedTag& tag : RenamedTags)
        if (AreSame(tag.Name, name))
            return tag.NewName;
    return nullptr;
}
