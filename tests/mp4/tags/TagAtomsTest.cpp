#include "TagBytes.h"
#include "mp4/tags/CTagAtomBase.h"

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
    {"\xa9nam", "\0text"s,             NoValue     },
    {"gnre",    "\x00\x01"s,           L"Blues"    },
    {"gnre",    "\xff\x94",            L"SynthPop" },
    {"gnre",    "\x00\x00"s,           NoValue     },
    {"gnre",    "\x00\x95"s,           NoValue     },
    {"\xa9gen", "(17)",                L"Rock"     },
    {"\xa9gen", "(\xef\xbc\x98)",      L"Jazz"     }, // a full-width 8
    {"\xa9gen", "(148)",               L"(148)"    },
    {"trkn",    "\0\0\0\5\0\14\0\0"s,  L"5/12"     },
    {"trkn",    "\0\0\0\5\0\xfe\0\0"s, L"5/254"    },
    {"trkn",    "\0\0\0\5\0\xff\0\0"s, L"5"        },
    {"trkn",    "\0\0\0\0\0\14\0\0"s,  NoValue     },
    {"disk",    "\0\0\0\3"s,           L"3/1"      },
    {"disk",    "\0\0\3"s,             L"1/1"      },
    {"disk",    "",                    NoValue     },
    {"tmpo",    "\1\2\3"s,             L"258"      },
    {"rtng",    "\xff\1"s,             L"255"      },
    {"stik",    "",                    NoValue     },
    {"cpil",    "\2",                  NoValue     },
    {"cprt",    "x",                   L"x"        },
    {"tves",    "\0\0\0\1"s,           NoValue     },
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
