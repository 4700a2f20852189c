#include "system/log/ZVLogScope.h"

#include "system/log/CLogToStringItem.h"
#include "system/log/ToolsFixture.h"
#include "system/log/ZVLogCategory.h"

#include <unistd.h>

namespace
{
using testing::ElementsAre;
using testing::MatchesRegex;

using ZVLogScopeTest = ToolsFixture;

TEST_F(ZVLogScopeTest, FramesAFunctionAndShowsAResultUnlessItIsTheMarkForNone)
{
    {
        ZVLogScope scope(ZVLogCategory::Media, "S\xe4", true);
        scope.Log("%d of %s", 3, L"four");
        scope.LogWide(L"wide \u00e4 %s", "\xc3\xa4");
    }
    for (const int32_t result : {0, static_cast<int32_t>(0x8a33f231)})
        ZVLogScope({1, L"S"}, true).SetResult(result);
    EXPECT_THAT(m_tools.Manager.Lines,
                ElementsAre("256|S\xc3\xa4|Start", "256|S\xc3\xa4|3 of four", "256|S\xc3\xa4|wide \xc3\xa4 \xc3\xa4",
                            MatchesRegex("256\\|S..\\|Finish \\([0-9]+ ms\\)"), "1|S|Start",
                            MatchesRegex("1\\|S\\|Finish \\(result: 0\\) \\([0-9]+ ms\\)"), "1|S|Start",
                            MatchesRegex("1\\|S\\|Finish \\([0-9]+ ms\\)")));
}

TEST_F(ZVLogScopeTest, WithoutTheFlagOnlyLogsWhatItIsTold)
{
    ZVLogScope(1, "S", false).LogHex("\0\x0f\xff", 3);
    ZVLog(64, L"Free", "%s", ZVString(L"call"));
    EXPECT_THAT(m_tools.Manager.Lines, ElementsAre("1|S|0x00 0x0f 0xff ", "64|Free|call"));
}

TEST_F(ZVLogScopeTest, AStringItemKeepsTheCategoriesOfItsMask)
{
    {
        CLogToStringItem item(ZVLogCategory::Media | ZVLogCategory::Bluray);
        EXPECT_THAT(m_tools.Manager.Outputs, ElementsAre(&item));
        item.Output(ZVLogCategory::Media, L"media line, cut", 10);
        item.Output(ZVLogCategory::General, L"general", 7);
        item.Output(ZVLogCategory::Bluray, L"disc", 4);
        EXPECT_STREQ(item.GetLines().GetJoined(L"|"), L"media line|disc");
    }
    EXPECT_THAT(m_tools.Manager.Outputs, testing::IsEmpty());
}

TEST(ZVLogScopeWithoutTools, StillCountsTime)
{
    const ZVLogScope scope(1, "S", true);
    const CLogToStringItem item(1);
    scope.LogHex("", 1);
    usleep(20'000);
    EXPECT_GE(scope.GetElapsedMilliseconds(), 20);
}
}
