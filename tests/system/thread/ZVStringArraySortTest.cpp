#include "system/thread/ZVStringArraySort.h"

#include "core/ZVToolsPointer.h"
#include "core/containers/ZVStringArray.h"
#include "system/thread/FakeStringTools.h"
#include "system/thread/ZVQSort.h"

#include <gtest/gtest.h>

namespace
{
TEST(ZVStringArraySort, AsksTheToolsLibraryWhenItIsThere)
{
    const auto sort = [](IZVTools* tools, const wchar_t* texts)
    {
        g_pZVTools = tools;
        ZVStringArray array;
        array.SetSplit(texts, L' ');
        ZVQSort<ZVString>(std::make_unique<ZVStringArraySort>(5, true)).Sort(array);
        g_pZVTools = nullptr;
        return array.GetJoined(L" ");
    };
    FakeStringTools tools;
    EXPECT_STREQ(sort(&tools, L"ccc aaaa b dd"), L"b dd ccc aaaa");
    EXPECT_STREQ(sort(nullptr, L"b a B A ab Aa z10 \U0001F3AC z9 aB \u00e9"), L"A a Aa aB ab B b z10 z9 \u00e9 \U0001F3AC");
}
}
