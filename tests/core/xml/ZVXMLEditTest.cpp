#include "core/xml/XMLOutline.h"

#include <tuple>

// The cases stand in columns.
// clang-format off

namespace
{
// The text after a change to an element of a document. A new parse of it must find what the updated index has.
template <class Change>
std::wstring Changed(const wchar_t* text, const wchar_t* path, Change change)
{
    ZVXMLDocument document, again;
    document.SetDocument(text);
    if (path != nullptr)
        document.FindElement(path);
    change(document);
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
        // After the current element and its line break.
        {{L"<r>\n<a>1</a>\r\n<b/>\n</r>", L"/r/a", L"v", 0}, L"<r>\n<a>1</a>\r\n<n>v</n>\r\n<b/>\n</r>"},
        // Before it.
        {{L"<r><a/></r>", L"/r/a", L"v", 0x2000}, L"<r><n>v</n>\r\n<a/></r>"},
        // Without a line break, escaped, as CDATA, empty, and with a blank in the tag.
        {{L"<r><a/></r>", L"/r/a", L"<&>\"'\x2", 2}, L"<r><a/><n>&lt;&amp;&gt;\"'?</n></r>"},
        {{L"<r><a/></r>", L"/r/a", L"<]]>", 3}, L"<r><a/><n><![CDATA[<]]]]><![CDATA[>]]></n></r>"},
        {{L"<r><a/></r>", L"/r/a", L"", 1}, L"<r><a/><n/>\r\n</r>"}, {{L"<r><a/></r>", L"/r/a", L"", 6}, L"<r><a/><n /></r>"},
        {{L"<r><a/></r>", L"/r/a", L"v", 0x10}, L"<r><a/><n/>\r\n</r>"},
        // Inside an element that is empty, has text, or has elements, as the last or the first of them.
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
            EXPECT_TRUE(document.AddElement(L"n", content, place));
            const bool isChild = (place & ZVXMLDocument::ChildOfMain) != 0;
            EXPECT_STREQ(isChild ? document.GetChildElementName() : document.GetElementName(), L"n");
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
        {
            EXPECT_TRUE(document.SetAttribute(L"x", L"1"));
            EXPECT_STREQ(document.GetAttribute(L"x"), L"1");
        });
    });
}

TEST(ZVXMLEdit, SetsTheContent)
{
    ExpectRows<std::pair<const wchar_t*, const wchar_t*>, std::wstring>({
        {{L"<r><a/><b/></r>", L""}, L"<r><a/><b/></r>"}, {{L"<r><a>old</a ><b/></r>", L""}, L"<r><a></a ><b/></r>"},
        {{L"<r><a y='/' //><b/></r>", L"<"}, L"<r><a y='/'>&lt;</a><b/></r>"},
        {{L"<r><a>1<c><d/></c><e>2</e></a><b/></r>", L"long text"}, L"<r><a>long text</a><b/></r>"},
    }, [](const auto& textAndContent)
    {
        return Changed(textAndContent.first, L"/r/a", [content = textAndContent.second](ZVXMLDocument& document)
        {
            document.FindChildElement();
            EXPECT_TRUE(document.SetText(content));
            EXPECT_STREQ(document.GetText(), content);
            EXPECT_STREQ(document.GetChildElementName(), L"");
        });
    });
}

TEST(ZVXMLEdit, RefusesNamesThatCannotBeReadBack)
{
    constexpr const wchar_t* Text = L"<a b='1'>2</a>";
    ZVXMLDocument document;
    document.SetDocument(Text);
    document.FindElement();
    for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"", L" ", L"a b", L"a>", L"a/b", L"<a", L"a\r", L"1"})
        EXPECT_FALSE(document.AddElement(name, L"v")) << testing::PrintToString(name);
    for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"", L"a b", L"a>", L"a/b", L"<a", L"a=b", L"a'"})
        EXPECT_FALSE(document.SetAttribute(name, L"v")) << testing::PrintToString(name);
    EXPECT_STREQ(document.GetDocument(), Text);
}
}
