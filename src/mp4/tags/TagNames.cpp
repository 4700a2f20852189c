#include "mp4/tags/TagNames.h"

#include "core/containers/ZVStringHash.h"
#include "mp4/model/FourCC.h"

namespace
{
// A name of the library's, and the type of its atom.
struct TagName
{
    wchar_t Name[24];
    uint32_t Type;
};

// Reading is not the reverse in every row: it calls tves "Episode", and rtng "Rating".
// clang-format off
constexpr TagName TagNames[] = {
    {L"Album",                   SignedFourCC("alb")},
    {L"Artist",                  SignedFourCC("ART")},
    {L"Album Artist",            FourCC("aART")},
    {L"Comment",                 SignedFourCC("cmt")},
    {L"Date",                    SignedFourCC("day")},
    {L"Name",                    SignedFourCC("nam")},
    {L"Genre",                   FourCC("gnre")},
    {L"Track #",                 FourCC("trkn")},
    {L"Disc #",                  FourCC("disk")},
    {L"Composer",                SignedFourCC("wrt")},
    {L"Conductor",               SignedFourCC("con")},
    {L"Director",                SignedFourCC("dir")},
    {L"Producer",                SignedFourCC("prd")},
    {L"Publisher",               SignedFourCC("pub")},
    {L"Work",                    SignedFourCC("wrk")},
    {L"Movement",                SignedFourCC("mvn")},
    {L"Movement Number",         SignedFourCC("mvi")},
    {L"Movement Count",          SignedFourCC("mvc")},
    {L"Show Work Movement",      FourCC("shwm")},
    {L"BPM",                     FourCC("tmpo")},
    {L"Compilation",             FourCC("cpil")},
    {L"Access Rating",           FourCC("rtng")},
    {L"Grouping",                SignedFourCC("grp")},
    {L"stik",                    FourCC("stik")},
    {L"Podcast",                 FourCC("pcst")},
    {L"Category",                FourCC("catg")},
    {L"Keywords",                FourCC("keyw")},
    {L"Feed URL",                FourCC("purl")},
    {L"Episode Global ID",       FourCC("egid")},
    {L"Description",             FourCC("desc")},
    {L"Lyrics",                  SignedFourCC("lyr")},
    {L"TV Network Name",         FourCC("tvnn")},
    {L"TV Show Name",            FourCC("tvsh")},
    {L"Number of Episodes",      FourCC("tven")},
    {L"Season",                  FourCC("tves")},
    {L"Purchased Date",          FourCC("purd")},
    {L"Gapless Playback",        FourCC("pgap")},
    {L"Title Sort Order",        FourCC("sonm")},
    {L"Title Sort",              FourCC("sonm")},
    {L"Artist Sort Order",       FourCC("soar")},
    {L"Artist Sort",             FourCC("soar")},
    {L"Album Artist Sort Order", FourCC("soaa")},
    {L"Album Artist Sort",       FourCC("soaa")},
    {L"Album Sort Order",        FourCC("soal")},
    {L"Album Sort",              FourCC("soal")},
    {L"Composer Sort Order",     FourCC("soco")},
    {L"Composer Sort",           FourCC("soco")},
    {L"Show Name Sort Order",    FourCC("sosn")},
    {L"Show Name Sort",          FourCC("sosn")},
};
// clang-format on
}

uint32_t FindTagType(const ZVString& name)
{
    for (const TagName& tag : TagNames)
        if (ZVStringHash::Equal<false>(name, tag.Name))
            return tag.Type;
    return 0;
}
