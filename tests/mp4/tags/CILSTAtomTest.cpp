#include "mp4/tags/CILSTAtom.h"

#include "TagBytes.h"
#include "mp4/movie/CMOOVAtom.h"
#include "mp4/tags/CCoverartAtom.h"
#include "system/filename/ZVFilename.h"

#include <gtest/gtest.h>

using namespace AtomBytes;
using namespace std::string_literals;

class CILSTAtomTest : public TagTest
{
protected:
    // What a list sets in a map that has some values already.
    Values GetTags(const Bytes& tags, const Values& before = {})
    {
        ZVPropertyMap map;
        for (const auto& [key, value] : before)
            map.SetString(key.c_str(), value.c_str());
        const Tree tree(Atom("ilst", tags));
        m_wasAnySet = tree.Find<CILSTAtom>()->GetTags(map);
        return GetValues(map);
    }

    bool m_wasAnySet = false;
};

TEST_F(CILSTAtomTest, NamesTags)
{
    const Values expected = {
        {L"Name",                 L"a"  },
        {L"Track #",              L"2/9"},
        {L"Rating",               L"4"  },
        {L"Title Sort Order",     L"s"  },
        {L"Title Sort",           L"s"  },
        {L"Show Name Sort Order", L"t"  },
        {L"Show Name Sort",       L"t"  },
        {L"Number of Episodes",   L"12" },
    };
    EXPECT_EQ(GetTags(Tag("\xa9nam", "a") + Tag("trkn", "\0\0\0\2\0\11"s) + Tag("rtng", "\4") + Tag("sonm", "s") +
                      Tag("sosn", "t") + Tag("tven", "12") + Tag("tves", "\0\0\0\3"s) + Tag("covr", "x") + Tag("abcd", "x")),
              expected);
    EXPECT_TRUE(m_wasAnySet);
}

TEST_F(CILSTAtomTest, LetsLaterTagsReplaceEarlierOnes)
{
    EXPECT_EQ(GetTags(Tag("\xa9gen", "Own") + Tag("gnre", "\0\1"s) + Tag("gnre", "\0\0"s),
                      {
                          {L"Genre", L"old"}
    }),
              (Values {{L"Genre", L"Blues"}}));
    EXPECT_EQ(GetTags(Tag("gnre", "\0\1"s) + Tag("\xa9gen", "Own")), (Values {
                                                                         {L"Genre", L"Own"}
    }));
}

TEST_F(CILSTAtomTest, KeepsACopyrightThatIsThere)
{
    EXPECT_EQ(GetTags(Tag("cprt", "a") + Tag("cprt", "b")), (Values {
                                                                {L"Copyright", L"a"}
    }));
    EXPECT_EQ(GetTags(Tag("cprt", "a"),
                      {
                          {L"copyright", L"old"}
    }),
              (Values {{L"copyright", L"old"}}));
    EXPECT_FALSE(m_wasAnySet);
}

TEST_F(CILSTAtomTest, StoresADateAsItsNumber)
{
    EXPECT_EQ(GetTags(Tag("\xa9"
                          "day",
                          "2020-05-17T06:00:00Z")),
              (Values {
                  {L"Date", L"43968.25"}
    }));
    EXPECT_EQ(GetTags(Tag("\xa9"
                          "day",
                          "someday")),
              Values());
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
        {"REPLAYGAIN_track_gain", "-7 dB",                {{L"Replay Gain", L"-7 dB"}}},
        {"replaygain_track_peak", "0.9",                  {{L"Peak Level", L"0.9"}}   },
        {"InitialKey",            "Am",                   {{L"Initial Key", L"Am"}}   },
        {"media",                 "CD",                   {{L"Release Medium", L"CD"}}},
        {"My own",                "x",                    {{L"My own", L"x"}}         },
        {"Rating",                "10",                   {{L"Rating", L"5"}}         },
        {"RATING",                "9",                    {{L"Rating", L"5"}}         },
        {"RATING",                "7.5",                  {{L"Rating", L"4"}}         },
        {"RATING",                "6.4",                  {{L"Rating", L"3"}}         },
        {"RATING",                "none",                 {{L"Rating", L"0"}}         },
        {"RATING",                "-10",                  {{L"Rating", L"-4"}}        },
        {"RATING",                "99999999999999999999", {{L"Rating", L"500000"}}    },
        {"",                      "x",                    {}                          },
        {"empty",                 "",                     {}                          },
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
    EXPECT_EQ(GetTags(Atom("----", Atom("mean") + name + Data("x"))), (Values {
                                                                          {L"n", L"x"}
    }));
}

// What other programs say about these files was compared by hand.
TEST_F(CILSTAtomTest, ReadsSampleFiles)
{
    const char* const fixtures = getenv("ZV_FIXTURES");
    if (fixtures == nullptr)
        GTEST_SKIP() << "ZV_FIXTURES names no folder with sample media";
    const std::filesystem::path folder = std::filesystem::path(fixtures) / "mp4";
    const auto openList = [&folder](const char* name)
    {
        // The movie follows the type of the file.
        auto tree = std::make_unique<Tree>(ReadFile(folder / name));
        std::erase_if(tree->Roots, [](const auto& root) { return root->GetType() != FourCC("moov"); });
        return tree;
    };
    ZVPropertyMap genre;
    const auto withGenre = openList("gnre.m4a");
    ASSERT_NE(withGenre->Find<CILSTAtom>({"udta", "meta", "ilst"}), nullptr);
    withGenre->Find<CILSTAtom>({"udta", "meta", "ilst"})->GetTags(genre);
    EXPECT_EQ(genre.GetString(L"Genre"), L"Ska");

    ZVPropertyMap tags;
    const auto withCover = openList("has-tags.m4a");
    ASSERT_NE(withCover->Find<CILSTAtom>({"udta", "meta", "ilst"}), nullptr);
    withCover->Find<CILSTAtom>({"udta", "meta", "ilst"})->GetTags(tags);
    EXPECT_EQ(tags.GetString(L"Artist"), L"Test Artist");
    EXPECT_EQ(tags.GetString(L"Tool Name"), L"FAAC 1.24");
    EXPECT_EQ(tags.GetString(L"iTunNORM").GetLength(), 90);
    ZVFilename filename;
    ASSERT_TRUE(withCover->Find<CCoverartAtom>({"udta", "meta", "ilst", "covr"})->GetValue(filename));
    EXPECT_EQ(ReadFile(filename.GetFilename().GetText()).size(), 79);
}
