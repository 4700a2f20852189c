#include "system/log/ZVLogScope.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "system/log/CLogToStringItem.h"
#include "system/log/ZVLogCategory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ElementsAre;
using testing::MatchesRegex;

class ZVLogScopeTest : public testing::Test
{
protected:
    ZVLogScopeTest() { g_pZVTools = &m_tools; }
    ~ZVLogScopeTest() override { g_pZVTools = nullptr; }

    FakeTools m_tools;
};

TEST_F(ZVLogScopeTest, FramesAFunctionWithStartAndFinish)
{
    {
        ZVLogScope scope(ZVLogCategory::Media, "Analyze", true);
        scope.Log("%d of %s", 3, L"four");
        scope.LogWide(L"wide \u00e4 %s", "\xc3\xa4");
    }
    EXPECT_THAT(m_tools.Manager.Lines,
                ElementsAre("256|Analyze|Start", "256|Analyze|3 of four", "256|Analyze|wide \xc3\xa4 \xc3\xa4",
                            MatchesRegex("256\\|Analyze\\|Finish \\([0-9]+ ms\\)")));
}

TEST_F(ZVLogScopeTest, ShowsAResultUnlessItIsTheMarkForNone)
{
    for (const int32_t result : {0, -1, static_cast<int32_t>(0x8a33f231)})
    {
        ZVLogScope scope(1, L"S", true);
        scope.SetResult(result);
    }
    EXPECT_THAT(m_tools.Manager.Lines, ElementsAre("1|S|Start", MatchesRegex("1\\|S\\|Finish \\(result: 0\\) \\([0-9]+ ms\\)"),
                                                   "1|S|Start", MatchesRegex("1\\|S\\|Finish \\(result: -1\\) \\([0-9]+ ms\\)"),
                                                   "1|S|Start", MatchesRegex("1\\|S\\|Finish \\([0-9]+ ms\\)")));
}

TEST_F(ZVLogScopeTest, WithoutTheFlagOnlyLogsWhatItIsTold)
{
    {
        ZVLogScope scope(1, "S\xe4", false);
        const unsigned char bytes[] = {0x00, 0x0f, 0xff};
        scope.LogHex(bytes, sizeof bytes);
        ZVLog(64, L"Free", "%s", ZVString(L"call"));
    }
    EXPECT_THAT(m_tools.Manager.Lines, ElementsAre("1|S\xc3\xa4|0x00 0x0f 0xff ", "64|Free|call"));
}

TEST_F(ZVLogScopeTest, AStringItemKeepsTheCategoriesOfItsMask)
{
    CLogToStringItem item(ZVLogCategory::Media | ZVLogCategory::Bluray);
    ASSERT_EQ(m_tools.Manager.Outputs.size(), 1u);
    item.Output(ZVLogCategory::Media, L"media line, cut", 10);
    item.Output(ZVLogCategory::General, L"general", 7);
    item.Output(ZVLogCategory::Bluray, L"disc", 4);
    EXPECT_STREQ(item.GetLines().GetJoined(L"|"), L"media line|disc");
}

TEST(ZVLogScopeWithoutTools, StillCountsTime)
{
    ZVLogScope scope(1, "S", true);
    CLogToStringItem item(1);
    scope.Log("nobody hears it");
    EXPECT_GE(scope.GetElapsedMilliseconds(), 0);
    EXPECT_EQ(item.GetLines().GetCount(), 0);
}
}
