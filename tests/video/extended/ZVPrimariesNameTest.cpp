#include "video/extended/ZVPrimariesName.h"

#include <gtest/gtest.h>

namespace
{
TEST(ZVPrimariesName, IsTheProductsOwnOrTheLibrariesInUpperCase)
{
    const struct
    {
        int32_t Primaries;
        const char* CodecName;
        const wchar_t* Expected;
    } rows[] = {
        {0,   "reserved", L""            },
        {1,   "bt709",    L"BT.709"      },
        {2,   "unknown",  L""            },
        {5,   "bt470bg",  L"BT.601 (PAL)"},
        {8,   "film",     L"FILM"        },
        {9,   "bt2020",   L"BT.2020"     },
        {12,  "smpte432", L"Display P3"  },
        {22,  "ebu3213",  L"EBU3213"     },
        {255, nullptr,    L""            },
        {1,   nullptr,    L"BT.709"      },
        {-1,  nullptr,    L""            },
    };
    for (const auto& row : rows)
        EXPECT_EQ(PrimariesName(row.Primaries, row.CodecName), row.Expected) << row.Primaries;
}
}
