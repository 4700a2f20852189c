#include "core/property/ZVPropertyMap.h"
#include "core/xml/ZVXMLDocument.h"

#include <gtest/gtest.h>
#include <string>

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
    EXPECT_STREQ(ToXML(map, true), L"");
    EXPECT_STREQ(ToXML(map), L"<XMLPH version=\"1.0\">\r\n</XMLPH>");
    const struct
    {
        const wchar_t* Key;
        const wchar_t* Value;
        const wchar_t* Item;
    } rows[] = {
        {L"Width",        L"1920",        L"<Item Name=\"Width\">1920</Item>"                                    },
        {L"x",            L"",            L"<Item Name=\"x\"/>"                                                  },
        {L"",             L" ",           L"<Item Name=\"\"> </Item>"                                            },
        {L"'k\" <&>",     L"'v\" <&>",    L"<Item Name=\"&apos;k&quot; &lt;&amp;&gt;\">'v\" &lt;&amp;&gt;</Item>"},
        {L"\x2\t",        L"\x1\x1f\r\n", L"<Item Name=\"?\t\">&#x1;?\r\n</Item>"                                },
        {L"\u00dc\u65e5", L"\xffff",      L"<Item Name=\"\u00dc\u65e5\">\xffff</Item>"                           },
    };
    for (const auto& row : rows)
    {
        map.Clear();
        map.SetString(row.Key, row.Value);
        EXPECT_STREQ(ToXML(map, true), (std::wstring(L"<XMLPH version=\"1.0\">\r\n") + row.Item + L"\r\n</XMLPH>").c_str());
    }
    ZVString text;
    map.ToXML(text, L"R", true, 2.25);
    EXPECT_TRUE(text.StartsWith(L"<R version=\"2.3\">\r\n"));
}

// 25 entries: at the seventeenth the table grows from 7 to 31 buckets, and "Width" and "Channels", "Bitrate" and "Disc", and
// "Height" and "Rating" change places. Files are compared by eye and by diff, so this order may never change.
TEST(ZVPropertyMapXML, WritesItemsInTheOrderOfTheHashTable)
{
    ZVPropertyMap map;
    for (const wchar_t* key :
         {L"Width", L"Height", L"Duration", L"Rating",    L"Title",    L"Artist",      L"Album",     L"Genre",    L"Year",
          L"Track", L"Disc",   L"Composer", L"Codec",     L"Channels", L"Language",    L"Bitrate",   L"Rotation", L"Profile",
          L"Level", L"Width2", L"Comment",  L"Copyright", L"Encoder",  L"Video Codec", L"Frame Rate"})
        map.SetString(key, L"v");
    std::wstring expected = L"<XMLPH version=\"1.0\">\r\n";
    for (const wchar_t* key :
         {L"Track",      L"Encoder", L"Copyright", L"Profile",  L"Channels",    L"Width",   L"Language", L"Codec",  L"Level",
          L"Duration",   L"Disc",    L"Bitrate",   L"Genre",    L"Video Codec", L"Album",   L"Rating",   L"Height", L"Width2",
          L"Frame Rate", L"Year",    L"Title",     L"Rotation", L"Artist",      L"Comment", L"Composer"})
        expected += std::wstring(L"<Item Name=\"") + key + L"\">v</Item>\r\n";
    EXPECT_STREQ(ToXML(map), (expected + L"</XMLPH>").c_str());
}

TEST(ZVPropertyMapXML, ReadsWhatItCan)
{
    // clang-format off
    const struct
    {
        const char* Name;
        const wchar_t* Text;
        bool Result;
        const wchar_t* Display;
    } rows[] = {
        {"empty text", L"", true, L""},
        {"no items", L"<XMLPH version=\"1.0\"/>", true, L""},
        {"version without a decimal", L"<XMLPH version=\"1\"><Item Name=\"a\">1</Item></XMLPH>", true, L"a: 1\r\n"},
        {"version with a comma", L"<XMLPH version=\"1,0\"><Item Name=\"a\">1</Item></XMLPH>", true, L"a: 1\r\n"},
        {"version with an exponent", L"<XMLPH version='10e-1'><Item Name=\"a\">1</Item></XMLPH>", true, L"a: 1\r\n"},
        {"another version", L"<XMLPH version=\"2.0\"><Item Name=\"a\">1</Item></XMLPH>", false, L""},
        {"no version", L"<XMLPH><Item Name=\"a\">1</Item></XMLPH>", false, L""},
        {"another root", L"<XMLFN version=\"1.0\"><Item Name=\"a\">1</Item></XMLFN>", false, L""},
        {"no XML", L"Width=1", false, L""},
        {"behind another root", L"<x/><XMLPH version=\"1.0\"><Item Name=\"a\">1</Item></XMLPH>", true, L"a: 1\r\n"},
        {"folded names", L"<xmlph VERSION=\"1.0\"><ITEM name=\"a\">1</ITEM></xmlph>", true, L"a: 1\r\n"},
        {"declaration and indentation",
         L"<?xml version=\"2.0\"?>\n<XMLPH version=\"1.0\">\n  <Item Name='a'>1</Item>\n</XMLPH>\n", true, L"a: 1\r\n"},
        {"other elements",
         L"<XMLPH version=\"1.0\"><Other Name=\"b\"/><Item Name=\"a\">1</Item><Items/></XMLPH>", true, L"a: 1\r\n"},
        {"the later of two",
         L"<XMLPH version=\"1.0\"><Item Name=\"a\">1</Item><Item Name=\"A\">2</Item></XMLPH>", true, L"a: 2\r\n"},
        {"no name", L"<XMLPH version=\"1.0\"><Item>1</Item></XMLPH>", true, L": 1\r\n"},
        {"item with an element in it", L"<XMLPH version=\"1.0\"><Item Name=\"a\">1<b/></Item></XMLPH>", true, L"a: \r\n"},
        {"entities and CDATA",
         L"<XMLPH version=\"1.0\"><Item Name=\"&lt;\">&gt;<![CDATA[<&]]></Item></XMLPH>", true, L"<: ><&\r\n"},
        {"cut behind an item", L"<XMLPH version=\"1.0\">\r\n<Item Name=\"a\">1</Item>\r\n", true, L"a: 1\r\n"},
        {"cut in a tag", L"<XMLPH version=\"1.0\">\r\n<Item Name=\"a\">1</Item>\r\n<Item Name=\"b", true, L"a: 1\r\n"},
        {"cut in the root's tag", L"<XMLPH version=\"1.0\"", false, L""},
        {"missing end tag", L"<XMLPH version=\"1.0\"><Item Name=\"a\">1</XMLPH>", true, L"a: 1\r\n"},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        ZVPropertyMap map;
        map.SetString(L"old", L"entry");
        EXPECT_EQ(map.FromXML(row.Text, L"XMLPH", 1.0), row.Result);
        ZVString display;
        map.ToDisplayText(display);
        EXPECT_STREQ(display, row.Display);
    }
}

TEST(ZVPropertyMapXML, KeepsEveryKeyAndValue)
{
    ZVPropertyMap map;
    const wchar_t* texts[] = {L"",     L" ",      L"  a  ", L"\t\r\n",     L"\"'<>&", L"&amp;&#65;", L"]]>",
                              L"<!--", L"\xffff", L"\x1",   L"\U0001F600", L"1,5",    L"="};
    for (const wchar_t* key : texts)
        for (const wchar_t* value : texts)
            map.SetString(ZVString(key) + L"/" + value, value);
    ZVPropertyMap read;
    EXPECT_TRUE(read.FromXML(ToXML(map), L"XMLPH", 1.0));
    EXPECT_TRUE(read.IsEqual(map));
    ZVString text;
    map.Save(text);
    EXPECT_TRUE(read.Load(text));
    EXPECT_TRUE(read.IsEqual(map));
}

// Rows of sizes that would take minutes if writing or reading an item cost time for each of the others.
TEST(ZVPropertyMapXML, TakesLargeMaps)
{
    constexpr int32_t Count = 200000;
    ZVPropertyMap map;
    for (int32_t number = 0; number < Count; ++number)
        map.SetInt(ZVFormat(L"Key %d", number), number);
    ZVPropertyMap read;
    EXPECT_TRUE(read.FromXML(ToXML(map), L"XMLPH", 1.0));
    EXPECT_TRUE(read.IsEqual(map));
    ZVString text;
    map.Save(text);
    EXPECT_TRUE(read.Load(text));
    EXPECT_EQ(read.GetInt(L"key 199999"), 199999);
}

TEST(ZVPropertyMapXML, ReadsAndWritesItemsAtAPositionOfADocument)
{
    ZVPropertyMap map;
    map.SetString(L"a", L"1");
    ZVXMLDocument document;
    document.SetDocument(L"<r><Head/>\n<Tail/></r>");
    document.FindElement(L"/r/Head");
    map.WriteItems(document);
    EXPECT_STREQ(document.GetDocument(), L"<r><Head/>\n<Item Name=\"a\">1</Item>\r\n<Tail/></r>");
    document.ResetMainPosition();
    ZVPropertyMap read;
    read.SetString(L"b", L"2");
    read.ReadItems(document);
    EXPECT_TRUE(read.IsEqual(map));
}
}
