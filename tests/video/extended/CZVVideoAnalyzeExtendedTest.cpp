#include "video/extended/CZVVideoAnalyzeExtended.h"

#include "support/PropertyLines.h"

#include <gtest/gtest.h>

namespace
{
TEST(CZVVideoAnalyzeExtended, HasNothingToTellOfWhatItRefusesButThatThereAreNoBars)
{
    for (const bool blackBars : {false, true})
    {
        CZVVideoAnalyzeExtended analysis;
        EXPECT_FALSE(analysis.AnalyzeFile(ZVString(L"/films/disc.iso"), blackBars));
        EXPECT_EQ(GetLines(analysis.Properties), GetLines(std::string(blackBars ? "Video Crop=0x0x0x0\n" : "")));
    }
}
}
