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
// 65599 * 97 + 98 = 6363201; 65599 * 6363201 + 99 = 417419622498 = 97 * 2^32 + 807794786. The capitals likewise: 279714201666 =
// 65 * 2^32 + 541327426.
TEST(ZVStringHash, Values)
{
    const wchar_t negative[] = {static_cast<wchar_t>(-1), L'\0'};
    ExpectRows<const wchar_t*, std::pair<uint64_t, uint64_t>>({
        {nullptr, {0, 0}}, {L"ab", {6363201, 6363201}}, {L"abc", {417419622498, 417419622498}},
        {L"ABC", {279714201666, 417419622498}}, {negative, {UINT64_MAX, UINT64_MAX}},
    }, [](const wchar_t* text)
    {
        const std::pair hashes(ZVStringHash::Hash64<true>(text), ZVStringHash::Hash64<false>(text));
        EXPECT_EQ(ZVStringHash::Hash32<true>(text), static_cast<uint32_t>(hashes.first));
        EXPECT_EQ(ZVStringHash::Hash32<false>(text), static_cast<uint32_t>(hashes.second));
        return hashes;
    });
}

TEST(ZVStringHash, Equality)
{
    const std::string before = setlocale(LC_CTYPE, nullptr);
    ASSERT_NE(setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    using Flags = std::pair<bool, bool>;
    ExpectRows<std::pair<const wchar_t*, const wchar_t*>, Flags>({
        {{L"Title", L"Title"}, {true, true}}, {{L"Title", L"tITLE"}, {false, true}}, {{L"Titl", L"TITLE"}, {false, false}},
        {{nullptr, L""}, {true, true}}, {{nullptr, L"a"}, {false, false}}, {{L"@", L"`"}, {false, false}},
        {{L"\u0416", L"\u0436"}, {false, true}},
    }, [](const auto& texts)
    {
        const auto [left, right] = texts;
        const bool isAlike = ZVStringHash::Equal<false>(left, right);
        EXPECT_EQ(ZVStringHash::Hash32<false>(left) == ZVStringHash::Hash32<false>(right), isAlike);
        return Flags(ZVStringHash::Equal<true>(left, right), isAlike);
    });
    setlocale(LC_CTYPE, before.c_str());
}

template <bool CaseSensitive>
using TextMap = ZVStringMap<ZVString, CaseSensitive, ZVString>;

// The keys in their order, and the value of "H".
template <class Map>
std::wstring KeysOfMap()
{
    Map map;
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
    EXPECT_EQ(KeysOfMap<TextMap<false>>(), L"BcaH=hb");
    EXPECT_EQ(KeysOfMap<TextMap<true>>(), L"cHBah=H");

    ZVStringToOwnedPtrMap<ZVString, false, Counted> map;
    map.SetAt(L"00001.mpls", new Counted(1));
    map.SetAt(L"00001.MPLS", new Counted(2));
    EXPECT_TRUE(map.Get(L"00001.Mpls")->Value == 2 && Counted::Alive == 1);
    // The key's text goes with its entry, but not before it was compared.
    EXPECT_TRUE(map.RemoveKey(map.FindNode(L"00001.MPLS")->Key) && Counted::Alive == 0);
}

template <class List>
void ExpectFoldedSet()
{
    List list;
    EXPECT_TRUE(list.Add(L"English") && list.Add(L""));
    EXPECT_FALSE(list.Add(L"ENGLISH") || list.Contains(L"englis"));
    EXPECT_TRUE(list.Contains(L"english") && list.Remove(L"eNGLISH"));
    EXPECT_TRUE(!list.Remove(L"English") && list.GetCount() == 1);
}

TEST(ZVStringSets, FoldTheirTexts)
{
    ExpectFoldedSet<ZVStringUniqueList<ZVString, false>>();
    ExpectFoldedSet<ZVStringCRCUniqueList<false>>();
}
}
