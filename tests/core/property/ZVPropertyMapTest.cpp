#include "core/property/ZVPropertyMap.h"

#include "core/Rows.h"

#include <bit>
#include <limits>
#include <tuple>

// The cases stand in columns.
// clang-format off

namespace
{
TEST(ZVPropertyMap, FoldsKeysAndTellsEmptyFromMissing)
{
    ZVPropertyMap map;
    map.SetString(L"Width", L"1");
    map.SetString(L"WIDTH", L"2");
    map.SetString(nullptr, L"empty");
    EXPECT_TRUE(map.GetCount() == 2 && map.GetString(L"width") == L"2");
    ZVString text;
    map.ToDisplayText(text);
    EXPECT_STREQ(text, L": empty\r\nWidth: 2\r\n");

    map.SetString(L"a", L"", true);
    EXPECT_TRUE(!map.IsSet(L"a") && map.GetString(L"a", L"default") == L"default");
    map.SetString(L"a", L"", false);
    EXPECT_TRUE(map.IsSet(L"A") && map.GetString(L"a", L"default").IsEmpty());
    map.SetString(L"A", L"", true);
    EXPECT_FALSE(map.IsSet(L"a") || map.Remove(L"a"));
}

TEST(ZVPropertyMap, ReadsWhatItsSettersWrite)
{
    ZVPropertyMap map;
    map.SetInt(L"int", -INT32_MAX);
    map.SetInt64(L"int64", -INT64_MAX);
    map.SetUInt64(L"uint64", UINT64_MAX);
    map.SetDouble(L"double", -23.976);
    map.SetPointer(L"pointer", &map);
    EXPECT_TRUE(map.GetInt(L"int") == -INT32_MAX && map.GetInt(L"none", 5) == 5 && map.GetPointer(L"pointer") == &map);
    EXPECT_TRUE(map.GetInt64(L"int64") == -INT64_MAX && map.GetInt64(L"none", -5) == -5 && map.GetPointer(L"", &map) == &map);
    EXPECT_TRUE(map.GetUInt64(L"uint64") == UINT64_MAX && map.GetUInt64(L"none", 5) == 5);
    EXPECT_TRUE(map.GetDouble(L"double") == -23.976 && map.GetDouble(L"none", 0.5) == 0.5);
}

TEST(ZVPropertyMap, ParsesWhateverTextAKeyHolds)
{
    ZVPropertyMap map;
    map.SetString(L"empty", L"");
    map.SetString(L"a", L" -1,5abc");
    map.SetString(L"b", L"2e3");
    EXPECT_TRUE(map.GetInt(L"empty", 7) == 0 && map.GetDouble(L"empty", 7.0) == 0.0 && map.GetInt(L"a") == -1);
    EXPECT_TRUE(map.GetDouble(L"a") == -1.5 && map.GetDouble(L"b") == 2000.0);
    map.SetPointer(L"pointer", std::bit_cast<void*>(uint64_t {0xabc}));
    map.SetString(L"x", L"0xff");
    map.SetDouble(L"infinity", std::numeric_limits<double>::infinity());
    EXPECT_TRUE(map.GetString(L"pointer") == L"0000000000000ABC" && map.GetString(L"infinity") == L"?");
    EXPECT_EQ(map.GetPointer(L"x"), std::bit_cast<void*>(uint64_t {0xff}));
}

// A map with an entry for each letter, which is the key and the value.
ZVPropertyMap Letters(const wchar_t* keys)
{
    ZVPropertyMap map;
    for (; *keys != L'\0'; ++keys)
        map.SetString(ZVString(keys, 1), ZVString(keys, 1));
    return map;
}

TEST(ZVPropertyMap, CopiesMergesAndCompares)
{
    const ZVPropertyMap source = Letters(L"abc"), none;
    ZVPropertyMap copy = source, map = Letters(L"cde");
    EXPECT_TRUE(map.MergeFrom(source) && map.CopyFrom(map) && map.MergeFrom(map) && map.IsEqual(Letters(L"abcde")));
    EXPECT_TRUE(map.CopyFrom(source) && map.IsEqual(source));
    copy.SetString(L"a", L"A");
    EXPECT_TRUE(source.GetString(L"a") == L"a" && !copy.IsEqual(source));
    copy.Remove(L"a");
    copy.SetString(L"z", L"a");
    EXPECT_FALSE(copy.IsEqual(source) || source.IsEqual(copy) || source.IsEqual(none) || none.IsEqual(source));
    EXPECT_TRUE(copy.CopyFrom(none) && copy.IsEqual(none));
}

TEST(ZVPropertyMap, LoadsTheWholeEntriesOfADamagedText)
{
    using Loaded = std::tuple<bool, int32_t, int32_t>;  // the result, the count of entries and the position
    ExpectRows<const wchar_t*, Loaded>({
        {L"no number", {true, 0, 0}}, {L"(1:x)", {true, 0, 5}}, {L"(2:-1)(1:a)(1:b)", {true, 0, 6}},
        {L"(1:1)(1:a)(1:b)rest", {true, 1, 15}}, {L"(1:2)(1:a)(1:b)(1:c)", {false, 1, 15}},
        {L"(1:2)(1:a)(1:b)(1:c)(9:d)", {false, 1, 15}}, {L"(10:2147483647)(1:a)(0:)(1:A)(0:)", {false, 1, 33}},
        {L"(1:1)(99999999999:a)(1:b)", {false, 0, 5}},
    }, [](const wchar_t* text)
    {
        ZVPropertyMap map = Letters(L"xyz");
        int32_t position = 0;
        const bool result = map.Load(text, position);
        EXPECT_EQ(Letters(L"xyz").Load(text), result);
        return Loaded(result, map.GetCount(), position);
    });
    ZVPropertyMap map;
    map.SetString(L"Key", L"(1:)");
    ZVString text = L"head";
    map.Save(text, true);
    map.Save(text, false);
    EXPECT_STREQ(text, L"head(1:1)(3:Key)(4:(1:))(1:0)");
}
}
