#include "mp4/tags/CILSTAtom.h"

#include "TagBytes.h"

#include <gtest/gtest.h>

using namespace AtomBytes;
using namespace std::string_literals;

class CILSTAtomTest : public TagTest
{
protected:
    static Values GetTags(const Bytes& tags)
    {
        ZVPropertyMap map;
        const Tree tree(Atom("ilst", tags));
        tree.Find<CILSTAtom>()->GetTags(map);
        return GetValues(map);
    }
};

TEST_F(CILSTAtomTest, NamesFreeFormTags)
{
    const struct
    {
        const char* Name;
        const char* Value;
        Values Expected;
    } rows[] = {
        {"REPLAYGAIN_track_gain", "-7 dB",                {L"Replay Gain=-7 dB"}},
        {"media",                 "CD",                   {L"Release Medium=CD"}},
        {"My own",                "x",                    {L"My own=x"}         },
        {"Rating",                "10",                   {L"Rating=5"}         },
        {"RATING",                "7.5",                  {L"Rating=4"}         },
        {"RATING",                "none",                 {L"Rating=0"}         },
        {"RATING",                "-10",                  {L"Rating=-4"}        },
        {"RATING",                "99999999999999999999", {L"Rating=500000"}    },
        {"empty",                 "",                     {L"empty="}           },
    };
    for (const auto& row : rows)
        EXPECT_EQ(GetTags(FreeForm(row.Name, row.Value)), row.Expected) << row.Name << " " << row.Value;
}

TEST_F(CILSTAtomTest, SkipsFreeFormTagsThatLackAPart)
{
    const Bytes mean = FullAtom("mean", "m");
    const Bytes name = FullAtom("name", "n");
    EXPECT_EQ(GetTags(Atom("----", name + Data("x"))), Values());
    EXPECT_EQ(GetTags(Atom("----", mean + Data("x"))), Values());
    EXPECT_EQ(GetTags(Atom("----", mean + name)), Values());
    EXPECT_EQ(GetTags(Atom("----", mean + Atom("name", "abc") + Data("x"))), Values());
    EXPECT_EQ(GetTags(Atom("----", Atom("mean") + name + Data("x"))), Values({L"n=x"}));
}
