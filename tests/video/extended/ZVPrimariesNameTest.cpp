#include "video/extended/ZVPrimariesName.h"

#include <gtest/gtest.h>

namespace
{
TEST(ZVPrimariesName, IsTheProductsOwnOrTheLibrariesInUpperCase)
{
    EXPECT_EQ(PrimariesName(1, nullptr), L"BT.709");
    EXPECT_EQ(PrimariesName(2, "unknown"), L"");
    EXPECT_EQ(PrimariesName(5, "bt470bg"), L"BT.601 (PAL)");
    EXPECT_EQ(PrimariesName(8, "film"), L"FILM");
    EXPECT_EQ(PrimariesName(-1, nullptr), L"");
}
}
