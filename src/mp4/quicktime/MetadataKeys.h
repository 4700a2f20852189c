#pragma once

#include <cstdint>

// A key of QuickTime metadata, the name that the library knows its tag by, and the type of data that it has (QuickTime File
// Format, "Well-known types").
struct MetadataKey
{
    const wchar_t* Key;
    const wchar_t* Tag;
    uint32_t DataType;
};

// The keys of the namespace mdta, which are reversed domain names.
inline constexpr MetadataKey MDTAKeys[] = {
    {L"com.apple.quicktime.album",              L"Album",                 1 },
    {L"com.apple.quicktime.artist",             L"Artist",                1 },
    {L"com.apple.quicktime.artwork",            L"Image File",            13},
    {L"com.apple.quicktime.author",             L"Author",                1 },
    {L"com.apple.quicktime.comment",            L"Comment",               1 },
    {L"com.apple.quicktime.copyright",          L"Copyright",             1 },
    {L"com.apple.quicktime.creationdate",       L"Date",                  1 },
    {L"com.apple.quicktime.description",        L"Description",           1 },
    {L"com.apple.quicktime.director",           L"Director",              1 },
    {L"com.apple.quicktime.title",              L"Name",                  1 },
    {L"com.apple.quicktime.genre",              L"Genre",                 1 },
    {L"com.apple.quicktime.information",        L"Information",           1 },
    {L"com.apple.quicktime.keywords",           L"Keywords",              1 },
    {L"com.apple.quicktime.location.ISO6709",   L"Location",              1 },
    {L"com.apple.quicktime.producer",           L"Producer",              1 },
    {L"com.apple.quicktime.publisher",          L"Publisher",             1 },
    {L"com.apple.quicktime.software",           L"Software",              1 },
    {L"com.apple.quicktime.year",               L"Year",                  1 },
    {L"com.apple.quicktime.collection.user",    L"User Collection",       1 },
    {L"com.apple.quicktime.rating.user",        L"Rating",                23},
    {L"com.apple.quicktime.make",               L"Make",                  1 },
    {L"com.apple.quicktime.model",              L"Model",                 1 },
    {L"com.apple.quicktime.content.identifier", L"Content ID",            1 },
    {L"com.apple.photos.originating.signature", L"Originating Signature", 1 },
};

// The keys of the namespace udta, which are the types that tags have elsewhere.
inline constexpr MetadataKey UDTAKeys[] = {
    {L"\u00a9alb", L"Album",              1 },
    {L"\u00a9ART", L"Artist",             1 },
    {L"aART",      L"Album Artist",       1 },
    {L"covr",      L"Image File",         13},
    {L"\u00a9cmt", L"Comment",            1 },
    {L"\u00a9cpy", L"Copyright",          1 },
    {L"\u00a9day", L"Date",               1 },
    {L"desc",      L"Description",        1 },
    {L"\u00a9dir", L"Director",           1 },
    {L"\u00a9nam", L"Name",               1 },
    {L"\u00a9gen", L"Genre",              1 },
    {L"keyw",      L"Keywords",           1 },
    {L"\u00a9prd", L"Producer",           1 },
    {L"\u00a9pub", L"Publisher",          1 },
    {L"rtng",      L"Access Rating",      75},
    {L"\u00a9wrt", L"Composer",           1 },
    {L"\u00a9con", L"Conductor",          1 },
    {L"\u00a9wrk", L"Work",               1 },
    {L"\u00a9mvn", L"Movement",           1 },
    {L"\u00a9mvi", L"Movement Number",    76},
    {L"\u00a9mvc", L"Movement Count",     76},
    {L"shwm",      L"Show Work Movement", 75},
    {L"tmpo",      L"BPM",                76},
    {L"cpil",      L"Compilation",        75},
    {L"\u00a9grp", L"Grouping",           1 },
    {L"\u00a9lyr", L"Lyrics",             1 },
};
