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
    IZVStringTools* GetTools(bool) override { return HasStringTools ? this : nullptr; }
    int32_t Find(const wchar_t*, const wchar_t*, int32_t) override { return -1; }
    bool MatchesWildcards(const wchar_t*, const wchar_t*) override { return false; }
    bool HasWildcards(const wchar_t*) override { return false; }
    int32_t Compare(const wchar_t* a, const wchar_t* b, int32_t flags, bool option, int32_t length) override
    {
        EXPECT_TRUE(flags == 5 && option && length == -1);
        return static_cast<int32_t>(wcslen(a)) - static_cast<int32_t>(wcslen(b));
    }

    bool HasStringTools = true;
};

ZVString Sorted(const wchar_t* texts)
{
    ZVStringArray array;
    array.SetSplit(texts, L' ');
    ZVQSort<ZVString>(std::make_unique<ZVStringArraySort>(5, true)).Sort(array);
    return array.GetJoined(L" ");
}

TEST(ZVStringArraySort, AsksTheToolsLibraryWhenItIsThere)
{
    LengthTools tools;
    g_pZVTools = &tools;
    EXPECT_STREQ(Sorted(L"ccc aaaa b dd"), L"b dd ccc aaaa");
    tools.HasStringTools = false;
    EXPECT_STREQ(Sorted(L"ccc aaaa b dd"), L"aaaa b ccc dd");
    g_pZVTools = nullptr;
    EXPECT_STREQ(Sorted(L"b a B A ab Aa z10 \U0001F3AC z9 aB \u00e9"), L"A a Aa aB ab B b z10 z9 \u00e9 \U0001F3AC");
}
}
