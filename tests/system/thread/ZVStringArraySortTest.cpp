#include "system/thread/ZVStringArraySort.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "core/containers/ZVStringArray.h"
#include "system/thread/ZVQSort.h"

#include <gtest/gtest.h>

namespace
{
// Tools that order texts by their length.
class LengthTools final : public FakeTools, public IZVStringTools
{
public:
    IZVStringTools* GetTools(bool) override { return this; }
    int32_t Find(const wchar_t*, const wchar_t*, int32_t) override { return -1; }
    bool MatchesWildcards(const wchar_t*, const wchar_t*) override { return false; }
    bool HasWildcards(const wchar_t*) override { return false; }
    int32_t Compare(const wchar_t* a, const wchar_t* b, int32_t flags, bool option, int32_t length) override
    {
        EXPECT_TRUE(flags == 5 && option && length == -1);
        return static_cast<int32_t>(wcslen(a)) - static_cast<int32_t>(wcslen(b));
    }
};

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
    LengthTools tools;
    FakeTools otherTools;
    EXPECT_STREQ(sort(&tools, L"ccc aaaa b dd"), L"b dd ccc aaaa");
    EXPECT_STREQ(sort(&otherTools, L"ccc aaaa b dd"), L"aaaa b ccc dd");
    EXPECT_STREQ(sort(nullptr, L"b a B A ab Aa z10 \U0001F3AC z9 aB \u00e9"), L"A a Aa aB ab B b z10 z9 \u00e9 \U0001F3AC");
}
}
