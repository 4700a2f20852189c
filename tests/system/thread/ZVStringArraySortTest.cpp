#include "system/thread/ZVStringArraySort.h"

#include "contracts/IZVStringTools.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "core/containers/ZVStringArray.h"
#include "system/thread/ZVQSort.h"

#include <gtest/gtest.h>

namespace
{
// Tools that order texts by their length.
class LengthTools final : public IZVTools, public IZVStringTools
{
public:
    bool Initialize(int32_t, IZVApplicationInformation*) override { return true; }
    const wchar_t* GetLoadError() override { return L""; }
    IZVApplicationInformation* GetApplicationInformation() override { return nullptr; }
    IZVSettings* GetSettings(bool) override { return nullptr; }
    void* GetFileTypes(bool) override { return nullptr; }
    IZVStringTools* GetTools(bool create) override { return create || !HasStringTools ? nullptr : this; }
    void* GetDateServices(bool) override { return nullptr; }
    void* GetCompression(bool) override { return nullptr; }
    void* GetThreadServices(bool) override { return nullptr; }
    void* GetNamedLocks(bool) override { return nullptr; }
    ILogManager* GetLogManager(bool) override { return nullptr; }
    int32_t Find(const wchar_t*, const wchar_t*, int32_t) override { return -1; }
    bool MatchesWildcards(const wchar_t*, const wchar_t*) override { return false; }
    bool HasWildcards(const wchar_t*) override { return false; }

    int32_t Compare(const wchar_t* a, const wchar_t* b, int32_t flags, bool option, int32_t length) override
    {
        EXPECT_EQ(flags, 5);
        EXPECT_TRUE(option);
        EXPECT_EQ(length, -1);
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
    EXPECT_EQ(ZVStringArraySort(0, false).Compare(L"", L""), 0);
}
}
