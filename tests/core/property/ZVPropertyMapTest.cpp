#include "core/property/ZVPropertyMap.h"

#include "core/Rows.h"
#include "core/containers/ZVStringArray.h"

#include <bit>
#include <string>
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
    EXPECT_STREQ(map.GetString(L"width"), L"2");
    ZVString text;
    map.ToDisplayText(text);
    EXPECT_STREQ(text, L": empty\r\nWidth: 2\r\n");

    map.SetString(L"a", L"", true);
    EXPECT_STREQ(map.GetString(L"a", L"default"), L"default");
    map.SetString(L"a", L"", false);
    EXPECT_STREQ(map.GetString(L"A", L"default"), L"");
    map.SetString(L"A", L"", true);
    EXPECT_FALSE(map.IsSet(L"a"));
    EXPECT_FALSE(map.Remove(L"a"));
}

TEST(ZVPropertyMap, ConvertsNumbersAndParsesWhateverTextAKeyHolds)
{
    ZVPropertyMap map;
    map.SetUInt64(L"uint64", UINT64_MAX);
    map.SetDouble(L"double", -23.976);
    map.SetPointer(L"pointer", std::bit_cast<void*>(uint64_t {0xabc}));
    map.SetString(L"text", L" -1,5abc");
    EXPECT_EQ(map.GetUInt64(L"uint64"), UINT64_MAX);
    EXPECT_EQ(map.GetDouble(L"double"), -23.976);
    EXPECT_STREQ(map.GetString(L"pointer"), L"0000000000000ABC");
    EXPECT_EQ(map.GetPointer(L"pointer"), std::bit_cast<void*>(uint64_t {0xabc}));
    EXPECT_EQ(map.GetDouble(L"none", 0.5), 0.5);
    EXPECT_EQ(map.GetInt(L"text", 7), -1);
    EXPECT_EQ(map.GetDouble(L"text", 7.0), -1.5);
}

// A map with an entry for each letter, which is the key and the value.
ZVPropertyMap Letters(const wchar_t* keys)
{
    ZVPropertyMap map;
    for (; *keys != L'\0'; ++keys)
        map.SetString(ZVString(keys, 1), ZVString(keys, 1));
    return map;
}

TEST(ZVPropertyMap, LoadsTheWholeEntriesOfADamagedText)
{
    using Loaded = std::tuple<bool, int32_t, int32_t>;  // the result, the number of entries and the position
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
        return Loaded(result, map.GetCount(), position);
    });
    ZVPropertyMap map;
    map.SetString(L"Key", L"(1:)");
    ZVString text = L"head";
    map.Save(text, true);
    map.Save(text, false);
    EXPECT_STREQ(text, L"head(1:1)(3:Key)(4:(1:))(1:0)");
}

ZVString ToXML(const ZVPropertyMap& map, bool emptyIfNoItems = false)
{
    ZVString text = L"replaced";
    map.ToXML(text, L"XMLPH", emptyIfNoItems, 1.0);
    return text;
}

TEST(ZVPropertyMap, WritesEachKindOfItem)
{
    ZVPropertyMap map;
    EXPECT_STREQ(ToXML(map, true), L"");
    EXPECT_STREQ(ToXML(map), L"<XMLPH version=\"1.0\">\r\n</XMLPH>");
    ExpectRows<std::pair<const wchar_t*, const wchar_t*>, std::wstring>({
        {{L"x", L""}, L"<Item Name=\"x\"/>"},
        {{L"'k\" <&>", L"'v\" <&>"}, L"<Item Name=\"&apos;k&quot; &lt;&amp;&gt;\">'v\" &lt;&amp;&gt;</Item>"},
        {{L"\x2\t", L"\x1\x1f\r\n"}, L"<Item Name=\"?\t\">&#x1;?\r\n</Item>"},
    }, [&map](const auto& item)
    {
        map.Clear();
        map.SetString(item.first, item.second);
        return std::wstring(ToXML(map, true).GetBetween(L"<XMLPH version=\"1.0\">\r\n", L"\r\n</XMLPH>"));
    });
}

// 25 entries: at the seventeenth the table grows from 7 to 31 buckets, and "Width" and "Channels", "Bitrate" and "Disc", and
// "Height" and "Rating" change places. People compare files by eye and with diff, so this order must never change.
TEST(ZVPropertyMap, WritesItemsInTheOrderOfTheHashTable)
{
    ZVPropertyMap map;
    ZVStringArray keys;
    keys.SetSplit(L"Width|Height|Duration|Rating|Title|Artist|Album|Genre|Year|Track|Disc|Composer|Codec|Channels|Language|"
                  L"Bitrate|Rotation|Profile|Level|Width2|Comment|Copyright|Encoder|Video Codec|Frame Rate", L'|');
    for (const ZVString& key : keys)
        map.SetString(key, L"v");
    ZVString text = ToXML(map);
    text.Replace(L"<Item Name=\"", L"");
    text.Replace(L"\">v</Item>\r\n", L"|");
    EXPECT_STREQ(text, L"<XMLPH version=\"1.0\">\r\nTrack|Encoder|Copyright|Profile|Channels|Width|Language|Codec|Level|Duration|"
                       L"Disc|Bitrate|Genre|Video Codec|Album|Rating|Height|Width2|Frame Rate|Year|Title|Rotation|Artist|Comment|"
                       L"Composer|</XMLPH>");
}

TEST(ZVPropertyMap, ReadsWhatItCan)
{
    // What a map displays that was read from the text, after "no" if the text was refused.
    const auto read = [](const std::wstring& text)
    {
        ZVPropertyMap map;
        map.SetString(L"old", L"entry");
        ZVString display;
        const bool isRead = map.FromXML(text.c_str(), L"XMLPH", 1.0);
        map.ToDisplayText(display);
        return isRead ? std::wstring(display) : L"no" + std::wstring(display);
    };
    const std::wstring start = L"<XMLPH version=\"1.0\">", end = L"</XMLPH>";
    const std::wstring item = L"<Item Name=\"a\">1</Item>", one = L"a: 1\r\n";
    ExpectRows<std::wstring, std::wstring>({
        {L"", L""}, {L"<XMLPH version=\"1.0\"/>", L""}, {L"Width=1", L"no"}, {L"<XMLPH version=\"1,0\">" + item + end, one},
        {L"<XMLPH version='10e-1'>" + item + end, one}, {L"<XMLPH version=\"2.0\">" + item + end, L"no"},
        {L"<XMLPH>" + item + end, L"no"}, {L"<XMLFN version=\"1.0\">" + item + L"</XMLFN>", L"no"},
        {L"<x/>" + start + item + end, one}, {L"<xmlph VERSION=\"1.0\"><ITEM name=\"a\">1</ITEM></xmlph>", one},
        {start + L"<Other Name=\"b\"/>" + item + L"<Items/>" + end, one},
        {start + item + L"<Item Name=\"A\">2</Item>" + end, L"a: 2\r\n"}, {start + L"<Item>1</Item>" + end, L": 1\r\n"},
        {start + L"<Item Name=\"a\">1<b/></Item>" + end, L"a: \r\n"},
        // Cut off, or damaged, in several places.
        {start + L"\r\n" + item + L"\r\n", one}, {start + item + L"\r\n<Item Name=\"b", one},
        {L"<XMLPH version=\"1.0\"", L"no"}, {start + L"<Item Name=\"a\">1" + end, one},
        {start + item + L"<Item Name=\"b\">2", one}, {start + item + L"<Item Name=\"b\">2</Item", one},
        {start + item + L"<Item Name=\"b\"><![CDATA[2]]>", one}, {start + L"<Item Name=\"a\">1<2", L""},
    }, read);
}
}
