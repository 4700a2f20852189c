#include "core/xml/XMLOutline.h"

#include <gtest/gtest.h>
#include <random>

namespace
{
// After each change a new parse must see what the moved index sees.
void ExpectIndexFitsText(ZVXMLDocument& document)
{
    ZVXMLDocument again;
    again.SetDocument(document.GetDocument());
    EXPECT_EQ(XMLOutline(document), XMLOutline(again)) << document.GetDocument().GetText();
}

TEST(ZVXMLEdit, AddsAnElementInItsPlace)
{
    // clang-format off
    const struct
    {
        const char* Name;
        const wchar_t* Text;
        const wchar_t* Path;
        const wchar_t* Value;
        uint32_t Flags;
        const wchar_t* Expected;
    } rows[] = {
        {"to an empty document", L"", nullptr, L"v", 0, L"<n>v</n>\r\n"},
        {"behind a declaration", L"<?xml?>\r\n", nullptr, L"v", 0, L"<?xml?>\r\n<n>v</n>\r\n"},
        {"behind the current one", L"<r><a/><b/></r>", L"/r/a", L"v", 0, L"<r><a/><n>v</n>\r\n<b/></r>"},
        {"behind its line break", L"<r>\n<a>1</a>\r\n<b/>\n</r>", L"/r/a", L"v", 0, L"<r>\n<a>1</a>\r\n<n>v</n>\r\n<b/>\n</r>"},
        {"behind a lone line feed", L"<r><a/>\n<b/></r>", L"/r/a", L"v", 0, L"<r><a/>\n<n>v</n>\r\n<b/></r>"},
        {"in front", L"<r><a/><b/></r>", L"/r/b", L"v", 0x2000, L"<r><a/><n>v</n>\r\n<b/></r>"},
        {"in front of the first", L"<r><a/></r>", L"/r/a", L"v", 0x2000, L"<r><n>v</n>\r\n<a/></r>"},
        {"without a line break", L"<r><a/></r>", L"/r/a", L"v", 2, L"<r><a/><n>v</n></r>"},
        {"escaped", L"<r><a/></r>", L"/r/a", L"<&>\"'\x2", 2, L"<r><a/><n>&lt;&amp;&gt;\"'?</n></r>"},
        {"as CDATA", L"<r><a/></r>", L"/r/a", L"<]]>", 3, L"<r><a/><n><![CDATA[<]]]]><![CDATA[>]]></n></r>"},
        {"with no value", L"<r><a/></r>", L"/r/a", L"", 1, L"<r><a/><n/>\r\n</r>"},
        {"with a blank in the tag", L"<r><a/></r>", L"/r/a", L"", 6, L"<r><a/><n /></r>"},
        {"without an end tag", L"<r><a/></r>", L"/r/a", L"v", 0x10, L"<r><a/><n/>\r\n</r>"},
        {"below an empty tag", L"<r x=\"/\" />", L"/r", L"v", 0x4000, L"<r x=\"/\">\r\n<n>v</n>\r\n</r>"},
        {"below a tag with slashes", L"<r ///>", L"/r", L"v", 0x4002, L"<r>\r\n<n>v</n></r>"},
        {"below an element with nothing in it", L"<r></r>", L"/r", L"v", 0x4000, L"<r>\r\n<n>v</n>\r\n</r>"},
        {"below an element with text", L"<r>t</r>", L"/r", L"v", 0x4000, L"<r>t<n>v</n>\r\n</r>"},
        {"below as the last", L"<r>\r\n<a/>\r\n</r>", L"/r", L"v", 0x4000, L"<r>\r\n<a/>\r\n<n>v</n>\r\n</r>"},
        {"below as the first", L"<r>\r\n<a/>\r\n</r>", L"/r", L"v", 0x6000, L"<r>\r\n<n>v</n>\r\n<a/>\r\n</r>"},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        ZVXMLDocument document;
        document.SetDocument(row.Text);
        ASSERT_TRUE(row.Path == nullptr || document.FindElement(row.Path));
        EXPECT_TRUE(document.AddElement(L"n", row.Value, row.Flags));
        EXPECT_STREQ(document.GetDocument(), row.Expected);
        EXPECT_STREQ((row.Flags & 0x4000) != 0 ? document.GetChildElementName() : document.GetElementName(), L"n");
        EXPECT_TRUE(document.IsWellFormed());
        ExpectIndexFitsText(document);
    }
}

TEST(ZVXMLEdit, SetsAnAttribute)
{
    const struct
    {
        const wchar_t* Text;
        const wchar_t* Expected;
    } rows[] = {
        {L"<a/>",                  L"<a x=\"1\"/>"          },
        {L"<a />",                 L"<a x=\"1\" />"         },
        {L"<a><b/></a>",           L"<a x=\"1\"><b/></a>"   },
        {L"<a y='2'/>",            L"<a y='2' x=\"1\"/>"    },
        {L"<a x='old'/>",          L"<a x='1'/>"            },
        {L"<a x = \"\" y=\"2\"/>", L"<a x = \"1\" y=\"2\"/>"},
        {L"<a x=old/>",            L"<a x=\"1\"/>"          },
        {L"<a x y=\"2\"/>",        L"<a x=\"1\" y=\"2\"/>"  },
        {L"<a y= />",              L"<a y= \"\" x=\"1\"/>"  },
        {L"<a y=2/ ></a>",         L"<a y=2/ x=\"1\" ></a>" },
    };
    for (const auto& row : rows)
    {
        ZVXMLDocument document;
        document.SetDocument(row.Text);
        document.FindElement();
        EXPECT_TRUE(document.SetAttribute(L"x", L"1"));
        EXPECT_STREQ(document.GetDocument(), row.Expected);
        EXPECT_STREQ(document.GetAttribute(L"x"), L"1");
        ExpectIndexFitsText(document);
    }
}

TEST(ZVXMLEdit, SetsTheContent)
{
    const struct
    {
        const wchar_t* Text;
        const wchar_t* Content;
        const wchar_t* Expected;
    } rows[] = {
        {L"<r><a/><b/></r>",                        L"t", L"<r><a>t</a><b/></r>"         },
        {L"<r><a y='/' //><b/></r>",                L"<", L"<r><a y='/'>&lt;</a><b/></r>"},
        {L"<r><a/><b/></r>",                        L"",  L"<r><a/><b/></r>"             },
        {L"<r><a>old</a ><b/></r>",                 L"",  L"<r><a></a ><b/></r>"         },
        {L"<r><a>1<c><d/></c><e>2</e></a><b/></r>", L"t", L"<r><a>t</a><b/></r>"         },
    };
    for (const auto& row : rows)
    {
        ZVXMLDocument document;
        document.SetDocument(row.Text);
        document.FindElement(L"/r/a");
        document.FindChildElement();
        EXPECT_TRUE(document.SetText(row.Content));
        EXPECT_STREQ(document.GetDocument(), row.Expected);
        EXPECT_STREQ(document.GetText(), row.Content);
        EXPECT_STREQ(document.GetChildElementName(), L"");
        ExpectIndexFitsText(document);
    }
}

TEST(ZVXMLEdit, RemovesAnElementWithItsLineBreak)
{
    const struct
    {
        const wchar_t* Text;
        const wchar_t* Path;
        const wchar_t* Expected;
        const wchar_t* Position;
    } rows[] = {
        {L"<r>\r\n<a/>\r\n<b/>\n</r>",      L"/r/a", L"<r>\r\n<b/>\n</r>",   L"/r"  },
        {L"<r>\r\n<a/>\r\n<b/>\n</r>",      L"/r/b", L"<r>\r\n<a/>\r\n</r>", L"/r/a"},
        {L"<r><a/><b><c/></b>\n\n<d/></r>", L"/r/b", L"<r><a/>\n<d/></r>",   L"/r/a"},
        {L"<r><a/></r>",                    L"/r/a", L"<r></r>",             L"/r"  },
        {L"<a/>\r\n",                       L"/a",   L"",                    L""    },
    };
    for (const auto& row : rows)
    {
        ZVXMLDocument document;
        document.SetDocument(row.Text);
        document.FindElement(row.Path);
        EXPECT_TRUE(document.RemoveElement());
        EXPECT_STREQ(document.GetDocument(), row.Expected);
        EXPECT_STREQ(document.GetElementPath(), row.Position);
        ExpectIndexFitsText(document);
    }
}

TEST(ZVXMLEdit, MendsADocumentOfTwoRoots)
{
    ZVXMLDocument document;
    EXPECT_FALSE(document.SetDocument(L"<a><b/></a><c/>"));
    document.FindElement(L"c");
    EXPECT_TRUE(document.RemoveElement());
    EXPECT_TRUE(document.IsWellFormed());
    EXPECT_TRUE(document.RemoveElement());
    EXPECT_FALSE(document.IsWellFormed());
}

TEST(ZVXMLEdit, HasNoChildPositionLeftInARemovedElement)
{
    ZVXMLDocument document;
    document.SetDocument(L"<r><a/><b><c/></b><d/></r>");
    EXPECT_TRUE(document.FindElement(L"/r/b") && document.FindChildElement());
    EXPECT_TRUE(document.RemoveElement());
    EXPECT_STREQ(document.GetElementPath(), L"/r/a");
    EXPECT_FALSE(document.RemoveChildElement());
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
    {
        EXPECT_FALSE(document.AddElement(name, L"v"));
        EXPECT_FALSE(document.SetAttribute(name, L"v"));
    }
    EXPECT_FALSE(document.AddElement(L"1", L"v"));
    EXPECT_FALSE(document.SetAttribute(L"a=b", L"v") || document.SetAttribute(L"a'", L"v"));
    EXPECT_STREQ(document.GetDocument(), Text);
    EXPECT_STREQ(document.GetElementPath(), L"/a");
}

TEST(ZVXMLEdit, KeepsEveryValue)
{
    for (const wchar_t* value : {L"plain", L"<a>&amp;</a>", L"&", L"&#65;", L"]]>", L"]]]]>>]]>", L"]", L"]]", L"\"'='>", L" ",
                                 L" \t\r\n ", L"\xffff", L"\U0001F600", L"\x1", L"<![CDATA[x]]>", L"-->", L"?>", L""})
    {
        ZVXMLDocument written;
        EXPECT_TRUE(written.AddElement(L"r", L"") && written.SetAttribute(L"x", value));
        EXPECT_TRUE(written.AddChildElement(L"a", value) && written.SetChildAttribute(L"x", L"old"));
        EXPECT_TRUE(written.SetChildAttribute(L"x", value) && written.AddChildElement(L"b", value, ZVXMLDocument::ValueAsCDATA));
        EXPECT_TRUE(written.AddChildElement(L"c", L"old") && written.SetChildText(value, true));
        ZVXMLDocument read;
        ASSERT_TRUE(read.SetDocument(written.GetDocument())) << written.GetDocument().GetText();
        EXPECT_TRUE(read.FindElement(L"r") && read.FindChildElement(L"a"));
        EXPECT_STREQ(read.GetAttribute(L"x"), value);
        EXPECT_STREQ(read.GetChildAttribute(L"x"), value);
        EXPECT_STREQ(read.GetChildText(), value);
        EXPECT_TRUE(read.FindChildElement(L"b"));
        EXPECT_STREQ(read.GetChildText(), value);
        EXPECT_TRUE(read.FindChildElement(L"c"));
        EXPECT_STREQ(read.GetChildText(), value);
    }
}

TEST(ZVXMLEdit, LeavesTheCallersTextAlone)
{
    const ZVString text = L"<a>1</a>";
    ZVXMLDocument document;
    document.SetDocument(text);
    EXPECT_EQ(document.GetDocument().GetText(), text.GetText());
    document.FindElement();
    EXPECT_TRUE(document.SetAttribute(L"whole", document.GetDocument()));
    EXPECT_STREQ(text, L"<a>1</a>");
    EXPECT_STREQ(document.GetAttribute(L"whole"), text);
}

TEST(ZVXMLEdit, LosesSavedPositionsWithTheirElements)
{
    ZVXMLDocument document;
    document.SetDocument(L"<r><a><b/></a><c/></r>");
    document.SavePosition(L"start");
    document.FindElement(L"/r/a/b");
    document.SavePosition(L"b");
    document.FindElement(L"/r/c");
    document.SavePosition(L"c");
    document.FindElement(L"/r/a");
    document.SetText(L"t");
    document.AddChildElement(L"new", L"");
    EXPECT_FALSE(document.RestorePosition(L"b"));
    EXPECT_TRUE(document.RestorePosition(L"c"));
    EXPECT_STREQ(document.GetElementPath(), L"/r/c");
    EXPECT_TRUE(document.RestorePosition(L"start"));
    EXPECT_STREQ(document.GetElementPath(), L"");
}

// Goes to an element by a random road from the root.
void GoSomewhere(ZVXMLDocument& document, std::mt19937& random)
{
    document.ResetPosition();
    document.FindElement();
    for (auto step = random() % 12; step > 0; --step)
    {
        if (random() % 2 == 0 && document.FindChildElement())
            document.EnterElement();
        else if (!document.FindElement())
            document.FindElement(L"a[1]");
    }
}

TEST(ZVXMLEdit, KeepsTheIndexThroughLongRowsOfChanges)
{
    constexpr uint32_t AddFlags[] = {0, 1, 2, 4, 0x10, 0x2000, 0x2002, 0x4000, 0x4001, 0x6000};
    constexpr const wchar_t* Values[] = {L"", L"1", L"<\">&'", L"]]>]]>", L"a longer value that moves the rest", L" "};
    std::mt19937 random(7);
    ZVXMLDocument document;
    ASSERT_TRUE(document.SetDocument(
        L"<?xml?>\r\n<a x='1'>\r\n<a>t</a>\r\n<b x=\"2\" />text<a><b><!-- <c> --><c/></b></a></a>\n<!-- end -->"));
    for (int change = 0; change < 600 && !HasFailure(); ++change)
    {
        GoSomewhere(document, random);
        const bool isRoot = document.GetElementPath() == L"/a";
        const wchar_t* value = Values[random() % std::size(Values)];
        const uint32_t flags = AddFlags[random() % std::size(AddFlags)];
        switch (random() % 6)
        {
        case 0:
        case 1:
        case 2:
            EXPECT_TRUE(document.AddElement(random() % 2 == 0 ? L"a" : L"c", value, isRoot ? flags | 0x4000 : flags));
            break;
        case 3:
            EXPECT_TRUE(document.SetAttribute(random() % 3 == 0 ? L"x" : L"y", value));
            break;
        case 4:
            EXPECT_TRUE(isRoot || document.SetText(value, random() % 2 == 0));
            break;
        default:
            EXPECT_TRUE(isRoot || random() % 2 == 0 || document.RemoveElement());
            break;
        }
        EXPECT_TRUE(document.IsWellFormed());
        ExpectIndexFitsText(document);
    }
}
}
