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
    // No root or too many.
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
    // Cut in a tag, a section or a node.
    {L"<r><a b='></a></r>", L"r", L"Element tag at offset 3 unterminated"},
    {L"<a>1</a", L"a=1", L"Element end tag at offset 4 unterminated"},
    {L"<a><![CDATA[x]]", L"a", L"CDATA Section at offset 3 unterminated"},
    {L"<a><![", L"a", L"CDATA Section at offset 3 unterminated"},
    {L"<a><!-- x--", L"a", L"Comment at offset 3 unterminated"}, {L"<a><!--></a>", L"a", L"Comment at offset 3 unterminated"},
    {L"<a><?x ?", L"a", L"Processing instruction at offset 3 unterminated"},
    {L"<a/><!DOCTYPE a [<!ELEMENT b>", L"a", L"Doctype at offset 4 unterminated"},
    {L"<a><", L"a", L"tag at offset 3 unterminated"}, {L"<a><!", L"a", L"tag at offset 3 unterminated"},
    // What is no markup.
    {L"<a><1/></a>", L"a", L"Incorrect tag name character at offset 3"},
    {L"<a><!x></a>", L"a", L"Incorrect ! tag at offset 3"}, {L"<a><![x]]></a>", L"a", L"Incorrect ! tag at offset 3"},
    {L"<a><!-x--></a>", L"a", L"Incorrect comment tag at offset 3"}, {L"<a></></a>", L"a", L"Incorrect tag at offset 3"},
};

TEST(ZVXMLParse, IndexesWhatItCanAndTellsWhatIsWrong)
{
    for (const ParseRow& row : ParseRows)
    {
        SCOPED_TRACE(row.Text);
        ZVXMLDocument document(row.Flags);
        const bool isSet = document.SetDocument(row.Text);
        EXPECT_TRUE(isSet == document.IsWellFormed() && isSet == (*row.Error == L'\0'));
        EXPECT_STREQ(document.GetError(), row.Error);
        EXPECT_EQ(XMLOutline(document), row.Outline);
    }
}

TEST(ZVXMLParse, FailsWithEveryProperStartOfADocument)
{
    const ZVString whole = L"<?xml version='1.0'?><!DOCTYPE r><r x=\"1\"><!--c--><a><![CDATA[<]]>t</a><b y='>'/></r>";
    ZVXMLDocument document;
    for (int32_t length = 0; length < whole.GetLength(); ++length)
    {
        EXPECT_FALSE(document.SetDocument(whole.Left(length)) || document.GetError().IsEmpty()) << length;
        document.FindElement();
        document.SavePosition(L"here");
    }
    EXPECT_TRUE(document.SetDocument(whole) && document.GetError().IsEmpty() && !document.RestorePosition(L"here"));
}

TEST(ZVXMLParse, GoesAMillionElementsDeep)
{
    constexpr int32_t Depth = 1000000;
    std::wstring text, ends;
    for (int32_t count = 0; count < Depth; ++count)
        text += L"<a>", ends += L"</a>";
    ZVXMLDocument document;
    EXPECT_FALSE(document.SetDocument(text.c_str()));
    EXPECT_STREQ(document.GetError(), L"Element 'a' at offset 2999997 not ended");
    while (document.FindElement() && document.EnterElement())
        ;
    EXPECT_EQ(document.GetElementPath().GetLength(), 2 * Depth);
    EXPECT_TRUE(document.SetDocument((text + ends).c_str()) && document.FindElement(L"/a/a") && document.RemoveElement());
    EXPECT_STREQ(document.GetDocument(), L"<a></a>");
    // Of the messages a hundred are kept, and the one on the root.
    EXPECT_FALSE(document.SetDocument((L"<b/><b/>" + ends).c_str()));
    EXPECT_TRUE(document.GetError().CountOf(L"\n") == 100 && document.GetError().EndsWith(L"\nRoot element has sibling"));
}

// Both tags are longer than the index has bits for, and stand where a guess at their length would lead into other tags.
TEST(ZVXMLParse, MeasuresTagsThatAreTooLongForTheIndex)
{
    const std::wstring value(5000000, L'>'), endTag = L"</a " + std::wstring(3000, L'<') + L"/a <b>";
    ZVXMLDocument document, again;
    const std::wstring text = L"<r><a x=\"" + value + L"\">t" + endTag + L"<c/><a><b>1</b>-" + endTag + L"</r>";
    EXPECT_TRUE(document.SetDocument(text.c_str()) && document.FindElement(L"/r/a") && document.GetText() == L"t");
    EXPECT_EQ(document.GetAttribute(L"x").GetLength(), 5000000);
    EXPECT_TRUE(document.SetAttribute(L"y", L"2") && document.SetText(L"<u>", true) && document.GetText() == L"<u>");
    EXPECT_TRUE(document.SetAttribute(L"x", L"1") && document.FindElement(L"/r/a[2]") && document.AddChildElement(L"d", L"2"));
    EXPECT_TRUE(again.SetDocument(document.GetDocument()));
    EXPECT_EQ(XMLOutline(again), L"r(a[1]=<u>,c,a(b=1,d=2))");
    EXPECT_EQ(XMLOutline(document), XMLOutline(again));
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
