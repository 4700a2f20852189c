#include "Counted.h"

#include "core/Rows.h"
#include "core/containers/ZVStringCRCUniqueList.h"
#include "core/containers/ZVStringMap.h"
#include "core/containers/ZVStringToOwnedPtrMap.h"
#include "core/containers/ZVStringUniqueList.h"

#include <clocale>
#include <string>

// The cases stand in columns.
// clang-format off

namespace
{
TEST(ZVStringHash, Equality)
{
    const std::string before = setlocale(LC_CTYPE, nullptr);
    ASSERT_NE(setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    using Flags = std::pair<bool, bool>;
    ExpectRows<std::pair<const wchar_t*, const wchar_t*>, Flags>({
        {{L"Title", L"tITLE"}, {false, true}}, {{L"Titl", L"TITLE"}, {false, false}}, {{nullptr, L""}, {true, true}},
        {{nullptr, L"a"}, {false, false}}, {{L"@", L"`"}, {false, false}}, {{L"\u0416", L"\u0436"}, {false, true}},
    }, [](const auto& texts)
    {
        const auto [left, right] = texts;
        const bool isAlike = ZVStringHash::Equal<false>(left, right);
        EXPECT_EQ(ZVStringHash::Hash32<false>(left) == ZVStringHash::Hash32<false>(right), isAlike);
        return Flags(ZVStringHash::Equal<true>(left, right), isAlike);
    });
    setlocale(LC_CTYPE, before.c_str());
}

// The keys in their order, and the value of "H".
template <bool CaseSensitive>
std::wstring KeysOfMap()
{
    ZVStringMap<ZVString, CaseSensitive, ZVString> map;
    for (const wchar_t* key : {L"a", L"H", L"c", L"B", L"h"})
        map.SetAt(key, key);
    std::wstring keys;
    for (const auto& entry : map)
        keys += entry.Key.GetText();
    return keys + L"=" + map[L"H"].GetText() + (map.Contains(L"b") ? L"b" : L"");
}

// Of 7 buckets "c" is in 1 and "a" in 6. "B" is in 0 and "H" in 6 when lowered, else in 3 and 2.
TEST(ZVStringMap, CaseDecidesOrderAndIdentity)
{
    EXPECT_EQ(KeysOfMap<false>(), L"BcaH=hb");
    EXPECT_EQ(KeysOfMap<true>(), L"cHBah=H");

    ZVStringToOwnedPtrMap<ZVString, false, Counted> map;
    map.SetAt(L"00001.mpls", new Counted(1));
    map.SetAt(L"00001.MPLS", new Counted(2));
    EXPECT_TRUE(map.Get(L"00001.Mpls")->Value == 2 && Counted::Alive == 1);
    // The key's text goes with its entry, but not before it was compared.
    EXPECT_TRUE(map.RemoveKey(map.FindNode(L"00001.MPLS")->Key) && Counted::Alive == 0);
}

TEST(ZVStringSets, FoldTheirTexts)
{
    const auto expectFolded = [](auto list)
    {
        EXPECT_TRUE(list.Add(L"English") && !list.Add(L"ENGLISH") && list.Contains(L"english") && !list.Contains(L"englis"));
        EXPECT_TRUE(list.Remove(L"eNGLISH") && !list.Remove(L"English"));
    };
    expectFolded(ZVStringUniqueList<ZVString, false>());
    expectFolded(ZVStringCRCUniqueList<false>());
}
}
