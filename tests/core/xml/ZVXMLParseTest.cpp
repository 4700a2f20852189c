#include "core/xml/XMLOutline.h"

#include <gtest/gtest.h>

namespace
{
struct ParseRow
{
    const char* Name;
    uint32_t Flags;
    const wchar_t* Text;
    const wchar_t* Error;  // empty for a well-formed document
    const wchar_t* Outline;
};

constexpr uint32_t Fold = ZVXMLDocument::FoldNames;

// clang-format off
const ParseRow ParseRows[] = {
    {"one empty tag", 0, L"<a/>", L"", L"a"},
    {"markup and blanks around the root", 0,
     L"<?xml version=\"1.0\"?>\r\n<!DOCTYPE a [<!ELEMENT a ANY>]><!-- <b> --><a/>\n", L"", L"a"},
    {"empty text", 0, L"", L"Empty document", L""},
    {"white space alone", 0, L" \r\n\t", L"Empty document", L""},
    {"text alone", 0, L"abc", L"No root element", L""},
    {"CDATA alone", 0, L"<![CDATA[<a/>]]>", L"No root element", L""},
    {"two roots", 0, L"<a/><b/>", L"Root element has sibling", L"a,b"},
    {"wrong end tag", 0, L"<a></b>", L"End tag 'b' at offset 3 does not match start tag 'a' at offset 0", L"a"},
    {"start of a name is not the name", 0, L"<ab></a>",
     L"End tag 'a' at offset 4 does not match start tag 'ab' at offset 0", L"ab"},
    {"a longer name is not the name", 0, L"<a></ab>",
     L"End tag 'ab' at offset 3 does not match start tag 'a' at offset 0", L"a"},
    {"case counts", 0, L"<Item>1</ITEM>",
     L"End tag 'ITEM' at offset 7 does not match start tag 'Item' at offset 0", L"Item=1"},
    {"case is folded", Fold, L"<Item>1</ITEM>", L"", L"Item=1"},
    {"missing end tag in front of the parent's", 0, L"<r><p><a>x</p><q>y</q></r>",
     L"End tag 'p' at offset 10 does not match start tag 'a' at offset 6", L"r(p(a=x),q=y)"},
    {"misspelt end tag", 0, L"<r><p>x</q><s>y</s></r>",
     L"End tag 'q' at offset 7 does not match start tag 'p' at offset 3", L"r(p=x,s=y)"},
    {"end tag too many", 0, L"</x><a/>", L"No start tag for end tag 'x' at offset 0", L"a"},
    {"two messages", 0, L"<a></b></c>",
     L"End tag 'b' at offset 3 does not match start tag 'a' at offset 0\nNo start tag for end tag 'c' at offset 7", L"a"},
    {"open at the end", 0, L"<a><b>text", L"Element 'b' at offset 3 not ended", L"a(b=text)"},
    {"cut in a start tag", 0, L"<a>1<b c=\"", L"Element tag at offset 4 unterminated", L"a=1"},
    {"quote that never closes", 0, L"<r><a b='></a></r>", L"Element tag at offset 3 unterminated", L"r"},
    {"cut in an end tag", 0, L"<a>1</a", L"Element end tag at offset 4 unterminated", L"a=1"},
    {"cut in CDATA", 0, L"<a><![CDATA[x]]", L"CDATA Section at offset 3 unterminated", L"a"},
    {"cut in the opening of CDATA", 0, L"<a><![", L"CDATA Section at offset 3 unterminated", L"a"},
    {"cut in a comment", 0, L"<a><!-- x--", L"Comment at offset 3 unterminated", L"a"},
    {"comment does not end in its opening", 0, L"<a><!--></a>", L"Comment at offset 3 unterminated", L"a"},
    {"cut in an instruction", 0, L"<a><?x ?", L"Processing instruction at offset 3 unterminated", L"a"},
    {"cut in a document type", 0, L"<a/><!DOCTYPE a [<!ELEMENT b>", L"Doctype at offset 4 unterminated", L"a"},
    {"cut behind the bracket", 0, L"<a><", L"tag at offset 3 unterminated", L"a"},
    {"cut behind the mark", 0, L"<a><!", L"tag at offset 3 unterminated", L"a"},
    {"digit as name", 0, L"<a><1/></a>", L"Incorrect tag name character at offset 3", L"a"},
    {"unknown declaration", 0, L"<a><!x></a>", L"Incorrect ! tag at offset 3", L"a"},
    {"unknown bracket", 0, L"<a><![x]]></a>", L"Incorrect ! tag at offset 3", L"a"},
    {"half a comment", 0, L"<a><!-x--></a>", L"Incorrect comment tag at offset 3", L"a"},
    {"end tag without a name", 0, L"<a></></a>", L"Incorrect tag at offset 3", L"a"},
    {"what stands before the damage", 0, L"<r><a>1</a><b>2</b><1></r>",
     L"Incorrect tag name character at offset 19", L"r(a=1,b=2)"},
    {"quoted brackets and slashes", 0, L"<r><a y=\"1>2\" x='\"/>'>t</a></r>", L"", L"r(a[\"/>]=t)"},
    {"tags in comments, instructions and CDATA", 0, L"<a><!-- </a> --><?x </a> ?><![CDATA[</a>]]></a>", L"", L"a=</a>"},
    {"blanks behind names", 0, L"<a\t\n>t</a \r\n>", L"", L"a=t"},
    {"slash inside a start tag", 0, L"<a/x=\"1\">t</a>", L"", L"a[1]=t"},
    {"names of every kind", 0, L"<_><a:b-c.1><\u00e4\u65e5/></a:b-c.1></_>", L"", L"_(a:b-c.1(\u00e4\u65e5))"},
};
// clang-format on

TEST(ZVXMLParse, IndexesWhatItCanAndTellsWhatIsWrong)
{
    for (const ParseRow& row : ParseRows)
    {
        SCOPED_TRACE(row.Name);
        ZVXMLDocument document(row.Flags);
        EXPECT_EQ(document.SetDocument(row.Text), *row.Error == L'\0');
        EXPECT_EQ(document.IsWellFormed(), *row.Error == L'\0');
        EXPECT_STREQ(document.GetError(), row.Error);
        EXPECT_EQ(XMLOutline(document), row.Outline);
    }
}

TEST(ZVXMLParse, FailsWithEveryProperStartOfADocument)
{
    const ZVString whole = L"<?xml version='1.0'?><!DOCTYPE r><r x=\"1\"><!--c--><a><![CDATA[<]]>t</a><b y='>'/></r>";
    ZVXMLDocument document;
    ASSERT_TRUE(document.SetDocument(whole));
    for (int32_t length = 0; length < whole.GetLength(); ++length)
    {
        EXPECT_FALSE(document.SetDocument(whole.Left(length))) << length;
        EXPECT_FALSE(document.GetError().IsEmpty()) << length;
    }
}

TEST(ZVXMLParse, ForgetsTheDocumentBefore)
{
    ZVXMLDocument document;
    document.SetDocument(L"<a><b/></c>");
    document.FindElement(L"a");
    document.SavePosition(L"here");
    EXPECT_TRUE(document.SetDocument(L"<d/>"));
    EXPECT_TRUE(document.GetError().IsEmpty());
    EXPECT_FALSE(document.RestorePosition(L"here"));
    EXPECT_EQ(XMLOutline(document), L"d");
}

TEST(ZVXMLParse, GoesAMillionElementsDeep)
{
    constexpr int32_t Depth = 1000000;
    std::wstring text;
    for (int32_t count = 0; count < Depth; ++count)
        text += L"<a>";
    ZVXMLDocument document;
    EXPECT_FALSE(document.SetDocument(text.c_str()));
    EXPECT_STREQ(document.GetError(), L"Element 'a' at offset 2999997 not ended");
    int32_t found = 0;
    while (document.FindElement() && document.EnterElement())
        ++found;
    EXPECT_EQ(found, Depth);
    EXPECT_EQ(document.GetElementPath().GetLength(), 2 * Depth);

    for (int32_t count = 0; count < Depth; ++count)
        text += L"</a>";
    EXPECT_TRUE(document.SetDocument(text.c_str()));
    EXPECT_TRUE(document.FindElement(L"/a/a"));
    EXPECT_TRUE(document.RemoveElement());
    EXPECT_STREQ(document.GetDocument(), L"<a></a>");
}

TEST(ZVXMLParse, KeepsAHundredMessagesAndTheOneOnTheRoot)
{
    std::wstring text = L"<a/><a/>";
    for (int count = 0; count < 10000; ++count)
        text += L"</b>";
    ZVXMLDocument document;
    EXPECT_FALSE(document.SetDocument(text.c_str()));
    EXPECT_EQ(document.GetError().CountOf(L"\n"), 100);
    EXPECT_TRUE(document.GetError().EndsWith(L"\nRoot element has sibling"));
}

// Both tags are longer than the index has bits for, and stand where a guess at their length would lead into other tags.
TEST(ZVXMLParse, MeasuresTagsThatAreTooLongForTheIndex)
{
    const std::wstring value(5000000, L'>');
    const std::wstring endTag = L"</a " + std::wstring(3000, L'<') + L"/a <b>";
    ZVXMLDocument document;
    EXPECT_TRUE(
        document.SetDocument((L"<r><a x=\"" + value + L"\">t" + endTag + L"<c/><a><b>1</b>-" + endTag + L"</r>").c_str()));
    document.FindElement(L"/r/a");
    EXPECT_EQ(document.GetAttribute(L"x").GetLength(), 5000000);
    EXPECT_STREQ(document.GetText(), L"t");

    EXPECT_TRUE(document.SetAttribute(L"y", L"2"));
    EXPECT_TRUE(document.SetText(L"<u>", true));
    EXPECT_STREQ(document.GetText(), L"<u>");
    EXPECT_TRUE(document.SetAttribute(L"x", L"1"));
    document.FindElement(L"/r/a[2]");
    EXPECT_TRUE(document.AddChildElement(L"d", L"2"));
    ZVXMLDocument again;
    EXPECT_TRUE(again.SetDocument(document.GetDocument()));
    EXPECT_EQ(XMLOutline(again), L"r(a[1]=<u>,c,a(b=1,d=2))");
    EXPECT_EQ(XMLOutline(document), XMLOutline(again));
}

TEST(ZVXMLParse, ReadsTheEncodingOfADeclaration)
{
    const struct
    {
        const wchar_t* Text;
        const wchar_t* Encoding;
    } rows[] = {
        {L"<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>", L"UTF-8" },
        {L"\xfeff\r\n<?xml encoding = 'latin1' ?>",         L"latin1"},
        {L"<?xml version=\"encoding='x'\"?>",               L""      },
        {L"<?xml encoding=\"UTF-8\"",                       L""      },
        {L"<?xml",                                          L""      },
        {L"<?xmlx encoding=\"UTF-8\"?>",                    L""      },
        {L"<a encoding=\"UTF-8\"/>",                        L""      },
        {L"",                                               L""      },
    };
    for (const auto& row : rows)
        EXPECT_STREQ(ZVXMLDocument::GetEncoding(row.Text), row.Encoding) << row.Text;
}
}
