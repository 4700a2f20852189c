#include "video/basic/ZVTelevisionTags.h"

#include "contracts/IZVDateServices.h"
#include "core/containers/ZVStringArray.h"
#include "core/property/ZVPropertyMap.h"
#include "video/basic/ZVTagMapper.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace
{
constexpr std::wstring_view Extensions[] = {L"wtv", L"dvr-ms"};

constexpr ZVTagRule MusicRules[] = {
    {"WM/Genre",       L"Genre"       },
    {"WM/AlbumArtist", L"Album Artist"},
};

constexpr ZVTagRule RatingRules[] = {
    {"WM/ParentalRating",       L"MPAA Rating"            },
    {"WM/ParentalRatingReason", L"MPAA Rating Description"},
};

constexpr ZVTagRule MakerRules[] = {
    {"WM/Directors", L"Director"},
    {"WM/Producers", L"Producer"},
    {"WM/Language",  L"Language"},
    {"WM/Composer",  L"Composer"},
};

constexpr ZVTagRule StationRules[] = {
    {"WM/AlbumTitle",              L"Album"                },
    {"WM/TrackNumber",             L"Track #"              },
    {"WM/Lyrics",                  L"Lyrics"               },
    {"WM/MediaClassPrimaryID",     L"MediaClassPrimaryID"  },
    {"WM/MediaClassSecondaryID",   L"MediaClassSecondaryID"},
    {"WM/Provider",                L"Provider"             },
    {"WM/ProviderCopyright",       L"ProviderCopyright"    },
    {"WM/ProviderRating",          L"ProviderRating"       },
    {"WM/MediaStationCallSign",    L"Station Call Sign"    },
    {"WM/MediaStationName",        L"Station Name"         },
    {"WM/MediaNetworkAffiliation", L"Network Affiliation"  },
};

// An episode has its own text in one of two tags. It takes the place of the programme's, which moves on. The programme's is in a tag
// of its own too, which counts where it has not become a property: that of a film is usually not its name, that of a broadcast is.
struct EpisodeRule
{
    const char* Tag;
    const char* OtherTag;
    const char* ProgrammeTag;
    const wchar_t* Property;
    const wchar_t* ProgrammeProperty;
};

constexpr EpisodeRule EpisodeRules[] = {
    {"WM/SubTitle",            "WM/EpisodeName",        "title",       L"Name",        L"Series"            },
    {"WM/SubTitleDescription", "WM/EpisodeDescription", "description", L"Description", L"Series Description"},
};

// Recorders write these for a date that they do not know.
constexpr wchar_t UnknownTime[] = L"0001-01-01T00:00:00Z";
constexpr wchar_t UnknownDate[] = L"0";

constexpr wchar_t PartSeparator = L';';
constexpr wchar_t NameSeparator = L'/';
constexpr wchar_t ListSeparator[] = L";";

// What the people in one part of the credits are.
struct CreditsPart
{
    bool AreActors = false;
    bool AreDirectors = false;
};

constexpr CreditsPart CreditsParts[] = {
    {.AreActors = true},
    {.AreDirectors = true},
    {},
    {.AreActors = true},
};

void MapEpisode(const ZVTagMapper& mapper, const EpisodeRule& rule)
{
    ZVPropertyMap& properties = mapper.GetProperties();
    const ZVString text = mapper.GetTag(rule.Tag, rule.OtherTag);
    const ZVString old = properties.GetString(rule.Property);
    const ZVString programme = old.IsEmpty() ? mapper.GetTag(rule.ProgrammeTag) : old;
    if (text.IsEmpty() || text == programme)
        return;
    properties.SetString(rule.ProgrammeProperty, programme);
    properties.SetString(rule.Property, text);
}

void MapCredits(const ZVTagMapper& mapper)
{
    const ZVString text = mapper.GetTag("WM/MediaCredits");
    if (text.IsEmpty())
        return;
    ZVPropertyMap& properties = mapper.GetProperties();
    ZVStringArray parts;
    parts.SetSplit(text, PartSeparator);
    ZVStringArray actors;
    ZVStringArray credits;
    const int32_t count = std::min(parts.GetCount(), static_cast<int32_t>(std::size(CreditsParts)));
    for (int32_t index = 0; index < count; ++index)
    {
        ZVStringArray names;
        names.SetSplit(parts[index], NameSeparator);
        if (CreditsParts[index].AreDirectors && names.GetCount() > 0)
            properties.SetString(L"Director", names.GetJoined(ListSeparator));
        for (const ZVString& name : names)
        {
            credits.Add(name);
            if (CreditsParts[index].AreActors)
                actors.Add(name);
        }
    }
    properties.SetString(L"Actors", actors.GetJoined(ListSeparator));
    properties.SetString(L"Credits", credits.GetJoined(ListSeparator));
}

void MapDate(const ZVTagMapper& mapper)
{
    ZVString text = mapper.GetTag("WM/MediaOriginalBroadcastDateTime");
    if (text.IsEmpty() || text.IsEqual(UnknownTime, false))
        text = mapper.GetTag("WM/OriginalReleaseTime");
    if (!text.IsEqual(UnknownTime, false) && text != UnknownDate)
        mapper.SetDate(L"Date", text, 0);
}

void MapMovieFlag(const ZVTagMapper& mapper)
{
    const ZVString text = mapper.GetTag("WM/MediaIsMovie");
    if (!text.IsEmpty())
        mapper.GetProperties().SetString(L"Media Sub Type", text.ToBool() ? L"Movie" : L"TV Show");
}
}

bool ZVTelevisionTags::AreIn(const wchar_t* extension)
{
    return std::ranges::find(Extensions, std::wstring_view(extension)) != std::end(Extensions);
}

void ZVTelevisionTags::Map(const ZVTagMapper& mapper)
{
    mapper.MapTags(MusicRules);
    for (const EpisodeRule& rule : EpisodeRules)
        MapEpisode(mapper, rule);
    mapper.MapTags(RatingRules);
    MapCredits(mapper);
    mapper.MapTags(MakerRules);
    MapDate(mapper);
    mapper.SetDate(L"Date Recorded", mapper.GetTag("WM/WMRVEncodeTime", "WM/WMRVEndTime"), IZVDateServices::LocalTime);
    MapMovieFlag(mapper);
    mapper.MapTags(StationRules);
}
