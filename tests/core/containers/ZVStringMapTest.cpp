#include "Counted.h"

#include "core/containers/ZVStringCRCUniqueList.h"
#include "core/containers/ZVStringMap.h"
#include "core/containers/ZVStringToOwnedPtrMap.h"
#include "core/containers/ZVStringUniqueList.h"
#include "core/containers/ZVUniqueList.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <vector>

namespace
{
using Texts = std::vector<std::wstring>;
template <bool CaseSensitive>
using TextMap = ZVStringMap<ZVString, CaseSensitive, ZVString>;

template <class Map>
Texts KeysOf(const Map& map)
{
    Texts keys;
    for (const auto& entry : map)
        keys.emplace_back(entry.Key.GetText());
    return keys;
}

// 65599 * 97 + 98 = 6363201; 65599 * 6363201 + 99 = 417419622498 = 97 * 2^32 + 807794786. The capitals likewise: 279714201666 =
// 65 * 2^32 + 541327426.
TEST(ZVStringHash, Values)
{
    constexpr wchar_t Negative[] = {static_cast<wchar_t>(-1), L'\0'};
    struct Row
    {
        const char* Name;
        const wchar_t* Text;
        uint32_t Sensitive32;
        uint64_t Sensitive64;
        uint32_t Insensitive32;
    };
    const Row rows[] = {
        {"null",               nullptr,  0,          0,                  0         },
        {"two",                L"ab",    6363201,    6363201,            6363201   },
        {"three",              L"abc",   807794786,  417419622498,       807794786 },
        {"capitals",           L"ABC",   541327426,  279714201666,       807794786 },
        {"negative character", Negative, 0xffffffff, 0xffffffffffffffff, 0xffffffff},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        EXPECT_EQ(ZVStringHash::Hash32<true>(row.Text), row.Sensitive32);
        EXPECT_EQ(ZVStringHash::Hash64<true>(row.Text), row.Sensitive64);
        EXPECT_EQ(ZVStringHash::Hash32<false>(row.Text), row.Insensitive32);
    }
    EXPECT_EQ(ZVStringHash::Hash64<false>(L"aBC"), 417419622498u);
}

TEST(ZVStringHash, Equality)
{
    struct Row
    {
        const char* Name;
        const wchar_t *Left, *Right;
        bool Sensitive, Insensitive;
    };
    constexpr Row Rows[] = {
        {"same",                         L"Title",  L"Title",  true,  true },
        {"other case",                   L"Title",  L"tITLE",  false, true },
        {"shorter",                      L"Titl",   L"TITLE",  false, false},
        {"null is empty",                nullptr,   L"",       true,  true },
        {"null is not a text",           nullptr,   L"a",      false, false},
        {"beyond the table",             L"\u0416", L"\u0436", false, true },
        {"differs by the case bit only", L"@",      L"`",      false, false},
    };
    const std::string before = setlocale(LC_CTYPE, nullptr);
    ASSERT_NE(setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    for (const Row& row : Rows)
    {
        SCOPED_TRACE(row.Name);
        EXPECT_EQ(ZVStringHash::Equal<true>(row.Left, row.Right), row.Sensitive);
        EXPECT_EQ(ZVStringHash::Equal<false>(row.Left, row.Right), row.Insensitive);
        EXPECT_EQ(ZVStringHash::Hash32<false>(row.Left) == ZVStringHash::Hash32<false>(row.Right), row.Insensitive);
    }
    setlocale(LC_CTYPE, before.c_str());
}

// Of 7 buckets "c" is in 1 and "a" in 6. "B" is in 0 and "H" in 6 when lowered, else in 3 and 2.
TEST(ZVStringMap, CaseDecidesOrderAndIdentity)
{
    TextMap<false> insensitive;
    TextMap<true> sensitive;
    for (const wchar_t* key : {L"a", L"H", L"c", L"B", L"h"})
    {
        insensitive.SetAt(key, key);
        sensitive.SetAt(key, key);
    }
    EXPECT_EQ(KeysOf(insensitive), (Texts {L"B", L"c", L"a", L"H"}));
    EXPECT_EQ(KeysOf(sensitive), (Texts {L"c", L"H", L"B", L"a", L"h"}));
    EXPECT_STREQ(insensitive[L"H"], L"h");
    EXPECT_STREQ(sensitive[L"H"], L"H");
    EXPECT_TRUE(insensitive.Contains(L"b"));
    EXPECT_FALSE(sensitive.Contains(L"b"));
}

TEST(ZVStringToOwnedPtrMap, OwnsUnderTextKeys)
{
    ZVStringToOwnedPtrMap<ZVString, false, Counted> map;
    map.SetAt(L"00001.mpls", new Counted(1));
    map.SetAt(L"00001.MPLS", new Counted(2));
    EXPECT_EQ(map.Get(L"00001.Mpls")->Value, 2);
    EXPECT_EQ(Counted::Alive, 1);
    // The key's text goes with its entry, but not before it was compared.
    EXPECT_TRUE(map.RemoveKey(map.FindNode(L"00001.MPLS")->Key));
    EXPECT_EQ(Counted::Alive, 0);
}

template <class List>
class ZVStringSets : public testing::Test
{
};

using CaseInsensitiveSets = testing::Types<ZVStringUniqueList<ZVString, false>, ZVStringCRCUniqueList<false>>;
TYPED_TEST_SUITE(ZVStringSets, CaseInsensitiveSets);

TYPED_TEST(ZVStringSets, AddContainsRemove)
{
    TypeParam list;
    EXPECT_TRUE(list.Add(L"English"));
    EXPECT_FALSE(list.Add(L"ENGLISH"));
    EXPECT_TRUE(list.Add(L""));
    EXPECT_TRUE(list.Contains(L"english"));
    EXPECT_FALSE(list.Contains(L"englis"));
    EXPECT_TRUE(list.Remove(L"eNGLISH"));
    EXPECT_FALSE(list.Remove(L"English"));
    EXPECT_EQ(list.GetCount(), 1);
}

template <class Map>
struct NodeSizeOf : Map
{
    static size_t Get() { return NodeSizeOf().GetNodeSize(); }
};

TEST(ZVMap, NodeSizes)
{
    EXPECT_EQ(NodeSizeOf<ZVUniqueList<int>>::Get(), 16u);
    EXPECT_EQ(NodeSizeOf<ZVUniqueList<void*>>::Get(), 16u);
    EXPECT_EQ((NodeSizeOf<ZVStringUniqueList<ZVString, true>>::Get()), 16u);
    EXPECT_EQ((NodeSizeOf<ZVStringCRCUniqueList<true>>::Get()), 16u);
    EXPECT_EQ((NodeSizeOf<ZVStringToOwnedPtrMap<ZVString, true, Counted>>::Get()), 24u);
    EXPECT_EQ(NodeSizeOf<TextMap<true>>::Get(), 24u);
}
}
