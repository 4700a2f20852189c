#include "video/extended/ZVPrimariesName.h"

#include "video/codec/ZVCodecHeaders.h"

namespace
{
struct NamedPrimaries
{
    int32_t Primaries;
    const wchar_t* Name;
};

constexpr NamedPrimaries PrimariesNames[] = {
    {AVCOL_PRI_RESERVED0,   L""              },
    {AVCOL_PRI_BT709,       L"BT.709"        },
    {AVCOL_PRI_UNSPECIFIED, L""              },
    {AVCOL_PRI_RESERVED,    L""              },
    {AVCOL_PRI_BT470M,      L"BT.470M"       },
    {AVCOL_PRI_BT470BG,     L"BT.601 (PAL)"  },
    {AVCOL_PRI_SMPTE170M,   L"BT.601 (NTSC)" },
    {AVCOL_PRI_SMPTE240M,   L"SMPTE C (NTSC)"},
    {AVCOL_PRI_BT2020,      L"BT.2020"       },
    {AVCOL_PRI_SMPTE428,    L"XYZ"           },
    {AVCOL_PRI_SMPTE431,    L"DCI P3"        },
    {AVCOL_PRI_SMPTE432,    L"Display P3"    },
};
}

ZVString PrimariesName(int32_t primaries, const char* codecName)
{
    for (const NamedPrimaries& row : PrimariesNames)
        if (row.Primaries == primaries)
            return row.Name;
    ZVString name = ZVString::FromUTF8(codecName);
    name.MakeUpper();
    return name;
}
