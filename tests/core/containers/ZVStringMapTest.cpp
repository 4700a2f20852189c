#include "core/containers/ZVStringMap.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
template <bool CaseSensitive>
ZVStringMap<ZVString, CaseSensitive, ZVString> MapOfLetters()
{
    ZVStringMap<ZVString, CaseSensitive, ZVString> map;
    for (const wchar_t* key : {L"a", L"H", L"c", L"B", L"h"})
        map.SetAt(key, key);
    return map;
}

template <class Map>
std::wstring KeysOf(const Map& map)
{
    std::wstring keys;
    for (const auto& entry : map)
        keys += entry.Key.GetText();
    return keys;
}

// Of 7 buckets "c" is in 1 and "a" in 6. "B" is in 0 and "H" in 6 when lowered, else in 3 and 2.
TEST(ZVStringMap, CaseDecidesOrderAndIdentity)
{
    auto folded = MapOfLetters<false>();
    EXPECT_EQ(KeysOf(folded), L"BcaH");
    EXPECT_STREQ(folded[L"H"], L"h");
    EXPECT_TRUE(folded.Contains(L"b"));
    EXPECT_FALSE(folded.Contains(nullptr));

    auto exact = MapOfLetters<true>();
    EXPECT_EQ(KeysOf(exact), L"cHBah");
    EXPECT_STREQ(exact[L"H"], L"H");
    EXPECT_FALSE(exact.Contains(L"b"));
}
}
