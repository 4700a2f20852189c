#include "core/xml/XMLOutline.h"

#include <tuple>

// The cases stand in columns.
// clang-format off

namespace
{
// The text after a change to an element of a document, where a new parse must see what the moved index sees.
template <class Change>
std::wstring Changed(const wchar_t* text, const wchar_t* path, Change change)
{
    ZVXMLDocument document, again;
    document.SetDocument(text);
    EXPECT_TRUE(path == nullptr || document.FindElement(path));
    EXPECT_TRUE(change(document));
    const std::wstring changed(document.GetDocument());
    again.SetDocument(changed.c_str());
    EXPECT_EQ(XMLOutline(document), XMLOutline(again));
    return changed;
}

TEST(ZVXMLEdit, AddsAnElementInItsPlace)
{
    using Addition = std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, uint32_t>;  // text, path, value and flags
    ExpectRows<Addition, std::wstring>({
        {{L"", nullptr, L"v", 0}, L"<n>v</n>\r\n"}, {{L"<?xml?>\r\n", nullptr, L"v", 0}, L"<?xml?>\r\n<n>v</n>\r\n"},
        // Behind the current element and its line break.
        {{L"<r>\n<a>1</a>\r\n<b/>\n</r>", L"/r/a", L"v", 0}, L"<r>\n<a>1</a>\r\n<n>v</n>\r\n<b/>\n</r>"},
        // In front of it.
        {{L"<r><a/></r>", L"/r/a", L"v", 0x2000}, L"<r><n>v</n>\r\n<a/></r>"},
        // Without a line break, escaped, as CDATA, empty, and with a blank in the tag.
        {{L"<r><a/></r>", L"/r/a", L"<&>\"'\x2", 2}, L"<r><a/><n>&lt;&amp;&gt;\"'?</n></r>"},
        {{L"<r><a/></r>", L"/r/a", L"<]]>", 3}, L"<r><a/><n><![CDATA[<]]]]><![CDATA[>]]></n></r>"},
        {{L"<r><a/></r>", L"/r/a", L"", 1}, L"<r><a/><n/>\r\n</r>"}, {{L"<r><a/></r>", L"/r/a", L"", 6}, L"<r><a/><n /></r>"},
        {{L"<r><a/></r>", L"/r/a", L"v", 0x10}, L"<r><a/><n/>\r\n</r>"},
        // Below an element that is empty, has text, or has elements, as the last or the first of which.
        {{L"<r x=\"/\" />", L"/r", L"v", 0x4000}, L"<r x=\"/\">\r\n<n>v</n>\r\n</r>"},
        {{L"<r ///>", L"/r", L"v", 0x4002}, L"<r>\r\n<n>v</n></r>"},
        {{L"<r>t</r>", L"/r", L"v", 0x4000}, L"<r>t<n>v</n>\r\n</r>"},
        {{L"<r>\r\n<a/>\r\n</r>", L"/r", L"v", 0x4000}, L"<r>\r\n<a/>\r\n<n>v</n>\r\n</r>"},
        {{L"<r>\r\n<a/>\r\n</r>", L"/r", L"v", 0x6000}, L"<r>\r\n<n>v</n>\r\n<a/>\r\n</r>"},
    }, [](const Addition& addition)
    {
        const auto [text, path, value, flags] = addition;
        return Changed(text, path, [content = value, place = flags](ZVXMLDocument& document)
        {
            const bool isAdded = document.AddElement(L"n", content, place) && document.IsWellFormed();
            return isAdded && ((place & 0x4000) != 0 ? document.GetChildElementName() : document.GetElementName()) == L"n";
        });
    });
}

TEST(ZVXMLEdit, SetsAnAttribute)
{
    ExpectRows<const wchar_t*, std::wstring>({
        {L"<a />", L"<a x=\"1\" />"}, {L"<a y='2'><b/></a>", L"<a y='2' x=\"1\"><b/></a>"}, {L"<a x='old'/>", L"<a x='1'/>"},
        {L"<a x = \"\" y=\"2\"/>", L"<a x = \"1\" y=\"2\"/>"}, {L"<a x=old/>", L"<a x=\"1\"/>"}, {L"<a x/>", L"<a x=\"1\"/>"},
        {L"<a y= />", L"<a y= \"\" x=\"1\"/>"}, {L"<a y=2/ ></a>", L"<a y=2/ x=\"1\" ></a>"},
    }, [](const wchar_t* text)
    {
        return Changed(text, L"/a", [](ZVXMLDocument& document)
        { return document.SetAttribute(L"x", L"1") && document.GetAttribute(L"x") == L"1"; });
    });
}

TEST(ZVXMLEdit, SetsTheContent)
{
    ExpectRows<std::pair<const wchar_t*, const wchar_t*>, std::wstring>({
        {{L"<r><a/><b/></r>", L""}, L"<r><a/><b/></r>"}, {{L"<r><a>old</a ><b/></r>", L""}, L"<r><a></a ><b/></r>"},
        {{L"<r><a y='/' //><b/></r>", L"<"}, L"<r><a y='/'>&lt;</a><b/></r>"},
        {{L"<r><a>1<c><d/></c><e>2</e></a><b/></r>", L"t"}, L"<r><a>t</a><b/></r>"},
    }, [](const auto& textAndContent)
    {
        return Changed(textAndContent.first, L"/r/a", [content = textAndContent.second](ZVXMLDocument& document)
        {
            document.FindChildElement();
            return document.SetText(content) && document.GetText() == content && document.GetChildElementName().IsEmpty();
        });
    });
}

TEST(ZVXMLEdit, RemovesAnElementWithItsLineBreak)
{
    const auto left = [](const wchar_t* text, const wchar_t* path, const wchar_t* positionAfter)
    {
        return Changed(text, path, [positionAfter](ZVXMLDocument& document)
        {
            document.FindChildElement();
            const bool isRemoved = document.RemoveElement() && document.GetChildElementName().IsEmpty();
            return isRemoved && document.GetElementPath() == positionAfter;
        });
    };
    EXPECT_EQ(left(L"<r>\r\n<a/>\r\n<b/>\n</r>", L"/r/a", L"/r"), L"<r>\r\n<b/>\n</r>");
    EXPECT_EQ(left(L"<r><a/><b><c/></b>\n\n<d/></r>", L"/r/b", L"/r/a"), L"<r><a/>\n<d/></r>");
    EXPECT_EQ(left(L"<a/>\r\n", L"/a", L""), L"");
    ZVXMLDocument document;
    EXPECT_FALSE(document.SetDocument(L"<a><b/></a><c/>"));
    EXPECT_TRUE(document.FindElement(L"c") && document.RemoveElement() && document.IsWellFormed());
    EXPECT_TRUE(document.RemoveElement() && !document.IsWellFormed());
}

TEST(ZVXMLEdit, RefusesWhatCannotBeReadBack)
{
    constexpr const wchar_t* Text = L"<a b='1'>2</a>";
    ZVXMLDocument document;
    document.SetDocument(Text);
    EXPECT_FALSE(document.SetText(L"t") || document.SetAttribute(L"b", L"2") || document.RemoveElement());
    EXPECT_FALSE(document.AddElement(L"n", L"", 0x4000) || document.AddChildElement(L"n", L""));
    document.FindElement();
    EXPECT_FALSE(document.SetChildText(L"t") || document.SetChildAttribute(L"b", L"2") || document.RemoveChildElement());
    for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"", L" ", L"a b", L"a>", L"a/b", L"<a", L"a\r"})
        EXPECT_FALSE(document.AddElement(name, L"v") || document.SetAttribute(name, L"v"));
    EXPECT_FALSE(document.AddElement(L"1", L"v") || document.SetAttribute(L"a=b", L"v") || document.SetAttribute(L"a'", L"v"));
    EXPECT_TRUE(document.GetDocument() == Text && document.GetElementPath() == L"/a");
}

TEST(ZVXMLEdit, KeepsEveryValueInASection)
{
    for (const wchar_t* value : {L"<a>&amp;</a>", L"&", L"&#65;", L"]]>", L"]]]]>>]]>", L"]", L"]]", L" \t\r\n ", L"\x1"})
    {
        ZVXMLDocument document, read;
        EXPECT_TRUE(document.AddElement(L"a", value, ZVXMLDocument::ValueAsCDATA) && read.SetDocument(document.GetDocument()));
        EXPECT_TRUE(read.FindElement() && read.GetText() == value) << value;
    }
}

TEST(ZVXMLEdit, KeepsTheCallersTextAndThePositionsOfWhatIsLeft)
{
    const ZVString text = L"<r><a><b/></a><c/></r>";
    ZVXMLDocument document;
    document.SetDocument(text);
    document.SavePosition(L"start");
    for (const wchar_t* path : {L"/r/a/b", L"/r/c"})
        document.FindElement(path), document.SavePosition(path);
    document.FindElement(L"/r/a");
    EXPECT_TRUE(document.SetText(L"t") && document.AddChildElement(L"new", L""));
    EXPECT_FALSE(document.RestorePosition(L"/r/a/b"));
    EXPECT_TRUE(document.RestorePosition(L"/r/c") && document.GetElementPath() == L"/r/c");
    EXPECT_TRUE(document.RestorePosition(L"start") && document.GetElementPath().IsEmpty());
    EXPECT_TRUE(document.SetDocument(text) && document.FindElement() && document.SetAttribute(L"x", document.GetDocument()));
    EXPECT_STREQ(text, L"<r><a><b/></a><c/></r>");
    EXPECT_STREQ(document.GetAttribute(L"x"), text);
}
}
