#include "video/film/ZVCodecLog.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "video/codec/ZVCodecHeaders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
__attribute__((format(printf, 3, 4))) void Write(void* context, int level, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    ZVCodecLog::Write(context, level, format, arguments);
    va_end(arguments);
}

TEST(ZVCodecLog, KeepsWarningsAndWorseOnLinesOfTheirOwn)
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
