#include "core/xml/ZVXMLDocument.h"

#include <gtest/gtest.h>
#include <string>

namespace
{
TEST(ZVXMLRead, TextOfAnElement)
{
    const struct
    {
        const wchar_t* Text;
        const wchar_t* Expected;
    } rows[] = {
        {L"<a>x &amp; y</a>",                    L"x & y"              },
        {L"<a>&</a>",                            L"&"                  },
        {L"<a>&none; &#65;&#x42;&#x1F600;</a>",  L"&none; AB\U0001F600"},
        {L"<a> \t\r\n</a>",                      L" \t\r\n"            },
        {L"<a>1&lt;<![CDATA[<b>&amp;]]>2</a>",   L"1<<b>&amp;2"        },
        {L"<a> <![CDATA[1]]> <![CDATA[2]]></a>", L" 1 2"               },
        {L"<a><![CDATA[x]]]]></a>",              L"x]]"                },
        {L"<a><![CDATA[]]></a>",                 L""                   },
        {L"<a>1<![C]]>2</a>",                    L"12"                 },
        {L"<a>1<!--x--><?y?>2</a>",              L"12"                 },
        {L"<a>1<b/></a>",                        L""                   },
        {L"<a/>",                                L""                   },
        {L"<a>1",                                L"1"                  },
    };
    for (const auto& row : rows)
    {
        ZVXMLDocument document;
        document.SetDocument(row.Text);
        document.FindElement();
        EXPECT_STREQ(document.GetText(), row.Expected) << row.Text;
    }
}

TEST(ZVXMLRead, KeepsANulInAText)
{
    ZVString text;
    text.Append(L"<a b=\"x\0y\">1\0<!---->2</a>", 25);
    ZVXMLDocument document;
    EXPECT_TRUE(document.SetDocument(text));
    document.FindElement(L"a");
    EXPECT_EQ(document.GetText().GetLength(), 3);
    EXPECT_EQ(document.GetAttribute(L"b").GetLength(), 3);
}

TEST(ZVXMLRead, ValueOfAnAttribute)
{
    const struct
    {
        uint32_t Flags;
        const wchar_t* Text;
        const wchar_t* Expected;  // of x
    } rows[] = {
        {0,                        L"<a y='1' x=\"2\"/>",            L"2"     },
        {0,                        L"<a y=\"x='0'\" x='2'/>",        L"2"     },
        {0,                        L"<a xx=\"1\" x=\"2\" x=\"3\"/>", L"2"     },
        {0,                        L"<a\r\n\tx\t=\n\"1\"\r\n/>",     L"1"     },
        {0,                        L"<a x=1/2 y=3/>",                L"1/2"   },
        {0,                        L"<a y=3 x=1/>",                  L"1"     },
        {0,                        L"<a x=1>t</a>",                  L"1"     },
        {0,                        L"<a y x=\"1\"/>",                L"1"     },
        {0,                        L"<a x y=\"1\"/>",                L""      },
        {0,                        L"<a x=\"\" y=\"1\"/>",           L""      },
        {0,                        L"<a \"x\" = x=\"1\"/>",          L""      },
        {0,                        L"<a \"junk\" x=\"1\"/>",         L"1"     },
        {0,                        L"<a y=\"1\"x=\"2\"/>",           L"2"     },
        {0,                        L"<a y=1' x='2 x=\"3\"/>",        L"3"     },
        {0,                        L"<a x=\"1>2/>\">t</a>",          L"1>2/>" },
        {0,                        L"<a x=\"&lt;&quot;'&#65;&\"/>",  L"<\"'A&"},
        {0,                        L"<a X=\"1\"/>",                  L""      },
        {ZVXMLDocument::FoldNames, L"<a X=\"1\"/>",                  L"1"     },
        {0,                        L"<ax=\"1\"/>",                   L""      },
        {0,                        L"<a/>x=\"1\"",                   L""      },
    };
    for (const auto& row : rows)
    {
        ZVXMLDocument document(row.Flags);
        document.SetDocument(row.Text);
        document.FindElement();
        EXPECT_STREQ(document.GetAttribute(L"x"), row.Expected) << row.Text;
    }
}

TEST(ZVXMLRead, FindsByPath)
{
    const struct
    {
        const wchar_t* Path;
        const wchar_t* Found;  // null when there is no such element
    } rows[] = {
        {L"/r",               L"/r"          },
        {L"/r/i",             L"/r/i[1]"     },
        {L"/r/i[2]/n",        L"/r/i[2]/n"   },
        {L"/R/I[3]/N[2]",     L"/r/i[3]/n[2]"},
        {L"i",                L"/r/i[3]"     },
        {L"i/n",              L"/r/i[3]/n[1]"},
        {L"i[2]/n",           L"/r/i[2]/n"   },
        {L"/r/i[1]/n",        nullptr        },
        {L"/r/i/n",           nullptr        },
        {L"/r/i[4]",          nullptr        },
        {L"/r/i[0]",          nullptr        },
        {L"/r/i[]",           nullptr        },
        {L"/r/i[1",           nullptr        },
        {L"/r/i[1]n",         nullptr        },
        {L"/r/i[4294967297]", nullptr        },
        {L"/r/",              nullptr        },
        {L"//r",              nullptr        },
        {L"/",                nullptr        },
        {L"",                 nullptr        },
        {L"j",                nullptr        },
        {L"i=",               nullptr        },
    };
    ZVXMLDocument document(ZVXMLDocument::FoldNames);
    ASSERT_TRUE(document.SetDocument(L"<r><i/><i><n>1</n></i><j/><i><n>2</n><n>3</n></i></r>"));
    for (const auto& row : rows)
    {
        ASSERT_TRUE(document.FindElement(L"/r/j"));
        EXPECT_EQ(document.FindElement(row.Path), row.Found != nullptr) << row.Path;
        EXPECT_STREQ(document.GetElementPath(), row.Found != nullptr ? row.Found : L"/r/j") << row.Path;
    }
}

TEST(ZVXMLRead, WalksIntoAndOutOfElements)
{
    ZVXMLDocument document;
    ASSERT_TRUE(document.SetDocument(L"<r><a><x/><y><z/></y></a><b/><a/></r>"));
    EXPECT_FALSE(document.EnterElement());
    EXPECT_FALSE(document.FindChildElement());
    EXPECT_TRUE(document.FindElement() && document.EnterElement() && document.FindElement(L"a"));
    EXPECT_TRUE(document.FindChildElement(L"y"));
    EXPECT_STREQ(document.GetChildElementName(), L"y");
    EXPECT_FALSE(document.FindChildElement(L"x"));
    EXPECT_TRUE(document.EnterElement());
    EXPECT_STREQ(document.GetElementPath(), L"/r/a[1]/y");
    EXPECT_TRUE(document.FindChildElement());

    EXPECT_TRUE(document.LeaveElement());
    EXPECT_STREQ(document.GetElementName(), L"a");
    EXPECT_STREQ(document.GetChildElementName(), L"y");
    EXPECT_TRUE(document.FindElement(L"a"));
    EXPECT_STREQ(document.GetElementPath(), L"/r/a[2]");
    EXPECT_STREQ(document.GetChildElementName(), L"");
    EXPECT_FALSE(document.FindElement(L"a"));
    EXPECT_FALSE(document.FindElement());
    EXPECT_STREQ(document.GetElementPath(), L"/r/a[2]");
    document.ResetMainPosition();
    EXPECT_STREQ(document.GetElementPath(), L"/r");
    EXPECT_TRUE(document.FindElement(L"b"));
    EXPECT_TRUE(document.LeaveElement());
    EXPECT_STREQ(document.GetChildElementName(), L"b");
    EXPECT_FALSE(document.LeaveElement());

    EXPECT_TRUE(document.FindChildElement(L"/r/a/y/z"));
    EXPECT_STREQ(document.GetElementPath(), L"/r/a[1]/y");
    EXPECT_STREQ(document.GetChildElementName(), L"z");
    EXPECT_FALSE(document.FindChildElement(L"/r"));
    EXPECT_STREQ(document.GetChildElementName(), L"z");
}

TEST(ZVXMLRead, HasNothingToTellWithoutAnElement)
{
    ZVXMLDocument document;
    document.SetDocument(L"<a b='1'>2</a>");
    EXPECT_STREQ(document.GetElementName(), L"");
    EXPECT_STREQ(document.GetElementPath(), L"");
    EXPECT_STREQ(document.GetText(), L"");
    EXPECT_STREQ(document.GetChildText(), L"");
    EXPECT_STREQ(document.GetAttribute(L"b"), L"");
    document.FindElement();
    EXPECT_STREQ(document.GetAttribute(nullptr), L"");
    EXPECT_STREQ(document.GetChildAttribute(L"b"), L"");
}

TEST(ZVXMLRead, FindsNodesWithTheirContent)
{
    using enum ZVXMLNodeType;
    const struct
    {
        ZVXMLNodeType Type;
        const wchar_t* Content;
    } rows[] = {
        {DocumentType,          L"<!DOCTYPE a>"},
        {Text,                  L"1&2"         },
        {Comment,               L"c"           },
        {ProcessingInstruction, L"d e"         },
        {CDATASection,          L"<f>&amp;"    },
        {WhiteSpace,            L" "           },
        {Element,               L"g"           },
        {UnpairedEndTag,        L"h"           },
    };
    ZVXMLDocument document;
    document.SetDocument(L"<!DOCTYPE a>1&amp;2<!--c--><?d e?><![CDATA[<f>&amp;]]> <a>g<!--no--></a></h>");
    for (const auto& row : rows)
    {
        EXPECT_EQ(document.FindNode(255), row.Type);
        EXPECT_STREQ(document.GetText(), row.Content);
    }
    EXPECT_EQ(document.FindNode(255), EndOfText);
    EXPECT_STREQ(document.GetText(), L"h");
    document.ResetPosition();
    EXPECT_EQ(document.FindNode(static_cast<int32_t>(UnpairedEndTag)), UnpairedEndTag);
    EXPECT_STREQ(document.GetElementName(), L"a");
    document.EnterElement();
    EXPECT_EQ(document.FindNode(static_cast<int32_t>(Comment)), Comment);
    EXPECT_STREQ(document.GetText(), L"no");
    EXPECT_EQ(document.FindNode(255), EndOfText);
}
}
