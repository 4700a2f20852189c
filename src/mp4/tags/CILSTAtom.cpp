#include "mp4/tags/CILSTAtom.h"

#include "core/date/ZVDate.h"
#include "core/property/ZVPropertyMap.h"
#include "mp4/tags/C4DashesAtom.h"
#include "mp4/tags/CTagAtomBase.h"

#include <algorithm>
#include <cmath>

namespace
{
// What becomes of a value.
enum class TagForm
{
    Text,
    TextUnlessSet,
    Date,    // the number of the date, if the text is one
    Rating,  // ten points to five stars
};

// The names of a type of tag.
struct TagName
{
    uint32_t Type;
    const wchar_t* Key;
    // A second name that gets the value too, or null.
    const wchar_t* OtherKey = nullptr;
    TagForm Form = TagForm::Text;
};

// clang-format off
constexpr TagName TagNames[] = {
    {SignedFourCC("nam"), L"Name"},
    {SignedFourCC("ART"), L"Artist"},
    {FourCC("aART"), L"Album Artist"},
    {SignedFourCC("alb"), L"Album"},
    {SignedFourCC("cmt"), L"Comment"},
    {SignedFourCC("day"), L"Date", nullptr, TagForm::Date},
    {SignedFourCC("gen"), L"Genre"},
    {FourCC("gnre"), L"Genre"},
    {FourCC("trkn"), L"Track #"},
    {FourCC("disk"), L"Disc #"},
    {SignedFourCC("wrt"), L"Composer"},
    {SignedFourCC("con"), L"Conductor"},
    {SignedFourCC("dir"), L"Director"},
    {SignedFourCC("prd"), L"Producer"},
    {SignedFourCC("pub"), L"Publisher"},
    {SignedFourCC("wrk"), L"Work"},
    {SignedFourCC("mvn"), L"Movement"},
    {SignedFourCC("mvi"), L"Movement Number"},
    {SignedFourCC("mvc"), L"Movement Count"},
    {FourCC("shwm"), L"Show Work Movement"},
    {FourCC("tmpo"), L"BPM"},
    {FourCC("cpil"), L"Compilation"},
    {FourCC("rtng"), L"Rating"},
    {SignedFourCC("grp"), L"Grouping"},
    {FourCC("stik"), L"stik"},
    {FourCC("pcst"), L"Podcast"},
    {FourCC("catg"), L"Category"},
    {FourCC("keyw"), L"Keywords"},
    {FourCC("purl"), L"Feed URL"},
    {FourCC("egid"), L"Episode Global ID"},
    {FourCC("desc"), L"Description"},
    {SignedFourCC("lyr"), L"Lyrics"},
    {FourCC("tvnn"), L"TV Network Name"},
    {FourCC("tvsh"), L"TV Show Name"},
    {FourCC("tven"), L"Number of Episodes"},
    {FourCC("tves"), L"Episode"},
    {FourCC("tvsn"), L"Season"},
    {FourCC("purd"), L"Purchased Date"},
    {FourCC("pgap"), L"Gapless Playback"},
    {FourCC("sonm"), L"Title Sort Order", L"Title Sort"},
    {FourCC("soar"), L"Artist Sort Order", L"Artist Sort"},
    {FourCC("soaa"), L"Album Artist Sort Order", L"Album Artist Sort"},
    {FourCC("soal"), L"Album Sort Order", L"Album Sort"},
    {FourCC("soco"), L"Composer Sort Order", L"Composer Sort"},
    {FourCC("sosn"), L"Show Name Sort Order", L"Show Name Sort"},
    {SignedFourCC("too"), L"Tool Name"},
    {FourCC("cprt"), L"Copyright", nullptr, TagForm::TextUnlessSet},
};
// clang-format on

// A free-form tag that the library has a name of its own for.
struct FreeFormName
{
    const wchar_t* Name;
    const wchar_t* Key;
    TagForm Form = TagForm::Text;
};

// clang-format off
constexpr FreeFormName FreeFormNames[] = {
    {L"replaygain_track_gain", L"Replay Gain"},
    {L"replaygain_track_peak", L"Peak Level"},
    {L"RATING", L"Rating", TagForm::Rating},
    {L"initialkey", L"Initial Key"},
    {L"MEDIA", L"Release Medium"},
};
// clang-format on

// Nobody gives more points, and their number stays far from where integers end.
constexpr double MaximumPoints = 1e6;

int32_t GetStars(const ZVString& points)
{
    const double number = std::round(points.ToDouble(nullptr, true));
    if (std::isnan(number))
        return 0;
    return (static_cast<int32_t>(std::clamp(number, -MaximumPoints, MaximumPoints)) + 1) / 2;
}

// True if the value was set.
bool Store(const wchar_t* key, const ZVString& value, TagForm form, ZVPropertyMap& map)
{
    double date = 0.0;
    switch (form)
    {
    case TagForm::TextUnlessSet:
        if (map.IsSet(key))
            return false;
        break;
    case TagForm::Date:
        if (!ZVDate::Parse(value, 0, date))
            return false;
        map.SetDouble(key, date);
        return true;
    case TagForm::Rating:
        map.SetInt(key, GetStars(value));
        return true;
    case TagForm::Text:
        break;
    }
    map.SetString(key, value);
    return true;
}

bool StoreFreeForm(const C4DashesAtom& item, ZVPropertyMap& map)
{
    ZVString mean;
    ZVString name;
    ZVString value;
    if (!item.GetMean(mean) || !item.GetName(name) || !item.GetData(value))
        return false;
    for (const FreeFormName& known : FreeFormNames)
        if (name.IsEqual(known.Name, false))
            return Store(known.Key, value, known.Form, map);
    return Store(name, value, TagForm::Text, map);
}

bool StoreTag(const CTagAtomBase& tag, ZVPropertyMap& map)
{
    const auto* const name =
        std::ranges::find_if(TagNames, [&tag](const TagName& candidate) { return candidate.Type == tag.GetType(); });
    ZVString value;
    if (name == std::end(TagNames) || !tag.GetValue(value))
        return false;
    if (name->OtherKey != nullptr)
        Store(name->OtherKey, value, name->Form, map);
    return Store(name->Key, value, name->Form, map);
}
}

bool CILSTAtom::GetTags(ZVPropertyMap& map) const
{
    bool isAnySet = false;
    for (const CAtom* const child : GetChildren())
    {
        if (const auto* const tag = dynamic_cast<const CTagAtomBase*>(child))
            isAnySet |= StoreTag(*tag, map);
        else if (const auto* const item = dynamic_cast<const C4DashesAtom*>(child))
            isAnySet |= StoreFreeForm(*item, map);
    }
    return isAnySet;
}
