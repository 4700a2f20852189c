#include "video/extended/CZVVideoAnalyzeExtended.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
__attribute__((format(printf, 3, 4))) void Write(void* context, int level, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    CZVVideoAnalyzeExtended::AVLog(context, level, format, arguments);
    va_end(arguments);
}

class CZVVideoAnalyzeExtendedLog : public testing::Test
{
protected:
    CZVVideoAnalyzeExtendedLog() { g_pZVTools = &m_tools; }
    ~CZVVideoAnalyzeExtendedLog() override { g_pZVTools = nullptr; }

    FakeTools m_tools;
};

TEST_F(CZVVideoAnalyzeExtendedLog, KeepsWarningsAndWorseOnLinesOfTheirOwn)
{
    Write(nullptr, AV_LOG_WARNING, "%s of %d%%\n\n", "damage", 100);
    Write(nullptr, AV_LOG_PANIC, "%s", "");
    Write(nullptr, AV_LOG_WARNING + 1, "dropped");
    EXPECT_THAT(m_tools.Manager.Lines, testing::ElementsAre("512|CZVVideoAnalyzeExtended::AVLog|damage of 100%\n",
                                                            "512|CZVVideoAnalyzeExtended::AVLog|"));
}

TEST_F(CZVVideoAnalyzeExtendedLog, NamesWhoSpeaks)
{
    struct
    {
        const AVClass* Class = nullptr;
    } context;
    Write(&context, AV_LOG_ERROR, "no class yet");
    AVClass avClass {};
    avClass.item_name = [](void*) { return "h264"; };
    context.Class = &avClass;
    Write(&context, AV_LOG_ERROR, "%%s is no format here");
    char expected[100];
    snprintf(expected, sizeof expected, "|[h264 @ %p] %%s is no format here", static_cast<void*>(&context));
    EXPECT_THAT(m_tools.Manager.Lines, testing::ElementsAre(testing::EndsWith("|no class yet"), testing::EndsWith(expected)));
}

TEST_F(CZVVideoAnalyzeExtendedLog, CutsWhatIsTooLong)
{
    const std::string text(3000, 'x');
    Write(nullptr, AV_LOG_ERROR, "%s\n", text.c_str());
    EXPECT_THAT(m_tools.Manager.Lines, testing::ElementsAre(testing::EndsWith("|" + text.substr(0, 2047))));
}
}
