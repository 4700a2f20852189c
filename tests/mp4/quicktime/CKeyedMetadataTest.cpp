#include "mp4/quicktime/CKeyedMetadata.h"

#include "KeyBytes.h"
#include "mp4/quicktime/QTMetaAtom.h"
#include "system/filename/ZVFilename.h"

#include <gtest/gtest.h>

using namespace AtomBytes;
using namespace std::string_literals;

namespace
{
const Bytes Apple = "com.apple.quicktime.";

struct Entry
{
    Bytes Key;
    Bytes Value;
    uint32_t DataType = 1;
};

// A meta atom with an item for each key.
Bytes Meta(const std::vector<Entry>& entries, const char* handler = "mdta")
{
    std::vector<Bytes> keys;
    Bytes items;
    for (const Entry& entry : entries)
    {
        items += Item(static_cast<uint32_t>(keys.size()), entry.Value, entry.DataType);
        keys.push_back(Key(entry.Key));
    }
    return Atom("meta", Handler(handler) + Keys(keys) + Atom("ilst", items));
}
}

class CKeyedMetadataTest : public TagTest
{
protected:
    static Values GetTags(const Bytes& meta)
    {
        ZVPropertyMap map;
        const Tree tree(meta);
        CKeyedMetadata(*tree.Find<CContainerAtom>()).GetTags(map);
        return GetValues(map);
    }
};

TEST_F(CKeyedMetadataTest, ChangesAndAddsWhatItTells)
{
    const Tree tree(Meta({
        Entry {Apple + "title", "old"}
    }));
    auto& meta = *tree.Find<QTMetaAtom>();
    EXPECT_TRUE(meta.SetProperty(L"Name", L"new"));
    EXPECT_TRUE(meta.SetProperty(L"Album", L"x"));
    EXPECT_TRUE(meta.SetProperty(L"Rating", L"4"));
    EXPECT_FALSE(meta.SetProperty(L"Lyrics", L"x")) << "it has no key there";
    EXPECT_FALSE(meta.SetProperty(L"Artist", L"")) << "there is nothing to remove";
    EXPECT_EQ(GetTags(tree.Write()), Values({L"Album=x", L"Name=new", L"Rating=4"}));
    EXPECT_TRUE(meta.SetProperty(L"Name", L""));
    EXPECT_EQ(GetTags(tree.Write()), Values({L"Album=x", L"Rating=4"}));
}

TEST_F(CKeyedMetadataTest, SetsWhatMakesSenseAlone)
{
    // clang-format off
    const struct
    {
        const char* Name;
        Bytes Meta;
        Values Expected;
    } rows[] = {
        {"a make without a model", Meta({{Apple + "make", " Maker"}, {Apple + "model", ""}}),
         {L"Make= Maker", L"Camera=Maker"}},
        {"a date that is none", Meta({{Apple + "creationdate", "someday"}}), {}},
        {"a place that is none", Meta({{Apple + "location.ISO6709", "home"}}), {L"Location=home"}},
        {"the key of another namespace",
         Atom("meta", Handler("mdta") + Keys({Key(Apple + "album", "udta"), Key("\xa9" "day", "udta")}) +
                          Atom("ilst", Item(0, "x") + Item(1, "2020"))),
         {L"Date=2020"}},
        {"fewer items than keys",
         Atom("meta", Handler("mdta") + Keys({Key(Apple + "album"), Key(Apple + "artist"), Key(Apple + "genre")}) +
                          Atom("ilst", Item(2, "c") + Item(2, "d") + Item(7, "e") + Item(0, "a"))),
         {L"Album=a", L"Genre=c"}},
    };
    // clang-format on
    for (const auto& row : rows)
        EXPECT_EQ(GetTags(row.Meta), row.Expected) << row.Name;
}

TEST_F(CKeyedMetadataTest, ReadsNumbersByTheirType)
{
    // clang-format off
    const struct
    {
        uint32_t DataType;
        Bytes Value;
        const wchar_t* Expected;  // null for no value
    } rows[] = {
        {2,  "text",                                 nullptr},
        {21, "\xff",                                 L"-1"},
        {21, "\x80\0"s,                              L"-32768"},
        {21, "\x80\0\0\0"s,                          L"-2147483648"},
        {21, "\0\0\0\1\xff"s,                        L"1"},
        {22, "\1\0\0"s,                              L"65536"},
        {22, "\xff\xff\xff\xff\xff\xff\xff\xff",     L"4294967295"},
        {23, Number(0xbfc00000, 4),                  L"-1.5"},
        {24, Number(0x4004000000000000, 8),          L"2.5"},
        {67, "\xff\xff\xff",                         nullptr},
        {74, Number(0x8000000000000000, 8),          L"-9223372036854775808"},
        {78, Number(UINT64_MAX, 8),                  L"18446744073709551615"},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        const ZVString expected = row.Expected;
        const Bytes meta = Meta({
            Entry {Apple + "comment", row.Value, row.DataType}
        });
        EXPECT_EQ(GetTags(meta), expected.IsEmpty() ? Values() : Values({(L"Comment=" + expected).GetText()}))
            << row.DataType << " " << testing::PrintToString(row.Value);
    }
}

TEST_F(CKeyedMetadataTest, WritesThePictureOfTheLastKey)
{
    const Bytes meta = Atom("meta", Handler("mdta") + Keys({Key(Apple + "artwork"), Key("covr", "udta"), Key("other")}) +
                                        Atom("ilst", Item(0, "first", 14) + Item(1, "second", 27) + Item(2, "third", 13)));
    const Tree tree(meta);
    ZVFilename filename;
    ASSERT_TRUE(tree.Find<QTMetaAtom>()->GetImageFile(filename));
    EXPECT_EQ(filename.GetNameAndExtension(), L"cover art.bmp");
    EXPECT_EQ(ReadFile(filename.GetFilename().GetText()), "second");
    EXPECT_EQ(CountFiles(), 1);
}

// However many pictures somebody put into a file, they do not fill the disk.
TEST_F(CKeyedMetadataTest, WritesTheLastPictureOfATagAlone)
{
    const Entry unknown = {"unknown", "other", 13};
    const Entry artwork = {Apple + "artwork", "first", 13};
    const Entry lastArtwork = {Apple + "artwork", "last", 13};
    const Values tags = GetTags(Meta({artwork, unknown, lastArtwork}));
    ASSERT_EQ(tags.size(), 1);
    EXPECT_EQ(ReadFile(tags.begin()->substr(wcslen(L"Image File="))), "last");
    EXPECT_EQ(CountFiles(), 1);
}
