#include "core/Rows.h"
#include "core/containers/ZVStringArray.h"
#include "core/property/ZVPropertyMap.h"

#include <string>

// The cases stand in columns.
// clang-format off

namespace
{
ZVString ToXML(const ZVPropertyMap& map, bool emptyIfNoItems = false)
{
    ZVString text = L"replaced";
    map.ToXML(text, L"XMLPH", emptyIfNoItems, 1.0);
    return text;
}

TEST(ZVPropertyMapXML, WritesEachKindOfItem)
{
    ZVPropertyMap map;
    EXPECT_TRUE(ToXML(map, true).IsEmpty() && ToXML(map) == L"<XMLPH version=\"1.0\">\r\n</XMLPH>");
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
    ZVString text;
    map.ToXML(text, L"R", true, 2.25);
    EXPECT_TRUE(text.StartsWith(L"<R version=\"2.3\">\r\n"));
}

// 25 entries: at the seventeenth the table grows from 7 to 31 buckets, and "Width" and "Channels", "Bitrate" and "Disc", and
// "Height" and "Rating" change places. Files are compared by eye and by diff, so this order may never change.
TEST(ZVPropertyMapXML, WritesItemsInTheOrderOfTheHashTable)
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

TEST(ZVPropertyMapXML, ReadsWhatItCan)
{
    // What of the text is displayed, or "no" when it was refused.
    const auto read = [](const std::wstring& text)
    {
        ZVPropertyMap map;
        map.SetString(L"old", L"entry");
        ZVString display(L"no");
        if (map.FromXML(text.c_str(), L"XMLPH", 1.0))
            map.ToDisplayText(display);
        EXPECT_TRUE(display != L"no" || map.GetCount() == 0);
        return std::wstring(display);
    };
    const std::wstring start = L"<XMLPH version=\"1.0\">", end = L"</XMLPH>";
    const std::wstring item = L"<Item Name=\"a\">1</Item>", one = L"a: 1\r\n";
    ExpectRows<std::wstring, std::wstring>({
        {L"<XMLPH version=\"1.0\"/>", L""}, {L"Width=1", L"no"}, {L"<XMLPH version=\"1,0\">" + item + end, one},
        {L"<XMLPH version='10e-1'>" + item + end, one}, {L"<XMLPH version=\"2.0\">" + item + end, L"no"},
        {L"<XMLPH>" + item + end, L"no"}, {L"<XMLFN version=\"1.0\">" + item + L"</XMLFN>", L"no"},
        {L"<x/>" + start + item + end, one}, {L"<xmlph VERSION=\"1.0\"><ITEM name=\"a\">1</ITEM></xmlph>", one},
        {start + L"<Other Name=\"b\"/>" + item + L"<Items/>" + end, one},
        {start + item + L"<Item Name=\"A\">2</Item>" + end, L"a: 2\r\n"}, {start + L"<Item>1</Item>" + end, L": 1\r\n"},
        {start + L"<Item Name=\"a\">1<b/></Item>" + end, L"a: \r\n"},
        // Cut off in several places.
        {start + L"\r\n" + item + L"\r\n", one}, {start + item + L"\r\n<Item Name=\"b", one},
        {L"<XMLPH version=\"1.0\"", L"no"}, {start + L"<Item Name=\"a\">1" + end, one},
        {start + item + L"<Item Name=\"b\">2", one}, {start + item + L"<Item Name=\"b\">2</Item", one},
        {start + item + L"<Item Name=\"b\"><![CDATA[2]]>", one}, {start + L"<Item Name=\"a\">1<2", L""},
    }, read);
}

TEST(ZVPropertyMapXML, KeepsEveryKeyAndValue)
{
    ZVPropertyMap map, read;
    const wchar_t* texts[] = {L"", L"  a  ", L"\t\r\n", L"\"'<>&", L"&amp;&#65;", L"]]>", L"<!--", L"\xffff", L"\x1", L"="};
    for (const wchar_t* key : texts)
        for (const wchar_t* value : texts)
            map.SetString(ZVString(key) + L"/" + value, value);
    // A size that would take minutes if writing or reading an item cost time for each of the others.
    for (int32_t number = 0; number < 100000; ++number)
        map.SetInt(ZVFormat(L"Key %d", number), number);
    EXPECT_TRUE(read.FromXML(ToXML(map), L"XMLPH", 1.0) && read.IsEqual(map));
    ZVString text;
    map.Save(text);
    EXPECT_TRUE(read.Load(text) && read.IsEqual(map));
}
}
