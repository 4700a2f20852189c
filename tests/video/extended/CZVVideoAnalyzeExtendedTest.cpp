#include "video/extended/CZVVideoAnalyzeExtended.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "support/PropertyLines.h"

#include <gmock/gmock.h>
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

__attribute__((format(printf, 3, 4))) void Write(void* context, int level, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    CZVVideoAnalyzeExtended::AVLog(context, level, format, arguments);
    va_end(arguments);
}

TEST(CZVVideoAnalyzeExtended, LogKeepsWarningsAndWorseOnLinesOfTheirOwn)
{
    FakeTools tools;
    g_pZVTools = &tools;
    const std::string text(3000, 'x');
    Write(nullptr, AV_LOG_WARNING, "%s of %d%%\n\n", "damage", 100);
    Write(nullptr, AV_LOG_PANIC, "%s", "");
    Write(nullptr, AV_LOG_WARNING + 1, "dropped");
    Write(nullptr, AV_LOG_ERROR, "%s\n", text.c_str());

    const AVClass* context = nullptr;
    Write(&context, AV_LOG_ERROR, "no class yet");
    AVClass avClass {};
    avClass.item_name = [](void*) { return "h264"; };
    context = &avClass;
    Write(&context, AV_LOG_ERROR, "%%s is no format here");
    g_pZVTools = nullptr;

    char speaker[100];
    snprintf(speaker, sizeof speaker, "[h264 @ %p] ", static_cast<void*>(&context));
    const std::string scope = "512|CZVVideoAnalyzeExtended::AVLog|";
    EXPECT_THAT(tools.Manager.Lines, testing::ElementsAre(scope + "damage of 100%\n", scope, scope + text.substr(0, 2047),
                                                          scope + "no class yet", scope + speaker + "%s is no format here"));
}
}
