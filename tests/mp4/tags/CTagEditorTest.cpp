// Tags that are set in the atoms of a film, as its bytes show them then and as reading them again tells them.

#include "mp4/CMp4File.h"
#include "mp4/quicktime/KeyBytes.h"
#include "support/PropertyLines.h"
#include "system/filename/ZVFilename.h"

#include <algorithm>
#include <cctype>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
using namespace AtomBytes;
using namespace std::string_literals;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

using Lines = std::set<std::string>;

const Bytes FTYP = Atom("ftyp", "isom" + Zeros(4));
const Bytes MVHD = FullAtom("mvhd", Zeros(8) + Number(1000, 4) + Number(10'000, 4) + Zeros(80));

Bytes Movie(const Bytes& content = {}, const Bytes& after = {})
{
    return FTYP + Atom("moov", MVHD + content) + after;
}

Bytes TagList(const Bytes& tags, const char* handler = "mdir")
{
    return Atom("udta", FullAtom("meta", FullAtom("hdlr", Zeros(4) + handler + Zeros(14)) + Atom("ilst", tags)));
}

Bytes Item(const Bytes& name, const Bytes& value, const Bytes& mean = "com.apple.iTunes")
{
    return Atom("----", FullAtom("mean", mean) + FullAtom("name", name) + Data(value));
}

Bytes Meta(const Bytes& key, const Bytes& value, uint32_t dataType = 1)
{
    return Atom("meta",
                Handler("mdta") + Keys({Key("com.apple.quicktime." + key)}) + Atom("ilst", AtomBytes::Item(0, value, dataType)));
}

// A film whose tags are set in memory.
class EditedFilm : public CMp4File
{
public:
    explicit EditedFilm(const Bytes& bytes)
    {
        OpenStream(std::make_unique<MemoryFile>(bytes), ZVFilename::FromPath(L"film.mp4"));
        EXPECT_TRUE(ReadAtoms()) << GetError();
        EXPECT_TRUE(Verify()) << GetError();
    }

    bool Set(const char* name, const std::string& value)
    {
        return SetTag(ZVString::FromUTF8(name), ZVString::FromUTF8(value.c_str()));
    }
    std::string GetError() const
    {
        const std::unique_ptr<char[]> text(GetLastError().GetUTF8());
        return text.get();
    }
    Bytes Write() const { return WriteAll(GetRootAtoms()); }
    // After another reading.
    Lines ReadTags() const
    {
        EditedFilm again(Write());
        ZVPropertyMap tags;
        again.GetTags(tags);
        return GetLines(tags);
    }
};

class CTagEditorTest : public TagTest
{
protected:
    // The film after one tag was set, which succeeds.
    static Bytes SetOne(const Bytes& film, const char* name, const std::string& value)
    {
        EditedFilm edited(film);
        EXPECT_TRUE(edited.Set(name, value)) << name << ": " << edited.GetError();
        return edited.Write();
    }

    std::string WriteFile(const char* name, const Bytes& bytes) const
    {
        std::ofstream(Folder / name, std::ios::binary) << bytes;
        return Folder / name;
    }
};

struct ToldTag
{
    const char* Name;
    const char* Value;
    Lines Told = {};  // the name and the value themselves if it is empty
};

// clang-format off
const ToldTag ToldTags[] = {
    {"Album", "a"}, {"Artist", "Caf\xc3\xa9"}, {"Album Artist", "a"}, {"Comment", "a"}, {"Name", "a"}, {"Composer", "a"},
    {"Conductor", "a"}, {"Director", "a"}, {"Producer", "a"}, {"Publisher", "a"}, {"Work", "a"}, {"Movement", "a"},
    {"Grouping", "a"}, {"Category", "a"}, {"Keywords", "a"}, {"Feed URL", "a"}, {"Episode Global ID", "a"},
    {"Description", "a"}, {"Lyrics", "a"}, {"TV Network Name", "a"}, {"TV Show Name", "a"}, {"Number of Episodes", "a"},
    {"Purchased Date", "a"}, {"Copyright", "a"}, {"UITS Payload", "<xml/>"},
    {"Genre", "Hip-Hop"}, {"Genre", "SynthPop"}, {"Genre", "Of my own"}, {"Genre", "rock"},
    {"Track #", "5/12"}, {"Track #", " 05 / 12 ", {"Track #=5/12"}}, {"Track #", "65535"}, {"Disc #", "1/2"}, {"Disc #", "3"},
    {"Movement Number", "65535"}, {"Movement Count", "2"}, {"BPM", "120"}, {"stik", "255"},
    {"stik", "9", {"stik=9", "Media Sub Type=Movie"}}, {"Access Rating", "4", {"Rating=4"}},
    {"Show Work Movement", "1"}, {"Compilation", "yes", {"Compilation=1"}}, {"Podcast", "0"},
    {"Gapless Playback", "False", {"Gapless Playback=0"}},
    {"Date", "43968.25"}, {"Date", "2020-05-17T06:00:00Z", {"Date=43968.25"}}, {"Year", "43968.25", {"Date=43968.25"}},
    {"Title Sort Order", "a", {"Title Sort Order=a", "Title Sort=a"}},
    {"Title Sort", "a", {"Title Sort Order=a", "Title Sort=a"}},
    {"Artist Sort Order", "a"}, {"Artist Sort", "a"}, {"Album Artist Sort Order", "a"}, {"Album Artist Sort", "a"},
    {"Album Sort Order", "a"}, {"Album Sort", "a"}, {"Composer Sort Order", "a"}, {"Composer Sort", "a"},
    {"Show Name Sort Order", "a"}, {"Show Name Sort", "a"},
    {"Peak Level", "0.5"}, {"Replay Gain", "-3 dB"}, {"Initial Key", "Am"}, {"Release Medium", "CD"}, {"Rating", "5"},
    {"Rating", "0"}, {"Of my own", "x"}, {"Episode", "7"},
};
// clang-format on

TEST_F(CTagEditorTest, SetsWhatReadingTells)
{
    for (const ToldTag& row : ToldTags)
    {
        SCOPED_TRACE(std::string(row.Name) + " " + row.Value);
        EditedFilm film(Movie());
        std::string inOtherCase = row.Name;
        std::ranges::transform(inOtherCase, inOtherCase.begin(), toupper);
        EXPECT_TRUE(film.Set(inOtherCase.c_str(), "1")) << film.GetError();
        EXPECT_TRUE(film.Set(row.Name, row.Value)) << film.GetError();
        const Lines expected = row.Told.empty() ? Lines {std::string(row.Name) + "=" + row.Value} : row.Told;
        EXPECT_THAT(film.ReadTags(), IsSupersetOf(expected));
        EXPECT_TRUE(film.Set(row.Name, "")) << film.GetError();
        EXPECT_EQ(film.ReadTags(), Lines());
    }
}

struct WrittenTag
{
    const char* Name;
    std::string Value;
    Bytes Tag;
};

TEST_F(CTagEditorTest, WritesWhatPlayersExpect)
{
    const Bytes aUmlaut = "\xc3\xa4";
    std::string umlauts;
    for (int count = 0; count < 128; ++count)
        umlauts += aUmlaut;
    // clang-format off
    const WrittenTag rows[] = {
        {"Name",            "Caf\xc3\xa9",  Tag("\xa9nam", "Caf\xc3\xa9")},
        {"Name",            umlauts,        Tag("\xa9nam", umlauts.substr(0, 254))},
        {"Name",            "x" + umlauts,  Tag("\xa9nam", "x" + umlauts.substr(0, 254))},
        {"Lyrics",          umlauts,        Tag("\xa9lyr", umlauts)},
        {"Comment",         std::string(300, 'x'), Tag("\xa9" "cmt", std::string(255, 'x'))},
        {"Track #",         "5/12",         Tag("trkn", "\0\0\0\5\0\14\0\0"s, 0)},
        {"Track #",         "258",          Tag("trkn", "\0\0\1\2\0\0\0\0"s, 0)},
        {"Disc #",          "1/2",          Tag("disk", "\0\0\0\1\0\2"s, 0)},
        {"Genre",           "Blues",        Tag("gnre", "\0\1"s, 0)},
        {"Genre",           "SynthPop",     Tag("gnre", "\0\x94"s, 0)},
        {"BPM",             "258",          Tag("tmpo", "\1\2", 21)},
        {"Movement Number", "1",            Tag("\xa9mvi", "\0\1"s, 21)},
        {"Season",          "258",          Tag("tves", "\0\0\1\2"s, 21)},
        {"stik",            "10",           Tag("stik", "\n", 21)},
        {"Podcast",         "true",         Tag("pcst", "\1", 21)},
        {"Date",            "2020",         Tag("\xa9" "day", "2020")},
        {"Date",            "43968",        Tag("\xa9" "day", "2020-05-17")},
        {"Date",            "43831",        Tag("\xa9" "day", "2020")},
        {"Date",            "43968.25",     Tag("\xa9" "day", "2020-05-17T06:00:00")},
        {"Year",            "20200517",     Tag("\xa9" "day", "20200517")},
        {"Date",            "in spring",    Tag("\xa9" "day", "in spring")},
        {"Rating",          "3",            Item("RATING", "6")},
        {"Peak Level",      "0.5",          Item("replaygain_track_peak", "0.5")},
        {"Of my own",       std::string(300, 'x'), Item("Of my own", std::string(300, 'x'))},
        {"Date",            "0",            ""},
        {"Duration",        "1",            ""},
        {"media TYPE",      "x",            ""},
        {"Tool Name",       "x",            ""},
        {"Tool Version",    "x",            ""},
    };
    // clang-format on
    for (const WrittenTag& row : rows)
        EXPECT_EQ(SetOne(Movie(TagList("")), row.Name, row.Value), Movie(TagList(row.Tag))) << row.Name << " " << row.Value;
    // A character beyond the first 65,536, alone and as it comes from UTF-16.
    for (const wchar_t* const face : {L"\U0001f600", L"\xd83d\xde00"})
    {
        EditedFilm film(Movie(TagList("")));
        EXPECT_TRUE(film.SetTag(L"Name", face)) << film.GetError();
        EXPECT_EQ(film.Write(), Movie(TagList(Tag("\xa9nam", "\xf0\x9f\x98\x80"))));
    }
}

TEST_F(CTagEditorTest, RefusesWhatATagCannotHave)
{
    struct Row
    {
        const char* Name;
        const char* Value;
        const char* Error;
    };
    const Row rows[] = {
        {"Track #",     "one",                  "\"one\" is no whole number from 0 to 65535"                         },
        {"Track #",     "1/",                   "\"\" is no whole number from 0 to 65535"                            },
        {"Track #",     "1/2/3",                "\"2/3\" is no whole number from 0 to 65535"                         },
        {"Disc #",      "65536",                "\"65536\" is no whole number from 0 to 65535"                       },
        {"BPM",         "120.5",                "\"120.5\" is no whole number from 0 to 65535"                       },
        {"BPM",         "-1",                   "\"-1\" is no whole number from 0 to 65535"                          },
        {"stik",        "256",                  "\"256\" is no whole number from 0 to 255"                           },
        {"Season",      "99999999999999999999", "\"99999999999999999999\" is no whole number from 0 to 2147483647"   },
        {"Compilation", "2",                    "\"2\" is neither 0 nor 1"                                           },
        {"Rating",      "6",                    "\"6\" is no whole number from 0 to 5"                               },
        {"",            "x",                    "A tag without a name cannot be set"                                 },
        {"Image File",  "missing.jpg",          "The picture missing.jpg cannot be opened: No such file or directory"},
        {"Image File",  "/dev/zero",            "The picture /dev/zero is no file"                                   },
    };
    const Bytes film =
        Movie(TagList(Tag("trkn", "\0\0\0\5\0\14\0\0"s, 0) + Tag("cpil", "\1", 21) + Item("rating", "8") + Tag("stik", "\1")));
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        EditedFilm edited(film);
        EXPECT_FALSE(edited.Set(row.Name, row.Value));
        EXPECT_EQ(edited.GetError(), row.Error);
        EXPECT_EQ(edited.Write(), film);
    }
    EXPECT_FALSE(CMp4File().SetTag(L"Name", L"x"));
}

TEST_F(CTagEditorTest, LeavesOneAtomOfATag)
{
    struct Row
    {
        const char* What;
        const char* Name;
        const char* Value;
        Bytes Before;
        Bytes After;
    };
    const Bytes artist = Tag("aART", "x");
    const Bytes unknown = Tag("\0\0\0\7"s, "x") + Tag("abcd", "y");
    const Bytes odd = Atom("\xa9nam", Atom("free") + Atom("data", "x")) + Atom("\xa9nam", Zeros(9)) + Tag("\xa9nam", "", 13);
    const Bytes rated = Tag("rtng", "\1", 21);
    const Bytes genres = Tag("\xa9gen", "x") + Tag("gnre", "\1");
    const Bytes twoItems = Item("My own", "a", "org.example") + Item("MY OWN", "c");
    // clang-format off
    const Row rows[] = {
        {"odd ones",        "Name",       "b",   artist + odd + unknown,           artist + Tag("\xa9nam", "b") + unknown},
        {"removed",         "Name",       "",    artist + odd + unknown,           artist + unknown},
        {"before items",    "Name",       "b",   artist + twoItems,                artist + Tag("\xa9nam", "b") + twoItems},
        {"to own genre",    "Genre",      "x",   Tag("gnre", "\0\1"s) + artist,    Tag("\xa9gen", "x") + artist},
        {"to its number",   "Genre",      "Ska", genres,                           Tag("gnre", "\0\x16"s, 0)},
        {"no genre",        "Genre",      "",    genres,                           ""},
        {"hidden by item",  "Name",       "b",   Item("NAME", "a", "org.example"), Tag("\xa9nam", "b")},
        {"by second name",  "Title Sort", "b",   Item("Title Sort Order", "a"),    Tag("sonm", "b")},
        {"items",           "my own",     "b",   twoItems + artist,                artist + Item("my own", "b", "org.example")},
        {"item by its key", "Peak Level", "1",   Item("Peak Level", "0"),          Item("replaygain_track_peak", "1")},
        {"rating",          "Rating",     "4",   Item("rating", "2") + rated,      rated + Item("rating", "8")},
        {"no rating",       "Rating",     "",    Item("rating", "2") + rated,      rated},
        {"long mean",       "a",          "b",   Item("a", "x", Bytes(300, 'm')),  Item("a", "b", Bytes(255, 'm'))},
        {"item of no mean", "a",          "b",   Atom("----", FullAtom("name", "a")), Item("a", "b")},
    };
    // clang-format on
    for (const Row& row : rows)
        EXPECT_EQ(SetOne(Movie(TagList(row.Before)), row.Name, row.Value), Movie(TagList(row.After))) << row.What;
}

TEST_F(CTagEditorTest, MakesTheStepsToTheList)
{
    const Bytes name = Tag("\xa9nam", "x");
    const Bytes cprt = FullAtom("cprt", Number(0x55c4, 2) + "me" + Zeros(1));
    const Bytes header = FullAtom("hdlr", Zeros(4) + "mdir" + Zeros(14));
    const Bytes meta = FullAtom("meta", header + Atom("ilst", name));
    struct Row
    {
        const char* What;
        Bytes Before;
        Bytes After;
    };
    const Bytes newList = header + Atom("ilst", name);
    const auto userData = [](const Bytes& content) { return Atom("udta", content); };
    // clang-format off
    const Row rows[] = {
        {"nothing",      "",                                      userData(meta)},
        {"no meta",      userData(cprt + Zeros(4)),               userData(cprt + meta + Zeros(4))},
        {"no list",      userData(FullAtom("meta", header)),      userData(meta)},
        {"plain meta",   userData(Atom("meta", header)),          userData(Atom("meta", newList))},
        {"bytes at end", userData(FullAtom("meta", header + Zeros(8))), userData(FullAtom("meta", newList + Zeros(8)))},
        {"second udta",  userData(cprt) + TagList(""),            userData(cprt) + TagList(name)},
    };
    // clang-format on
    for (const Row& row : rows)
    {
        EXPECT_EQ(SetOne(Movie(row.Before), "Name", "x"), Movie(row.After)) << row.What;
        EXPECT_EQ(SetOne(Movie(row.Before), "Name", ""), Movie(row.Before)) << row.What;
    }
    for (const Bytes& other : {TagList("", "mdta"), Atom("udta", Atom("meta", Atom("free")))})
    {
        EditedFilm film(Movie(other));
        EXPECT_FALSE(film.Set("Name", "x"));
        EXPECT_THAT(film.GetError(), HasSubstr("metadata of another kind"));
        EXPECT_EQ(film.Write(), Movie(other));
        EXPECT_TRUE(film.Set("Name", "")) << film.GetError();
        EXPECT_EQ(film.Write(), Movie(other));
    }
}

TEST_F(CTagEditorTest, ChangesTheCopyrightThatIsShownFirst)
{
    const auto copyright = [](const Bytes& text) { return FullAtom("cprt", Number(0x15c7, 2) + text + Zeros(1)); };
    const Bytes list = FullAtom("meta", FullAtom("hdlr", Zeros(4) + "mdir" + Zeros(14)) + Atom("ilst", Tag("cprt", "new")));
    const Bytes before = Movie(Atom("udta", copyright("old") + copyright("alt")));
    EXPECT_EQ(SetOne(before, "Copyright", "new"), Movie(Atom("udta", copyright("new") + list)));
    EXPECT_EQ(SetOne(before, "Copyright", ""), Movie(Atom("udta")));
    EXPECT_EQ(EditedFilm(SetOne(before, "Copyright", "new")).ReadTags(), Lines {"Copyright=new"});
}

TEST_F(CTagEditorTest, ChangesTheKeysThatWouldHideATag)
{
    struct Row
    {
        const char* Name;
        const char* Value;
        const char* Key;
        Bytes Before;
        uint32_t TypeBefore;
        Bytes After;
        uint32_t TypeAfter;
    };
    const Bytes two = Number(0x40000000, 4);
    const Bytes four = Number(0x40800000, 4);
    const Row rows[] = {
        {"name",   "new",      "title",        "old",     1,  "new",                 1 },
        {"Name",   "new",      "title",        "\0o"s,    2,  "new",                 1 },
        {"Name",   "new",      "title",        "picture", 13, "new",                 1 },
        {"Artist", "new",      "title",        "old",     1,  "old",                 1 },
        {"Make",   "New",      "make",         "x",       1,  "New",                 1 },
        {"Date",   "43968.25", "creationdate", "x",       1,  "2020-05-17T06:00:00", 1 },
        {"Date",   "43968.25", "year",         "x",       1,  "2020",                1 },
        {"Rating", "4",        "rating.user",  two,       23, four,                  23},
        {"Rating", "4",        "rating.user",  "2",       1,  "4",                   1 },
        {"Rating", "4",        "rating.user",  "\1",      75, "\4",                  75},
    };
    for (const Row& row : rows)
    {
        const Bytes before = Movie(Meta(row.Key, row.Before, row.TypeBefore));
        EXPECT_THAT(SetOne(before, row.Name, row.Value), HasSubstr(Meta(row.Key, row.After, row.TypeAfter))) << row.Name;
        const Lines told = EditedFilm(SetOne(before, row.Name, "")).ReadTags();
        EXPECT_THAT(told, Not(Contains(testing::StartsWith(row.Name + "="s)))) << row.Name;
    }
}

// Whoever writes back what he has read changes nothing that is told.
TEST_F(CTagEditorTest, TakesWhatReadingMakesOfOtherTags)
{
    EditedFilm film(Movie(Meta("make", "Maker") + TagList(Tag("stik", "\x9", 21))));
    const Lines before = film.ReadTags();
    EXPECT_THAT(before, Contains("Camera=Maker"));
    EXPECT_TRUE(film.Set("Camera", "Maker")) << film.GetError();
    EXPECT_TRUE(film.Set("Media Sub Type", "Movie")) << film.GetError();
    EXPECT_EQ(film.ReadTags(), before);
    EXPECT_THAT(film.Write(), HasSubstr("Camera"));
    EXPECT_TRUE(film.Set("Camera", "")) << film.GetError();
    EXPECT_THAT(film.Write(), Not(HasSubstr("Camera")));
}

TEST_F(CTagEditorTest, TakesPicturesByTheirFirstBytes)
{
    const std::pair<Bytes, uint32_t> pictures[] = {
        {"\xff\xd8\xff\xe0 and so on",  13},
        {"\x89PNG\r\n\x1a\n and so on", 14},
        {"BM and so on",                27}
    };
    for (const auto& [bytes, dataType] : pictures)
    {
        const std::string path = WriteFile("picture.txt", bytes);
        const Bytes covers = Atom("covr", Data("a", 13) + Data("b", 13)) + Tag("covr", "c", 13);
        EXPECT_EQ(SetOne(Movie(TagList(covers)), "Image File", path), Movie(TagList(Tag("covr", bytes, dataType))));
        EXPECT_EQ(SetOne(Movie(TagList(covers)), "Image File", ""), Movie(TagList("")));
        const Bytes keyed = SetOne(Movie(Meta("artwork", "old", 13)), "Image File", path);
        EXPECT_THAT(keyed, HasSubstr(Meta("artwork", bytes, dataType)));
        EditedFilm film(SetOne(Movie(), "Image File", path));
        ZVFilename cover = ZVFilename::FromPath(ZVString::FromUTF8((Folder / "cover").c_str()));
        EXPECT_TRUE(film.GetImageFile(cover));
        EXPECT_EQ(ReadFile(Folder / "cover"), bytes);
    }
    const std::string text = WriteFile("text.jpg", "text");
    const std::string large = WriteFile("large.jpg", "\xff\xd8\xff");
    ASSERT_EQ(truncate(large.c_str(), (64 << 20) + 1), 0);
    const std::string pipe = Folder / "pipe.jpg";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EditedFilm film(Movie());
    for (const auto& [path, error] : {std::pair(text, "is no picture of JPEG, PNG or BMP"),
                                      std::pair(large, "is larger than 67108864 bytes"), std::pair(pipe, "is no file")})
    {
        EXPECT_FALSE(film.Set("Image File", path)) << path;
        EXPECT_THAT(film.GetError(), HasSubstr(error));
    }
    EXPECT_EQ(film.Write(), Movie());
}

TEST_F(CTagEditorTest, KeepsOneUITSPayload)
{
    const Bytes mdat = Atom("mdat", "data");
    const auto payload = [](const Bytes& text)
    { return Atom("uuid", "\x99\x45\x4e\x27\x96\x3a\x4b\x56\x8e\x76\x1d\xb6\x8c\x89\x9c\xd4" + text); };
    EditedFilm film(Movie("", mdat));
    EXPECT_TRUE(film.Set("uits payload", "<a/>"));
    EXPECT_EQ(film.Write(), Movie("", mdat + payload("<a/>")));
    EXPECT_TRUE(film.Set("UITS Payload", ""));
    EXPECT_EQ(film.Write(), Movie("", mdat));
    EXPECT_TRUE(film.Set("UITS Payload", ""));
    EXPECT_EQ(SetOne(Movie("", payload("<a/>") + mdat), "UITS Payload", "<longer/>"), Movie("", payload("<longer/>") + mdat));
}
}
