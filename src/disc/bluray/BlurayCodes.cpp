#include "disc/bluray/BlurayCodes.h"

#include <cstddef>

namespace
{
using enum BlurayStreamKind;

// clang-format off
constexpr BlurayStreamCoding StreamCodings[] = {
    {0x01, Video,    true,  L"MPEG-1 Video",             L"MPEG-1",         L"MPEG-1"},
    {0x02, Video,    true,  L"MPEG-2 Video",             L"MPEG-2",         L"MPEG-2"},
    {0x03, Audio,    true,  L"MP1 Audio",                L"MP1",            L"MP1"},
    {0x04, Audio,    true,  L"MP2 Audio",                L"MP2",            L"MP2"},
    {0x1b, Video,    true,  L"MPEG-4 AVC Video",         L"AVC",            L"AVC"},
    {0x20, Video,    false, L"MPEG-4 MVC Video",         L"MVC",            L"MVC"},
    {0x24, Video,    true,  L"HEVC Video",               L"HEVC",           L"HEVC"},
    {0x80, Audio,    true,  L"LPCM Audio",               L"LPCM",           L"LPCM"},
    {0x81, Audio,    true,  L"Dolby Digital Audio",      L"DD AC3",         L"AC3",    L"Dolby Digital EX Audio", L"AC3-EX"},
    {0x82, Audio,    true,  L"DTS Audio",                L"DTS",            L"DTS",    L"DTS-ES Audio",           L"DTS-ES"},
    {0x83, Audio,    true,  L"Dolby TrueHD Audio",       L"Dolby TrueHD",   L"TrueHD"},
    {0x84, Audio,    true,  L"Dolby Digital Plus Audio", L"DD AC3+",        L"AC3+"},
    {0xa1, Audio,    true,  L"Dolby Digital Plus Audio", L"DD AC3+",        L"AC3+"},
    {0x85, Audio,    true,  L"DTS-HD High-Res Audio",    L"DTS-HD Hi-Res",  L"DTS-HD HR"},
    {0x86, Audio,    true,  L"DTS-HD Master Audio",      L"DTS-HD Master",  L"DTS-HD MA"},
    {0x90, Graphics, true,  L"Presentation Graphics",    L"PGS",            L"PGS"},
    {0x91, Graphics, true,  L"Interactive Graphics",     L"IGS",            L"IGS"},
    {0x92, Text,     true,  L"Subtitle",                 L"SUB",            L"SUB"},
    {0xa2, Audio,    true,  L"DTS Express",              L"DTS Express",    L"DTS Express"},
    {0xea, Video,    true,  L"VC-1 Video",               L"VC-1",           L"VC-1"},
};
// clang-format on

constexpr BlurayStreamCoding UnknownCoding = {0, None, false, L"UNKNOWN", L"UNKNOWN", L"UNKNOWN"};

struct SampleRateCode
{
    uint32_t Code;
    int32_t Rate;
};

constexpr SampleRateCode SampleRates[] = {
    {1,  48000 },
    {4,  96000 },
    {5,  192000},
    {12, 192000},
    {14, 96000 },
};

struct FrameRateCode
{
    uint32_t Code;
    BlurayFrameRate Rate;
};

constexpr FrameRateCode FrameRates[] = {
    {1, {24000, 1001}},
    {2, {24000, 1000}},
    {3, {25000, 1000}},
    {4, {30000, 1001}},
    {6, {50000, 1000}},
    {7, {60000, 1001}},
};

struct VideoFormatCode
{
    uint32_t Code;
    BlurayVideoFormat Format;
};

constexpr VideoFormatCode VideoFormats[] = {
    {1, {480, true}  },
    {2, {576, true}  },
    {3, {480, false} },
    {4, {1080, true} },
    {5, {720, false} },
    {6, {1080, false}},
    {7, {576, false} },
    {8, {2160, false}},
};

// The row of a code, or null.
template <class Row, size_t Count>
const Row* FindRow(const Row (&rows)[Count], uint32_t code)
{
    for (const Row& row : rows)
        if (row.Code == code)
            return &row;
    return nullptr;
}
}

const BlurayStreamCoding& BlurayCodes::FindStreamCoding(uint32_t code)
{
    const BlurayStreamCoding* const row = FindRow(StreamCodings, code);
    return row == nullptr ? UnknownCoding : *row;
}

int32_t BlurayCodes::GetSampleRate(uint32_t code)
{
    const SampleRateCode* const row = FindRow(SampleRates, code);
    return row == nullptr ? 0 : row->Rate;
}

BlurayFrameRate BlurayCodes::GetFrameRate(uint32_t code)
{
    const FrameRateCode* const row = FindRow(FrameRates, code);
    return row == nullptr ? BlurayFrameRate() : row->Rate;
}

BlurayVideoFormat BlurayCodes::GetVideoFormat(uint32_t code)
{
    const VideoFormatCode* const row = FindRow(VideoFormats, code);
    return row == nullptr ? BlurayVideoFormat() : row->Format;
}
