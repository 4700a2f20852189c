#include "TagBytes.h"
#include "mp4/factory/CAtomFactory.h"
#include "mp4/tags/CStringTagAtomBase.h"

#include <gtest/gtest.h>

using namespace AtomBytes;
using namespace std::string_literals;

namespace
{
constexpr wchar_t NoValue[] = L"(none)";

// The value of the tag that a list has.
ZVString GetValue(const Tree& tree, const char* type)
{
    const auto* const tag = tree.Find<CTagAtomBase>({type});
    ZVString value = NoValue;
    return tag != nullptr && tag->GetValue(value) ? value : ZVString(NoValue);
}

struct ValueCase
{
    const char* Type;
    Bytes Value;
    const wchar_t* Expected;
};

const ValueCase ValueCases[] = {
    {"\xa9nam", "Caf\xc3\xa9",         L"Caf\u00e9"},
    {"\xa9nam", "",                    NoValue     },
    {"\xa9nam", "\0text"s,             NoValue     },
    {"gnre",    "\x00\x01"s,           L"Blues"    },
    {"gnre",    "\xff\x94",            L"SynthPop" },
    {"gnre",    "\x00\x00"s,           NoValue     },
    {"gnre",    "\x00\x95"s,           NoValue     },
    {"gnre",    "\x05",                NoValue     },
    {"\xa9gen", "(17)",                L"Rock"     },
    {"\xa9gen", "(0)",                 L"Blues"    },
    {"\xa9gen", "(007)",               L"Hip-Hop"  },
    {"\xa9gen", "(\xef\xbc\x98)",      L"Jazz"     }, // a full-width 8
    {"\xa9gen", "(147)",               L"SynthPop" },
    {"\xa9gen", "(148)",               L"(148)"    },
    {"\xa9gen", "(0017)",              L"(0017)"   },
    {"\xa9gen", "()",                  L"()"       },
    {"\xa9gen", "(",                   L"("        },
    {"\xa9gen", "(17) live",           L"(17) live"},
    {"trkn",    "\0\0\0\5\0\14\0\0"s,  L"5/12"     },
    {"trkn",    "\0\0\0\5\0\0\0\0"s,   L"5"        },
    {"trkn",    "\0\0\0\5\0\xfe\0\0"s, L"5/254"    },
    {"trkn",    "\0\0\0\5\0\xff\0\0"s, L"5"        },
    {"trkn",    "\0\0\0\0\0\14\0\0"s,  NoValue     },
    {"trkn",    "\0\0\1\1\0\14"s,      L"257/12"   },
    {"disk",    "\0\0\0\3"s,           L"3/1"      },
    {"disk",    "\0\0\0\3\7"s,         L"3/1"      },
    {"disk",    "\0\0\3"s,             L"1/1"      },
    {"disk",    "",                    NoValue     },
    {"tmpo",    "\1\2\3"s,             L"258"      },
    {"tmpo",    "\1",                  NoValue     },
    {"\xa9mvi", "\0\0"s,               NoValue     },
    {"rtng",    "\xff\1"s,             L"255"      },
    {"stik",    "\0"s,                 L"0"        },
    {"stik",    "",                    NoValue     },
    {"cpil",    "\1",                  L"1"        },
    {"pgap",    "\0"s,                 L"0"        },
    {"cpil",    "\2",                  NoValue     },
    {"tves",    "\0\0\0\1"s,           NoValue     },
    {"covr",    "picture",             NoValue     },
};
}

TEST(TagAtoms, TellWhatTheirBytesMean)
{
    for (const ValueCase& row : ValueCases)
    {
        const Tree tree(Atom("ilst", Tag(row.Type, row.Value)));
        EXPECT_EQ(GetValue(tree, row.Type), row.Expected) << row.Type << " " << testing::PrintToString(row.Value);
    }
}

TEST(TagAtoms, TakeTheFirstDataWithAValue)
{
    const Tree tree(Atom("ilst", Atom("\xa9nam", Atom("free", "data") + Data("") + Data("a") + Data("b"))));
    EXPECT_EQ(GetValue(tree, "\xa9nam"), L"a");
}

TEST(TagAtoms, AreWrittenBackAsTheyStood)
{
    Bytes tags;
    // Data that is too short for its header too.
    for (size_t size = 0; size < 10; ++size)
        tags += Atom("\xa9nam", Atom("data", Bytes(size, 'x')));
    tags += Atom("\xa9nam") + FreeForm("a", "b") + Atom("----", Atom("name", "abc") + Atom("mean")) + Tag("tves", "\0\1"s);
    const Bytes list = Atom("ilst", tags);
    const Tree tree(list);
    EXPECT_EQ(tree.Message, L"");
    EXPECT_EQ(tree.Write(), list);
}

// The value that stays in the file is neither read into memory nor taken for an empty one.
TEST(TagAtoms, DoNotTakeHugeBytesForText)
{
    const Tree tree(Atom("ilst", Tag("\xa9lyr", Bytes(CAtomBytes::MaximumInMemory + 1, 'x'))));
    EXPECT_EQ(GetValue(tree, "\xa9lyr"), NoValue);
}

TEST(TagAtoms, HaveTheirClassInAListAlone)
{
    const struct
    {
        const char (&Type)[5];
        const char (&Parent)[5];
        const char* Class;
    } rows[] = {
        {"cprt", "ilst", "CCopyrightAtom2" },
        {"cprt", "udta", "CCopyrightAtom"  },
        {"cprt", "moov", "CFREEAtom"       },
        {"trkn", "moov", "CFREEAtom"       },
        {"abcd", "ilst", "MetadataItemAtom"},
        {"free", "ilst", "CFREEAtom"       },
        {"----", "moov", "C4DashesAtom"    },
        {"data", "ilst", "CTagDataAtom"    },
        {"disk", "ilst", "CDiskNumAtom"    },
    };
    for (const auto& row : rows)
        EXPECT_STREQ(CAtomFactory::FindClass(FourCC(row.Type), FourCC(row.Parent)).Name, row.Class) << row.Type;
}

TEST(TagAtoms, HaveNoLimitForLyrics)
{
    const Tree tree(Atom("ilst", Tag("\xa9lyr", "a") + Tag("\xa9nam", "b")));
    EXPECT_FALSE(tree.Find<CStringTagAtomBase>({"\xa9lyr"})->HasLengthLimit());
    EXPECT_TRUE(tree.Find<CStringTagAtomBase>({"\xa9nam"})->HasLengthLimit());
}
