#include "mp4/CodecNames.h"

#include "mp4/samples/CCodecNumber.h"

namespace
{
// The codecs from one number to another.
struct CodecName
{
    int32_t First;
    int32_t Last;
    const wchar_t* Name;
};

// Callers know these texts as they are spelled here. AC-3 and E-AC-3 have numbers and no names.
constexpr CodecName CodecNames[] = {
    {32,    32,    L"mp4v"                     },
    {64,    64,    L"MP4 AAC"                  },
    {96,    101,   L"MPEG-2 Video"             },
    {102,   104,   L"MPEG-2 AAC"               },
    {105,   105,   L"MPEG-2 Audio"             },
    {106,   106,   L"MPEG-1 Video"             },
    {107,   107,   L"MPEG-1 Audio"             },
    {108,   108,   L"JPEG"                     },
    {254,   254,   L"ALAC"                     },
    {65280, 65280, L"AVC1"                     },
    {65281, 65281, L"Apple Quicktime Animation"},
    {65282, 65282, L"SQV3"                     },
    {65283, 65283, L"twos"                     },
    {65284, 65284, L"sowt"                     },
    {65285, 65285, L"SQV1"                     },
    {65286, 65286, L"raw"                      },
    {65287, 65287, L"ulaw"                     },
};
}

ZVString GetCodecName(int32_t number)
{
    for (const CodecName& codec : CodecNames)
        if (number >= codec.First && number <= codec.Last)
            return codec.Name;
    return L"Unknown codec";
}
