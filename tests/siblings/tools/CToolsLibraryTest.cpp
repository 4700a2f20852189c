// Tests of the shared library itself, as the worker loads it.

#include "contracts/ILogManager.h"
#include "contracts/IZVApplicationInformation.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "core/date/ZVDate.h"

#include "ToolsFolder.h"

#include <gmock/gmock.h>

#include <dlfcn.h>

namespace
{
TEST(CToolsLibrary, HasItsServices)
{
    const ToolsFolder folder;
    void* const library = dlopen(ZV_TOOLS_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto getTools = reinterpret_cast<IZVTools* (*)(int32_t)>(dlsym(library, "GetZVToolsDLL"));
    EXPECT_EQ(getTools(200047), nullptr);
    IZVTools* const tools = getTools(200048);
    ASSERT_NE(tools, nullptr);
    EXPECT_EQ(getTools(200048), tools);
    EXPECT_EQ(tools->GetLogManager(true), nullptr) << "the data folder is not known yet";

    FakeInformation information;
    setenv("ZV_DATA_DIR", folder.PathOf("data").c_str(), 1);
    ASSERT_TRUE(tools->Initialize(1, &information));
    unsetenv("ZV_DATA_DIR");
    ASSERT_TRUE(tools->Initialize(1, nullptr));

    EXPECT_STREQ(tools->GetApplicationInformation()->GetInstallDirectory(), L"/opt/zv/");
    ILogManager* const manager = tools->GetLogManager(false);
    EXPECT_STREQ(manager->GetFilePath(), folder.AsString() + L"data/Logs/ZVWorker.log");
    EXPECT_NE(tools->GetSettings(true), nullptr);
    EXPECT_FALSE(folder.Has("data")) << "the library has touched the disk before a service was used";

    // A string of this side's copy of the core, read by the other side's.
    const ZVString ours = L"ours \u00e4";
    const ZVFormatArguments<1> list(ours);
    manager->LogNarrow(1, L"S", "%s", list.Records(), list.Count());
    EXPECT_THAT(folder.Read("data/Logs/ZVWorker.log"), testing::EndsWith("\tS\tours \xc3\xa4\n"));

    EXPECT_EQ(tools->GetDateServices(2), nullptr);
    double date = 5.0;
    EXPECT_FALSE(ZVDate::Parse(L"1970-01-01", 0, date)) << "the library is not bound";
    g_pZVTools = tools;
    EXPECT_TRUE(ZVDate::Parse(L"1970-01-02", 0, date));
    EXPECT_EQ(date, 25570.0);
    ZVString text = L"xABxab";
    EXPECT_EQ(text.FindNoCase(L"aB", 2), 4);
    EXPECT_EQ(text.FindNoCase(L"ab", 2, true), 6) << "the position after the match";
    const wchar_t* const needle = L"b";
    EXPECT_EQ(text.ReplaceMultiple(&needle, nullptr, 1, false, INT32_MAX, true, L"<", L">"), 2);
    EXPECT_EQ(text.RemoveText(L"X", false), 2);
    EXPECT_STREQ(text, L"A<B>a<b>");
    g_pZVTools = nullptr;
}
}
