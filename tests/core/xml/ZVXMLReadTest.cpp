#include "core/Rows.h"
#include "core/xml/ZVXMLDocument.h"

#include <string>

// The cases stand in columns.
// clang-format off

namespace
{
TEST(ZVXMLRead, TextOfAnElement)
{
    ExpectRows<const wchar_t*, std::wstring>({
        {L"<a>x &amp; y</a>", L"x & y"}, {L"<a>&</a>", L"&"}, {L"<a>&none; &#65;&#x42;&#x1F600;</a>", L"&none; AB\U0001F600"},
        {L"<a> \t\r\n</a>", L" \t\r\n"}, {L"<a>1&lt;<![CDATA[<b>&amp;]]>2</a>", L"1<<b>&amp;2"},
        {L"<a> <![CDATA[1]]> <![CDATA[2]]></a>", L" 1 2"}, {L"<a><![CDATA[x]]]]></a>", L"x]]"}, {L"<a>1<b/></a>", L""},
        {L"<a>1<![C]]>2</a>", L"12"}, {L"<a>1<!--x--><?y?>2</a>", L"12"}, {L"<a/>", L""}, {L"<a>1", L"1"},
    }, [](const wchar_t* text)
    {
        ZVXMLDocument document;
        document.SetDocument(text);
        document.FindElement();
        return std::wstring(document.GetText());
    });
}

TEST(ZVXMLRead, ValueOfAnAttribute)
{
    const auto valueOfX = [](const wchar_t* text, uint32_t flags = 0)
    {
        ZVXMLDocument document(flags);
        document.SetDocument(text);
        document.FindElement();
        return std::wstring(document.GetAttribute(L"x"));
    };
    ExpectRows<const wchar_t*, std::wstring>({
        {L"<a y=\"x='0'\" x='2'/>", L"2"}, {L"<a xx=\"1\" x=\"2\" x=\"3\"/>", L"2"}, {L"<a \"x\" = x=\"1\"/>", L""},
        {L"<a\r\n\tx\t=\n\"1\"\r\n/>", L"1"}, {L"<a x=1/2 y=3/>", L"1/2"}, {L"<a x=1>t</a>", L"1"}, {L"<a x y=\"1\"/>", L""},
        {L"<a \"junk\" x=\"1\"/>", L"1"}, {L"<a y=\"1\"x=\"2\"/>", L"2"}, {L"<a y=1' x='2 x=\"3\"/>", L"3"},
        {L"<a x=\"&lt;&quot;'&#65;&\"/>", L"<\"'A&"}, {L"<a X=\"1\"/>", L""}, {L"<ax=\"1\"/>", L""}, {L"<a/>x=\"1\"", L""},
    }, valueOfX);
    EXPECT_EQ(valueOfX(L"<a X=\"1\"/>", ZVXMLDocument::FoldNames), L"1");
}

TEST(ZVXMLRead, FindsByPath)
{
    ZVXMLDocument document(ZVXMLDocument::FoldNames);
    ASSERT_TRUE(document.SetDocument(L"<r><i/><i><n>1</n></i><j/><i><n>2</n><n>3</n></i></r>"));
    const auto found = [&document](const wchar_t* path)
    {
        EXPECT_TRUE(document.FindElement(L"/r/j"));
        const bool isFound = document.FindElement(path);
        EXPECT_EQ(document.GetElementPath() == L"/r/j", !isFound);
        return std::wstring(document.GetElementPath());
    };
    ExpectRows<const wchar_t*, std::wstring>({
        {L"/r", L"/r"}, {L"/r/i", L"/r/i[1]"}, {L"/R/I[3]/N[2]", L"/r/i[3]/n[2]"}, {L"i/n", L"/r/i[3]/n[1]"},
        {L"i[2]/n", L"/r/i[2]/n"},
    }, found);
    for (const wchar_t* path : {L"/r/i[1]/n", L"/r/i/n", L"/r/i[4]", L"/r/i[0]", L"/r/i[]", L"/r/i[1", L"/r/i[1]n",
                                L"/r/i[4294967297]", L"/r/", L"//r", L"/", L"", L"j", L"i="})
        EXPECT_EQ(found(path), L"/r/j") << path;
}

TEST(ZVXMLRead, FindsNodesWithTheirContent)
{
    using enum ZVXMLNodeType;
    ZVXMLDocument document;
    document.SetDocument(L"<!DOCTYPE a>1&amp;2<!--c--><?d e?><![CDATA[<f>&amp;]]> <a>g<!--no--></a></h>");
    const std::pair<ZVXMLNodeType, const wchar_t*> nodes[] = {
        {DocumentType, L"<!DOCTYPE a>"}, {Text, L"1&2"}, {Comment, L"c"}, {ProcessingInstruction, L"d e"},
        {CDATASection, L"<f>&amp;"}, {WhiteSpace, L" "}, {Element, L"g"}, {UnpairedEndTag, L"h"}, {EndOfText, L"h"},
    };
    for (const auto& [type, content] : nodes)
    {
        EXPECT_EQ(document.FindNode(255), type);
        EXPECT_STREQ(document.GetText(), content);
    }
    EXPECT_TRUE(document.EnterElement());
    EXPECT_EQ(document.FindNode(static_cast<int32_t>(Comment)), Comment);
}
}
