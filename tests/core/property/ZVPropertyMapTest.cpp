#include "core/property/ZVPropertyMap.h"

#include <bit>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace
{
TEST(ZVPropertyMap, FoldsKeysAndKeepsTheFirstSpelling)
{
    ZVPropertyMap map;
    map.SetString(L"Width", L"1");
    map.SetString(L"WIDTH", L"2");
    map.SetString(nullptr, L"empty");
    EXPECT_EQ(map.GetCount(), 2);
    EXPECT_STREQ(map.GetString(L"width"), L"2");
    EXPECT_STREQ(map.GetString(L""), L"empty");
    ZVString text;
    map.ToDisplayText(text);
    EXPECT_STREQ(text, L": empty\r\nWidth: 2\r\n");
}

TEST(ZVPropertyMap, TellsAnEmptyValueFromAMissingOne)
{
    ZVPropertyMap map;
    map.SetString(L"a", L"", true);
    EXPECT_FALSE(map.IsSet(L"a"));
    EXPECT_STREQ(map.GetString(L"a", L"default"), L"default");
    map.SetString(L"a", L"1", true);
    map.SetString(L"a", L"", false);
    EXPECT_TRUE(map.IsSet(L"A"));
    EXPECT_STREQ(map.GetString(L"a", L"default"), L"");
    map.SetString(L"A", L"", true);
    EXPECT_FALSE(map.IsSet(L"a"));
    EXPECT_EQ(map.GetCount(), 0);
    EXPECT_FALSE(map.Remove(L"a"));
}

TEST(ZVPropertyMap, ReadsWhatItsSettersWrite)
{
    ZVPropertyMap map;
    for (const int32_t value : {0, -1, INT32_MAX, -INT32_MAX})
    {
        map.SetInt(L"x", value);
        EXPECT_EQ(map.GetInt(L"x", 5), value);
        EXPECT_EQ(map.GetInt(L"missing", value), value);
    }
    for (const int64_t value : {int64_t {0}, int64_t {-1}, INT64_MAX, -INT64_MAX, int64_t {1} << 33})
    {
        map.SetInt64(L"x", value);
        EXPECT_EQ(map.GetInt64(L"x", 5), value);
        EXPECT_EQ(map.GetInt64(L"missing", value), value);
    }
    for (const uint64_t value : {uint64_t {0}, UINT64_MAX, uint64_t {1} << 63})
    {
        map.SetUInt64(L"x", value);
        EXPECT_EQ(map.GetUInt64(L"x", 5), value);
        EXPECT_EQ(map.GetUInt64(L"missing", value), value);
    }
    for (const double value : {0.0, -2.5, 23.976, 1e9, 0.0625})
    {
        map.SetDouble(L"x", value);
        EXPECT_EQ(map.GetDouble(L"x", 5), value);
        EXPECT_EQ(map.GetDouble(L"missing", value), value);
    }
    for (void* value : {static_cast<void*>(nullptr), static_cast<void*>(&map), std::bit_cast<void*>(UINTPTR_MAX)})
    {
        map.SetPointer(L"x", value);
        EXPECT_EQ(map.GetPointer(L"x", &map), value);
        EXPECT_EQ(map.GetPointer(L"missing", value), value);
    }
}

TEST(ZVPropertyMap, ParsesWhateverTextAKeyHolds)
{
    const struct
    {
        const wchar_t* Text;
        int32_t Int;
        double Double;
    } rows[] = {
        {L"",           0,         0.0         },
        {L"no",         0,         0.0         },
        {L" -12abc",    -12,       -12.0       },
        {L"1,5",        1,         1.5         },
        {L"1.5",        1,         1.5         },
        {L"2e3",        2,         2000.0      },
        {L"9999999999", INT32_MAX, 9999999999.0},
    };
    for (const auto& row : rows)
    {
        ZVPropertyMap map;
        map.SetString(L"x", row.Text);
        EXPECT_EQ(map.GetInt(L"x", 7), row.Int) << row.Text;
        EXPECT_EQ(map.GetDouble(L"x", 7.0), row.Double) << row.Text;
    }
    ZVPropertyMap map;
    map.SetPointer(L"x", std::bit_cast<void*>(uint64_t {0xabc}));
    EXPECT_STREQ(map.GetString(L"x"), L"0000000000000ABC");
    map.SetString(L"x", L"0xff");
    EXPECT_EQ(map.GetPointer(L"x"), std::bit_cast<void*>(uint64_t {0xff}));
    map.SetDouble(L"x", std::numeric_limits<double>::infinity());
    EXPECT_STREQ(map.GetString(L"x"), L"?");
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
    const ZVPropertyMap source = Letters(L"abc");
    ZVPropertyMap map = Letters(L"cde");
    EXPECT_TRUE(map.MergeFrom(source));
    EXPECT_TRUE(map.IsEqual(Letters(L"abcde")));
    EXPECT_TRUE(map.CopyFrom(map) && map.MergeFrom(map));
    EXPECT_EQ(map.GetCount(), 5);
    EXPECT_TRUE(map.CopyFrom(source));
    EXPECT_TRUE(map.IsEqual(source) && source.IsEqual(map));

    ZVPropertyMap copy = source;
    copy.SetString(L"a", L"changed");
    EXPECT_STREQ(source.GetString(L"a"), L"a");
    EXPECT_FALSE(copy.IsEqual(source));
    copy.SetString(L"A", L"a");
    EXPECT_TRUE(copy.IsEqual(source));
    copy.SetString(L"a", L"A");
    EXPECT_FALSE(copy.IsEqual(source));
    copy.Remove(L"a");
    copy.SetString(L"z", L"a");
    EXPECT_FALSE(copy.IsEqual(source) || source.IsEqual(copy));
    EXPECT_FALSE(source.IsEqual(ZVPropertyMap()) || ZVPropertyMap().IsEqual(source));
    EXPECT_TRUE(ZVPropertyMap().IsEqual(ZVPropertyMap()));
    EXPECT_TRUE(copy.CopyFrom(ZVPropertyMap()));
    EXPECT_EQ(copy.GetCount(), 0);
}

TEST(ZVPropertyMap, SavesAndLoadsTheLengthPrefixedForm)
{
    ZVPropertyMap map;
    map.SetString(L"Key", L"(1:)");
    ZVString text = L"head";
    map.Save(text, true);
    EXPECT_STREQ(text, L"head(1:1)(3:Key)(4:(1:))");
    map.Save(text, false);
    EXPECT_STREQ(text, L"head(1:1)(3:Key)(4:(1:))(1:0)");

    ZVPropertyMap loaded = Letters(L"ab");
    int32_t position = 4;
    EXPECT_TRUE(loaded.Load(text, position));
    EXPECT_TRUE(loaded.IsEqual(map));
    EXPECT_EQ(position, 24);
    EXPECT_TRUE(loaded.Load(text, position));
    EXPECT_EQ(loaded.GetCount(), 0);
    EXPECT_EQ(position, 29);
}

TEST(ZVPropertyMap, LoadsTheWholeEntriesOfADamagedText)
{
    const struct
    {
        const wchar_t* Text;
        bool Result;
        int32_t Count;
        int32_t Position;
    } rows[] = {
        {L"",                                  true,  0, 0 },
        {L"no number",                         true,  0, 0 },
        {L"(1:x)",                             true,  0, 5 },
        {L"(2:-1)(1:a)(1:b)",                  true,  0, 6 },
        {L"(1:0)(1:a)(1:b)",                   true,  0, 5 },
        {L"(1:1)(1:a)(1:b)rest",               true,  1, 15},
        {L"(1:2)(1:a)(1:b)(1:c)",              false, 1, 15},
        {L"(1:2)(1:a)(1:b)(1:c)(9:d)",         false, 1, 15},
        {L"(10:2147483647)(1:a)(0:)(1:A)(0:)", false, 1, 33},
        {L"(1:1)(99999999999:a)(1:b)",         false, 0, 5 },
    };
    for (const auto& row : rows)
    {
        ZVPropertyMap map = Letters(L"xyz");
        int32_t position = 0;
        EXPECT_EQ(map.Load(row.Text, position), row.Result) << row.Text;
        EXPECT_EQ(map.GetCount(), row.Count) << row.Text;
        EXPECT_EQ(position, row.Position) << row.Text;
        EXPECT_EQ(map.Load(row.Text), row.Result) << row.Text;
    }
}

// The place of a virtual function in the table, as the C++ ABI keeps it in a pointer to it.
template <class Function>
size_t SlotOf(Function function)
{
    struct
    {
        size_t Offset;
        ptrdiff_t Adjustment;
    } layout = {};
    static_assert(sizeof(layout) == sizeof(function));
    memcpy(&layout, &function, sizeof(layout));
    return (layout.Offset - 1) / sizeof(void*) + 1;
}

TEST(ZVPropertyMap, KeepsTheOrderOfItsVirtualFunctions)
{
    using Map = ZVPropertyMap;
    const size_t slots[] = {
        SlotOf(&Map::IsSet),
        SlotOf(&Map::GetString),
        SlotOf(&Map::GetInt),
        SlotOf(&Map::GetInt64),
        SlotOf(&Map::GetUInt64),
        SlotOf(&Map::GetDouble),
        SlotOf(&Map::GetPointer),
        SlotOf(&Map::SetString),
        SlotOf(&Map::SetInt),
        SlotOf(&Map::SetInt64),
        SlotOf(&Map::SetUInt64),
        SlotOf(&Map::SetPointer),
        SlotOf(&Map::SetDouble),
        SlotOf(&Map::Clear),
        SlotOf(&Map::Remove),
        SlotOf(&Map::CopyFrom),
        SlotOf(&Map::MergeFrom),
        SlotOf(&Map::IsEqual),
        SlotOf(&Map::Save),
        SlotOf(static_cast<bool (Map::*)(const ZVString&)>(&Map::Load)),
        SlotOf(static_cast<bool (Map::*)(const ZVString&, int32_t&)>(&Map::Load)),
        SlotOf(&Map::ToXML),
        SlotOf(&Map::FromXML),
        SlotOf(&Map::WriteItems),
        SlotOf(&Map::ReadItems),
        SlotOf(&Map::ToDisplayText),
    };
    // The two forms of the destructor are in front.
    for (size_t index = 0; index < std::size(slots); ++index)
        EXPECT_EQ(slots[index], index + 3);
    EXPECT_EQ(sizeof(ZVPropertyMap), 2 * sizeof(void*));
}
}
