#include "mp4/CMp4Saver.h"

#include "SaveFixture.h"
#include "mp4/samples/FilmBytes.h"

#include <sys/resource.h>

namespace
{
using namespace FilmBytes;

constexpr size_t Added = 100;
const Bytes FTYP = Atom("ftyp", "isom" + Zeros(4));

// What is in a film beside its track of three chunks, which lie in two mdat atoms.
struct Content
{
    std::vector<const char*> Order = {"ftyp", "moov", "free", "one", "two"};
    Bytes InMovie = {};
    Bytes InTables = {};
    Bytes Items = {};
    bool HasLongOffsets = false;
    bool HasLargeHeaders = false;
    uint64_t ShiftOfLast = 0;
};

struct Films
{
    explicit Films(const Content& content) : What(content) {}

    Bytes Part(const std::string& name, const std::vector<uint64_t>& offsets) const
    {
        const auto make = What.HasLargeHeaders ? LargeAtom : Atom;
        if (name == "one")
            return make("mdat", "..one!");
        if (name == "two")
            return make("mdat", "two!...six!");
        if (name == "free")
            return Atom("free", "free");
        if (name == "ftyp")
            return FTYP;
        const int width = What.HasLongOffsets ? 8 : 4;
        const Tables tables {.Times = Table("stts", {3, 1}, 2),
                             .SampleSizes = FixedSizes(4, 3),
                             .Offsets = Table(What.HasLongOffsets ? "co64" : "stco", offsets, 1, width),
                             .Others = What.InTables};
        return name == "moov" ? Movie(Track("vide", tables.Make()) + What.InMovie) : What.Items;
    }

    Bytes Make() const
    {
        const std::vector<uint64_t> none(3);
        const uint64_t header = What.HasLargeHeaders ? 16 : 8;
        uint64_t position = 0;
        std::vector<uint64_t> offsets(3);
        for (const char* const name : What.Order)
        {
            if (name == std::string("one"))
                offsets[0] = position + header + 2;
            if (name == std::string("two"))
            {
                offsets[1] = position + header;
                offsets[2] = position + header + 7 + What.ShiftOfLast;
            }
            position += Part(name, none).size();
        }
        Bytes film;
        for (const char* const name : What.Order)
            film += Part(name, offsets);
        return film;
    }

    Content What;
};

Bytes MakeFilm(const Content& content = {})
{
    return Films(content).Make();
}

// The bytes of the three chunks, found by hand.
std::vector<Bytes> ReadChunks(const Bytes& film)
{
    const size_t shortTable = film.find("stco");
    const int width = shortTable == Bytes::npos ? 8 : 4;
    size_t entry = (shortTable == Bytes::npos ? film.find("co64") : shortTable) + 12;
    std::vector<Bytes> chunks;
    for (int chunk = 0; chunk < 3; ++chunk, entry += static_cast<size_t>(width))
        chunks.push_back(film.substr(NumberAt(film, entry, width), 4));
    return chunks;
}

// An item with one extent, whose offset of 4 bytes counts from a base of 4.
Bytes Item(uint64_t base, uint64_t offset, uint64_t length, int sourceFile = 0)
{
    return Number(1, 2) + Number(static_cast<uint64_t>(sourceFile), 2) + Number(base, 4) + Number(1, 2) + Number(offset, 4) +
           Number(length, 4);
}

Bytes ItemPlaces(const std::vector<Bytes>& items, uint32_t sizes = 0x4440, int version = 0)
{
    Bytes body = Number(sizes, 2) + Number(items.size(), 2);
    for (const Bytes& item : items)
        body += item;
    return FullAtom("meta", FullAtom("hdlr", Zeros(4) + "pict" + Zeros(12)) + FullAtom("iloc", body, version));
}

class CMp4SaverTest : public SaveFixture
{
};

TEST_F(CMp4SaverTest, EachChunkKeepsItsBytes)
{
    struct Row
    {
        const char* Name;
        Content What;
    };
    const Row rows[] = {
        {"movie first",                           {}                                                                },
        {"movie last",                            {.Order = {"ftyp", "one", "free", "two", "moov"}}                 },
        {"movie in between",                      {.Order = {"ftyp", "two", "moov", "one"}}                         },
        {"long offsets",                          {.HasLongOffsets = true}                                          },
        {"headers that become short",             {.HasLargeHeaders = true}                                         },
        {"headers that become short, movie last", {.Order = {"ftyp", "one", "two", "moov"}, .HasLargeHeaders = true}},
    };
    for (const Row& row : rows)
        for (const size_t added : {size_t {0}, Added})
        {
            SCOPED_TRACE(row.Name);
            const Bytes before = MakeFilm(row.What);
            Put("film.mp4", before);
            CMp4File film;
            ASSERT_TRUE(Open(film, "film.mp4"));
            if (added != 0)
                Grow(film, added);
            EXPECT_TRUE(film.Save());
            EXPECT_EQ(film.GetLastError(), L"");
            const Bytes after = GetAt("film.mp4");
            EXPECT_THAT(ReadChunks(after), ElementsAre("one!", "two!", "six!"));
            EXPECT_EQ(after.size(), before.size() + (added == 0 ? 0 : added + 8) - (row.What.HasLargeHeaders ? 16 : 0));
            EXPECT_THAT(List(TemporaryFolder), IsEmpty());
            EXPECT_TRUE(film.GetRootAtoms().IsEmpty()) << "the film stays open";
        }
}

// Of long bodies there is only the place in the file that is open.
TEST_F(CMp4SaverTest, CopiesWhatIsNotInMemory)
{
    Bytes body(CAtomBytes::MaximumInMemory + size_t {5'000'000}, ' ');
    std::ranges::generate(body, [number = 0u]() mutable { return static_cast<char>((number += 2654435761u) >> 24); });
    const Bytes before = MakeFilm({.InMovie = Atom("udta", Atom("long", body))}) + Atom("uuid", Bytes(16, 'u') + body);
    Put("film.mp4", before);
    CMp4File film;
    ASSERT_TRUE(Open(film, "film.mp4"));
    EXPECT_TRUE(film.Save());
    EXPECT_TRUE(GetAt("film.mp4") == before);
}

TEST_F(CMp4SaverTest, RefusesWhatCouldBeLost)
{
    const auto withItems = [](const Bytes& items)
    {
        return MakeFilm({
            .Order = {"ftyp", "moov", "one", "two", "items"},
              .Items = items
        });
    };
    const Bytes plain = withItems({});
    const size_t one = plain.find("..one!");
    const size_t two = plain.find("two!");
    const Bytes elsewhere = FullAtom("dref", Number(1, 4) + FullAtom("url ", "file:///film" + Zeros(1)));
    const Bytes alias = FullAtom("dref", Number(1, 4) + FullAtom("alis", "elsewhere"));
    struct Row
    {
        const char* Name;
        Bytes Film;
        std::wstring Error;
        bool OnlyWhenMoved = false;
    };
    const std::wstring size = std::to_wstring(plain.size());
    // clang-format off
    const Row rows[] = {
        {"cut", plain.substr(0, plain.size() - 1),
         L"The atoms end at byte " + size + L", and the file at " + std::to_wstring(plain.size() - 1)},
        {"garbage at the end", plain + "abc",
         L"The atoms end at byte " + size + L", and the file at " + std::to_wstring(plain.size() + 3)},
        {"an mdat to the end of the file", plain + Number(0, 4) + "mdat and more",
         L"The atoms end at byte " + size + L", and the file at " + std::to_wstring(plain.size() + 17)},
        {"fragments", plain + Atom("moof"), L"A film in fragments cannot be saved"},
        {"chunk outside", MakeFilm({.ShiftOfLast = 1000}), L"Chunk 3 of a track does not lie in an mdat atom"},
        {"keys", MakeFilm({.InTables = FullAtom("saio")}),
         L"The places of the keys of encrypted samples (saio) cannot be moved", true},
        {"positions", MakeFilm({.InMovie = Atom("gps ")}), L"The places of positions on the globe (gps) cannot be moved", true},
        {"compressed", MakeFilm({.InMovie = Atom("cmov")}), L"The places in a compressed movie (cmov) cannot be moved", true},
        {"meta", MakeFilm({.InMovie = Atom("meta", Zeros(20))}),
         L"A meta atom that is not understood may hold places in the file", true},
        {"media elsewhere", MakeFilm({.InTables = elsewhere}), L"The media of a track are in another file", true},
        {"media of an alias", MakeFilm({.InTables = alias}), L"The media of a track are in another file", true},
        {"item outside", withItems(ItemPlaces({Item(0, 8, 4)})), L"Item 1 does not lie in an mdat atom"},
        {"item half outside", withItems(ItemPlaces({Item(0, one, 7)})), L"Item 1 does not lie in an mdat atom"},
        {"item without a length", withItems(ItemPlaces({Item(0, one, 0)})), L"Item 1 does not lie in an mdat atom"},
        {"items in two", withItems(ItemPlaces({Item(0, one, 4), Item(0, two, 4)})),
         L"The items of the file lie in several mdat atoms"},
        {"item elsewhere", withItems(ItemPlaces({Item(0, one, 4, 1)})), L"Item 1 lies in another file"},
        {"item without an offset", withItems(ItemPlaces({Number(1, 2) + Zeros(2) + Number(one, 4) + Number(1, 2) + Number(4, 4)}, 0x0440)),
         L"The items of the file have no offsets of their own that could be moved"},
        {"indices that are not read", withItems(ItemPlaces({}, 0x4444, 1)), L"The places of the file's items are not understood"},
        {"base after the new place",
         MakeFilm({.Order = {"ftyp", "one", "two", "items", "moov"}, .Items = ItemPlaces({Item(32, 0, 2)}), .HasLargeHeaders = true}),
         L"Item 1 would lie where its offset does not reach"},
    };
    // clang-format on
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        Put("film.mp4", row.Film);
        CMp4File film;
        ASSERT_TRUE(Open(film, "film.mp4"));
        Grow(film, Added);
        EXPECT_FALSE(film.Save());
        EXPECT_EQ(std::wstring(film.GetLastError()), row.Error);
        EXPECT_EQ(GetAt("film.mp4"), row.Film);
        EXPECT_THAT(List(TemporaryFolder), testing::IsSubsetOf({"(none)"}));
        CMp4File again;
        ASSERT_TRUE(Open(again, "film.mp4"));
        EXPECT_EQ(again.Save(), row.OnlyWhenMoved) << "without a move";
    }
}

// What cannot be moved stays where it is, if the media can stay as well.
TEST_F(CMp4SaverTest, KeepsTheLengthOfHeadersInFrontOfWhatCannotBeMoved)
{
    const Bytes before = MakeFilm({
        .Order = {"ftyp", "one", "two", "moov"},
          .InMovie = Atom("gps "), .HasLargeHeaders = true
    });
    Put("film.mp4", before);
    CMp4File film;
    ASSERT_TRUE(Open(film, "film.mp4"));
    Grow(film, Added);
    EXPECT_TRUE(film.Save());
    EXPECT_EQ(film.GetLastError(), L"");
    const size_t movie = before.find("moov");
    EXPECT_EQ(GetAt("film.mp4").substr(0, movie - 4), before.substr(0, movie - 4));
}

// A film that somebody has put there, and then wants to tag.
TEST_F(CMp4SaverTest, ClearsAwayNoFilmThatLooksLikeATemporaryFile)
{
    const std::string name = std::string(TemporaryFolder) + "/TempMp4FileForTagging - 7.mp4";
    Put(name, MakeFilm());
    CMp4File film;
    ASSERT_TRUE(Open(film, name));
    Grow(film, Added);
    EXPECT_TRUE(film.Save());
    EXPECT_EQ(film.GetLastError(), L"");
    EXPECT_THAT(ReadChunks(GetAt(name)), ElementsAre("one!", "two!", "six!"));
}

// As a kill between two renames leaves it, where a file can have only one name.
TEST_F(CMp4SaverTest, FindsTheFilmThatStandsUnderItsSecondName)
{
    Put("film.mp4.zvoriginal", MakeFilm());
    Link("film.mp4", "link.mp4");
    CMp4File film;
    EXPECT_TRUE(Open(film, "link.mp4"));
    EXPECT_EQ(GetAt("film.mp4"), MakeFilm());
    EXPECT_FALSE(IsAt("film.mp4.zvoriginal"));
}

TEST_F(CMp4SaverTest, KeepsTheFilmWhenTheOneBehindItWasChanged)
{
    Put("film.mp4", MakeFilm());
    Put("second.mp4", MakeFilm());
    CMp4File film;
    CMp4File second;
    ASSERT_TRUE(Open(film, "film.mp4"));
    ASSERT_TRUE(Open(second, "second.mp4"));
    ASSERT_TRUE(film.Append(second));
    Put("second.mp4", MakeFilm());
    EXPECT_FALSE(film.Save());
    EXPECT_EQ(film.GetLastError(), L"A file that was merged into this one was changed after it was opened");
    EXPECT_EQ(GetAt("film.mp4"), MakeFilm());
    EXPECT_THAT(List(TemporaryFolder), IsEmpty());
}

// A film can be kept open and tried again.
TEST_F(CMp4SaverTest, KeepsTheFilmWhenTheFileIsNotTheOneThatWasOpened)
{
    const Bytes bytes = MakeFilm();
    CMp4File closed;
    EXPECT_FALSE(closed.Save());
    EXPECT_EQ(closed.GetLastError(), L"There is no open file to save");
    Put("film.mp4", bytes);
    CMp4File film;
    ASSERT_TRUE(film.Open(NameAt("film.mp4")));
    EXPECT_FALSE(film.Save());
    EXPECT_EQ(film.GetLastError(), L"The file was not verified as a film");
    ASSERT_TRUE(film.ReadAtoms());
    ASSERT_TRUE(film.Verify());
    Put("film.mp4", bytes);
    EXPECT_FALSE(film.Save());
    EXPECT_EQ(film.GetLastError(), L"The file was changed after it was opened: " + TextAt("film.mp4"));
    std::filesystem::remove(At("film.mp4"));
    EXPECT_FALSE(film.Save());
    EXPECT_EQ(film.GetLastError(), L"There is no such file on this machine: " + TextAt("film.mp4"));
    CMp4File inMemory;
    ASSERT_TRUE(inMemory.OpenStream(std::make_unique<MemoryFile>(bytes), NameAt("film.mp4")));
    ASSERT_TRUE(inMemory.ReadAtoms());
    ASSERT_TRUE(inMemory.Verify());
    EXPECT_FALSE(inMemory.Save());
    EXPECT_EQ(inMemory.GetLastError(), L"There is no such file on this machine: " + TextAt("film.mp4"));
}

TEST_F(CMp4SaverTest, FollowsLinks)
{
    Put("films/film.mp4", MakeFilm());
    Link("films/film.mp4", "link.mp4");
    std::filesystem::create_hard_link(At("films/film.mp4"), At("second.mp4"));
    CMp4File film;
    ASSERT_TRUE(Open(film, "link.mp4"));
    Grow(film, Added);
    EXPECT_TRUE(film.Save());
    EXPECT_TRUE(std::filesystem::is_symlink(At("link.mp4")));
    EXPECT_EQ(GetAt("films/film.mp4").size(), MakeFilm().size() + 8 + Added);
    EXPECT_EQ(GetAt("second.mp4"), MakeFilm());
    ExpectLogged("The other names of the file keep the old content: " + At("films/film.mp4"));
}

// The offsets in memory are what they were, so the next try writes the right ones.
TEST_F(CMp4SaverTest, AFailureOnTheWayLeavesTheFilmAndItsOffsets)
{
    Put("film.mp4", MakeFilm());
    const auto save = [&]
    {
        CMp4File film;
        ASSERT_TRUE(Open(film, "film.mp4"));
        Grow(film, size_t {100'000});
        signal(SIGXFSZ, SIG_IGN);
        rlimit limit {100'000, RLIM_INFINITY};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        EXPECT_FALSE(film.Save());
        EXPECT_EQ(film.GetLastError(),
                  L"Error 27 writing the new file: " + TextAt(TemporaryFolder) + L"/TempMp4FileForTagging.mp4");
        EXPECT_THAT(List(TemporaryFolder), IsEmpty());
        EXPECT_EQ(GetAt("film.mp4"), MakeFilm());
        limit.rlim_cur = RLIM_INFINITY;
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        EXPECT_TRUE(film.Save());
        EXPECT_THAT(ReadChunks(GetAt("film.mp4")), ElementsAre("one!", "two!", "six!"));
    };
    InChild(save);
}

TEST_F(CMp4SaverTest, RefusesWhereItMayNotWriteOrHasNoRoom)
{
    Put("folder/film.mp4", MakeFilm());
    Put("closed/film.mp4", MakeFilm());
    chmod(At("closed/film.mp4").c_str(), 0666);
    chmod(At("closed").c_str(), 0555);
    chmod(At("folder").c_str(), 0777);
    for (const auto& [name, error] :
         {std::pair("folder/film.mp4", L"The file may not be written: " + TextAt("folder/film.mp4")),
          std::pair("closed/film.mp4", L"No file may be replaced in the folder: " + TextAt("closed/"))})
    {
        const auto save = [&, file = name, expected = error]
        {
            CMp4File film;
            ASSERT_TRUE(Open(film, file));
            EXPECT_FALSE(film.Save());
            EXPECT_EQ(film.GetLastError(), expected);
        };
        AsNobody(save);
        EXPECT_EQ(GetAt(name), MakeFilm());
    }
    const auto saveWithoutRoom = [&]
    {
        Put("disk/film.mp4", MakeFilm({.InMovie = Atom("free", Zeros(40'000))}));
        CMp4File film;
        ASSERT_TRUE(Open(film, "disk/film.mp4"));
        EXPECT_FALSE(film.Save());
        EXPECT_TRUE(film.GetLastError().StartsWith(L"There is no room for the new file in " + TextAt("disk/")));
        EXPECT_THAT(List("disk"), ElementsAre("film.mp4"));
    };
    WithSmallDisk(saveWithoutRoom);
}
}
