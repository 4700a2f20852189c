#include "core/xml/XMLOutline.h"

// The cases stand in columns.
// clang-format off

namespace
{
struct ParseRow
{
    const wchar_t *Text, *Outline, *Error = L"";
    uint32_t Flags = 0;
};

constexpr ParseRow ParseRows[] = {
    {L"<a\t\n>t</a \r\n>", L"a=t"}, {L"<a/x=\"1\">t</a>", L"a[1]=t"},
    {L"<?xml version=\"1.0\"?>\r\n<!DOCTYPE a [<!ELEMENT a ANY>]><!-- <b> --><a/>\n", L"a"},
    {L"<r><a y=\"1>2\" x='\"/>'>t</a></r>", L"r(a[\"/>]=t)"},
    {L"<a><!-- </a> --><?x </a> ?><![CDATA[</a>]]></a>", L"a=</a>"},
    {L"<_><a:b-c.1><\u00e4\u65e5/></a:b-c.1></_>", L"_(a:b-c.1(\u00e4\u65e5))"},
    // No root, or too many.
    {L" \r\n\t", L"", L"Empty document"}, {L"<![CDATA[<a/>]]>", L"", L"No root element"},
    {L"<a/><b/>", L"a,b", L"Root element has sibling"},
    // End tags.
    {L"<ab></a>", L"ab", L"End tag 'a' at offset 4 does not match start tag 'ab' at offset 0"},
    {L"<a></ab>", L"a", L"End tag 'ab' at offset 3 does not match start tag 'a' at offset 0"},
    {L"<Item>1</ITEM>", L"Item=1", L"End tag 'ITEM' at offset 7 does not match start tag 'Item' at offset 0"},
    {L"<Item>1</ITEM>", L"Item=1", L"", ZVXMLDocument::FoldNames},
    {L"<r><p><a>x</p><q>y</q></r>", L"r(p(a=x),q=y)", L"End tag 'p' at offset 10 does not match start tag 'a' at offset 6"},
    {L"<a></b></c>", L"a",
     L"End tag 'b' at offset 3 does not match start tag 'a' at offset 0\nNo start tag for end tag 'c' at offset 7"},
    // Cut off in a tag, a section or a node.
    {L"<r><a b='></a></r>", L"r", L"Element tag at offset 3 unterminated"},
    {L"<a>1</a", L"a=1", L"Element end tag at offset 4 unterminated"},
    {L"<a><![CDATA[x]]", L"a", L"CDATA Section at offset 3 unterminated"},
    {L"<a><![", L"a", L"CDATA Section at offset 3 unterminated"},
    {L"<a><!-- x--", L"a", L"Comment at offset 3 unterminated"}, {L"<a><!--></a>", L"a", L"Comment at offset 3 unterminated"},
    {L"<a><?x ?", L"a", L"Processing instruction at offset 3 unterminated"},
    {L"<a/><!DOCTYPE a [<!ELEMENT b>", L"a", L"Doctype at offset 4 unterminated"},
    {L"<a><", L"a", L"tag at offset 3 unterminated"}, {L"<a><!", L"a", L"tag at offset 3 unterminated"},
    // What is not markup.
    {L"<a><1/></a>", L"a", L"Incorrect tag name character at offset 3"},
    {L"<a><!x></a>", L"a", L"Incorrect ! tag at offset 3"}, {L"<a><![x]]></a>", L"a", L"Incorrect ! tag at offset 3"},
    {L"<a><!-x--></a>", L"a", L"Incorrect comment tag at offset 3"}, {L"<a></></a>", L"a", L"Incorrect tag at offset 3"},
};

TEST(ZVXMLParse, IndexesWhatItCanAndReportsTheRest)
{
    for (const ParseRow& row : ParseRows)
    {
        SCOPED_TRACE(row.Text);
        ZVXMLDocument document(row.Flags);
        EXPECT_EQ(document.SetDocument(row.Text), *row.Error == L'\0');
        EXPECT_EQ(document.IsWellFormed(), *row.Error == L'\0');
        EXPECT_STREQ(document.GetError(), row.Error);
        EXPECT_EQ(XMLOutline(document), row.Outline);
    }
}

TEST(ZVXMLParse, GoesAMillionElementsDeep)
{
    std::wstring text, ends;
    for (int32_t count = 0; count < 1000000; ++count)
        text += L"<a>", ends += L"</a>";
    ZVXMLDocument document;
    EXPECT_FALSE(document.SetDocument(text.c_str()));
    EXPECT_STREQ(document.GetError(), L"Element 'a' at offset 2999997 not ended");
    EXPECT_TRUE(document.SetDocument((text + ends).c_str()));
    document.FindElement(L"/a/a");
    document.RemoveElement();
    EXPECT_STREQ(document.GetDocument(), L"<a></a>");
    // A hundred messages are kept, and the one about the root.
    EXPECT_FALSE(document.SetDocument((L"<b/><b/>" + ends).c_str()));
    EXPECT_EQ(document.GetError().CountOf(L"\n"), 100);
    EXPECT_STREQ(document.GetError().GetAfterLast(L"\n"), L"Root element has sibling");
}

TEST(ZVXMLParse, ReadsTheEncodingOfADeclaration)
{
    ExpectRows<const wchar_t*, std::wstring>({
        {L"<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>", L"UTF-8"}, {L"\xfeff\r\n<?xml encoding = 'latin1' ?>", L"latin1"},
        {L"<?xml version=\"encoding='x'\"?>", L""}, {L"<?xml encoding=\"UTF-8\"", L""}, {L"<?xml", L""},
        {L"<?xmlx encoding=\"UTF-8\"?>", L""},
    }, [](const wchar_t* text) { return std::wstring(ZVXMLDocument::GetEncoding(text)); });
}
}
