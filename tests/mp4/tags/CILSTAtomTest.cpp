#include "mp4/tags/CILSTAtom.h"

#include "TagBytes.h"
#include "mp4/movie/CMOOVAtom.h"
#include "mp4/tags/CCoverartAtom.h"
#include "mp4/tags/TagNames.h"
#include "system/filename/ZVFilename.h"

#include <gtest/gtest.h>

using namespace AtomBytes;
using namespace std::string_literals;

class CILSTAtomTest : public TagTest
{
protected:
    // What a list sets in a map that has some values already.
    Values GetTags(const Bytes& tags, const wchar_t* oldKey = nullptr)
    {
        ZVPropertyMap map;
        if (oldKey != nullptr)
            map.SetString(oldKey, L"old");
        const Tree tree(Atom("ilst", tags));
        m_wasAnySet = tree.Find<CILSTAtom>()->GetTags(map);
        return GetValues(map);
    }

    bool m_wasAnySet = false;
};

TEST_F(CILSTAtomTest, NamesEachTag)
{
    const auto Signed = [](const Bytes& type) { return "\xa9" + type; };
    // clang-format off
    const std::tuple<Bytes, Bytes, Values> rows[] = {
        {Signed("nam"), "x", {L"Name=x"}},
        {Signed("ART"), "x", {L"Artist=x"}},
        {"aART", "x", {L"Album Artist=x"}},
        {"sonm", "x", {L"Title Sort=x", L"Title Sort Order=x"}},
        {"soar", "x", {L"Artist Sort=x", L"Artist Sort Order=x"}},
        {"soaa", "x", {L"Album Artist Sort=x", L"Album Artist Sort Order=x"}},
        {"soal", "x", {L"Album Sort=x", L"Album Sort Order=x"}},
        {"soco", "x", {L"Composer Sort=x", L"Composer Sort Order=x"}},
        {"sosn", "x", {L"Show Name Sort=x", L"Show Name Sort Order=x"}},
        {"gnre", "\0\1"s, {L"Genre=Blues"}},
        {"trkn", "\0\0\0\2\0\11"s, {L"Track #=2/9"}},
        {"disk", "\0\0\0\1\0\2"s, {L"Disc #=1/2"}},
        {Signed("mvi"), "\0\3"s, {L"Movement Number=3"}},
        {Signed("mvc"), "\0\4"s, {L"Movement Count=4"}},
        {"shwm", "\1", {L"Show Work Movement=1"}},
        {"tmpo", "\0\170"s, {L"BPM=120"}},
        {"cpil", "\0"s, {L"Compilation=0"}},
        {"rtng", "\4", {L"Rating=4"}},
        {"stik", "\12", {L"stik=10"}},
        {"pcst", "\1", {L"Podcast=1"}},
        {"pgap", "\1", {L"Gapless Playback=1"}},
        {"tves", "\0\0\0\3"s, {}},
        {"tvsn", "\0\0\0\3"s, {}},
        {"covr", "x", {}},
        {"abcd", "x", {}},
    };
    // clang-format on
    for (const auto& [type, value, expected] : rows)
    {
        EXPECT_EQ(GetTags(Tag(type, value)), expected) << type;
        EXPECT_EQ(m_wasAnySet, !expected.empty()) << type;
    }
}

TEST_F(CILSTAtomTest, LetsLaterTagsReplaceEarlierOnes)
{
    EXPECT_EQ(GetTags(Tag("\xa9gen", "Own") + Tag("gnre", "\0\1"s) + Tag("gnre", "\0\0"s), L"Genre"), Values({L"Genre=Blues"}));
}

TEST_F(CILSTAtomTest, KeepsACopyrightThatIsThere)
{
    EXPECT_EQ(GetTags(Tag("cprt", "a") + Tag("cprt", "b")), Values({L"Copyright=a"}));
    EXPECT_EQ(GetTags(Tag("cprt", "a"), L"copyright"), Values({L"copyright=old"}));
    EXPECT_FALSE(m_wasAnySet);
}

TEST_F(CILSTAtomTest, StoresADateAsItsNumber)
{
    const Bytes day = Number(SignedFourCC("day"), 4);
    EXPECT_EQ(GetTags(Tag(day, "2020-05-17T06:00:00Z")), Values({L"Date=43968.25"}));
    EXPECT_EQ(GetTags(Tag(day, "someday")), Values());
    EXPECT_FALSE(m_wasAnySet);
}

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

TEST(TagNames, HaveTheirAtomsInAnyCase)
{
    EXPECT_EQ(FindTagType(L"Name"), SignedFourCC("nam"));
    EXPECT_EQ(FindTagType(L"aLBUM artist"), FourCC("aART"));
    EXPECT_EQ(FindTagType(L"Season"), FourCC("tves"));
    EXPECT_EQ(FindTagType(L"Show Name Sort"), FourCC("sosn"));
    EXPECT_EQ(FindTagType(L"Rating"), 0u);
}
