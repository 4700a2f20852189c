#include "mp4/samples/FilmBytes.h"

#include "mp4/samples/CSTBLAtom.h"

#include <gtest/gtest.h>

using namespace FilmBytes;

namespace
{
// The tables of a film's only track.
CSTBLAtom& TablesOf(const Film& film)
{
    return *film.Find<CSTBLAtom>({"trak", "mdia", "minf", "stbl"});
}

Bytes FilmWith(const Tables& tables)
{
    return Movie(Track("vide", tables.Make()));
}

// A movie whose offsets are counted from the end of its own atom, behind which the mdat atoms of a test stand.
Bytes FilmWithOffsets(std::vector<uint64_t> offsets, const Bytes& type = "stco")
{
    const int width = type == "stco" ? 4 : 8;
    const uint64_t size = FilmWith({.Offsets = Table(type, offsets, 1, width)}).size();
    for (uint64_t& offset : offsets)
        offset += size;
    return FilmWith({.Offsets = Table(type, offsets, 1, width)});
}

// The places in the list of the mdat atoms that the chunks lie in, up to the first that lies in none.
std::vector<int32_t> MatchedPlaces(const Film& film)
{
    const CChunkOffsetAtomBase& offsets = *TablesOf(film).GetChunkOffsets();
    std::vector<int32_t> places;
    for (uint32_t chunk = 0; chunk < offsets.GetMatchedCount(); ++chunk)
        places.push_back(film.Mdats.Find(offsets.GetMdat(chunk)));
    EXPECT_EQ(offsets.GetMdat(offsets.GetMatchedCount()), nullptr);
    return places;
}
}

TEST(SampleTables, ThatAreLongerThanTheirAtomFail)
{
    for (const char* const type : {"stts", "stsc", "stco", "co64", "stss"})
    {
        SCOPED_TRACE(type);
        EXPECT_EQ(Tree(FullAtom(type, Number(0xffffffff, 4) + Zeros(30))).Message, ReadPastEnd);
        EXPECT_NE(Tree(FullAtom(type, Number(2, 4) + Zeros(2)) + Zeros(30)).Message.Find(L"Expected empty size"), -1);
    }
    EXPECT_EQ(Tree(FullAtom("stsz", Number(0, 4) + Number(0xffffffff, 4))).Message, ReadPastEnd);
    // With a size for all of them nothing follows.
    EXPECT_NE(Tree(FullAtom("stsz", Number(5, 4) + Number(1, 4) + Zeros(4))).Message.Find(L"Expected empty size"), -1);
}

TEST(SampleTables, AgreeOnTheSmallerCount)
{
    const std::vector<uint64_t> tenChunks = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    const struct
    {
        const char* Name;
        Bytes SamplesOfChunks;
        uint32_t Samples;
    } rows[] = {
        {"more than there are sizes",      Chunks({1, 200, 1}),                           1000},
        {"fewer",                          Chunks({1, 90, 1}),                            900 },
        {"two runs",                       Chunks({1, 90, 1, 10, 1, 1}),                  811 },
        {"a run of none",                  Chunks({1, 50, 1, 3, 0, 1, 8, 1, 1}),          103 },
        {"no entries",                     Chunks({}),                                    0   },
        {"no samples",                     Chunks({1, 0, 1}),                             0   },
        {"chunks in front of all entries", Chunks({3, 50, 1, 5, 10, 1}),                  160 },
        {"a first chunk of 0",             Chunks({0, 50, 1, 2, 10, 1}),                  140 },
        {"twice the same first chunk",     Chunks({1, 7, 1, 3, 50, 1, 3, 10, 1}),         94  },
        {"second begins after the third",  Chunks({1, 7, 1, 9, 50, 1, 4, 10, 1}),         91  },
        {"descending",                     Chunks({9, 7, 1, 5, 50, 1, 1, 3, 1}),          30  },
        {"after the last chunk",           Chunks({1, 7, 1, 10, 3, 1, 4000000000, 9, 1}), 66  },
        {"sums beyond 32 bits",            Chunks({1, 0xffffffff, 1}),                    1000},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const Film film(FilmWith(
            {.SamplesOfChunks = row.SamplesOfChunks, .SampleSizes = FixedSizes(1, 1000), .Offsets = Table("stco", tenChunks)}));
        EXPECT_EQ(film.Message, L"");
        EXPECT_EQ(TablesOf(film).GetSampleCount(), row.Samples);
    }
}

TEST(SampleTables, MustBeComplete)
{
    const Bytes offsets = Table("stco", {0});
    const wchar_t* const wrongOffsets = L"stbl atom has wrong number of stco or co64 atoms";
    const struct
    {
        Tables Parts;
        const wchar_t* Message;
    } rows[] = {
        {{.Entries = {}},                      L"stbl atom has wrong number of stsd atoms"},
        {{.Times = {}},                        L"stbl atom has wrong number of stts atoms"},
        {{.SamplesOfChunks = {}},              L"stbl atom has wrong number of stsc atoms"},
        {{.Others = FixedSizes(1, 1)},         L"stbl atom has wrong number of stsz atoms"},
        {{.Offsets = {}},                      wrongOffsets                               },
        {{.Others = offsets},                  wrongOffsets                               },
        {{.Others = Table("co64", {0}, 1, 8)}, wrongOffsets                               },
    };
    for (const auto& row : rows)
        EXPECT_EQ(Film(FilmWith(row.Parts)).Message, row.Message);
}

TEST(SampleTables, FindTheMdatOfEachChunk)
{
    // Behind the movie: data from 8 to 18, none, from 42 to 52, and from 68 to 70 of a file that should go on up to 168.
    const Bytes behind =
        Atom("mdat", Zeros(10)) + Atom("mdat") + LargeAtom("mdat", Zeros(10)) + Atom("wide") + Number(108, 4) + "mdat" + Zeros(2);
    using Places = std::vector<int32_t>;
    const struct
    {
        const char* Name;
        std::vector<uint64_t> Offsets;
        Places Expected;
    } rows[] = {
        {"first and last byte of each", {8, 17, 42, 51, 68, 69}, {0, 0, 2, 2, 3, 3}},
        {"to and fro",                  {8, 42, 9, 43, 43},      {0, 2, 0, 2, 2}   },
        {"in front of the data",        {8, 7, 9},               {0}               },
        {"behind the data",             {18},                    {}                },
        {"no chunks",                   {},                      {}                },
        {"in a header",                 {42, 60, 8},             {2}               },
        {"beyond the end of the file",  {167, 168},              {3}               },
    };
    for (const auto& row : rows)
    {
        for (const char* const type : {"stco", "co64"})
        {
            SCOPED_TRACE(row.Name);
            const Film film(FilmWithOffsets(row.Offsets, type) + behind);
            EXPECT_EQ(film.Message, L"");
            EXPECT_EQ(MatchedPlaces(film), row.Expected);
        }
    }
    EXPECT_EQ(MatchedPlaces(Film(FilmWithOffsets({8}))), Places());
}

// The list is not always in the order of the file, and then the order of the list decides.
TEST(SampleTables, FindTheFirstMdatOfTheList)
{
    // Each number of bytes is what the header says; data of 100 lie over all that follows.
    struct Mdat
    {
        uint64_t Start;
        uint64_t Size;
    };
    const std::vector<std::vector<Mdat>> lists = {
        {{100, 10},  {90, 30},  {80, 100}, {95, 10}, {100, 10}},
        {{80, 100},          {90, 10}          },
        {{90, 10}, {80, 100},  {85, 10}  },
        {{120, 10}, {100, 10}, {110, 10},        {105, 20}},
        {{100, 0},  {100, 5},   {104, 1},   {105, 1}       },
    };
    for (const auto& list : lists)
    {
        // One file for each atom, so that it can lie anywhere.
        std::vector<std::unique_ptr<Tree>> files;
        CMDATList mdats;
        for (const Mdat& mdat : list)
        {
            files.push_back(std::make_unique<Tree>(Atom("free", Zeros(mdat.Start - 16)) + Number(mdat.Size + 8, 4) + "mdat"));
            mdats.Add(static_cast<CMDATAtom*>(files.back()->Roots.back().get()));
        }
        const CMDATIndex index(mdats);
        for (uint64_t offset = 75; offset < 190; ++offset)
        {
            const auto expected =
                std::ranges::find_if(list, [offset](const Mdat& mdat) { return offset - mdat.Start < mdat.Size; }) - list.begin();
            const CMDATRange* const range = index.Find(offset);
            const CMDATAtom* const atom = range == nullptr ? nullptr : range->Atom;
            EXPECT_EQ(atom, expected == std::ssize(list) ? nullptr : mdats[static_cast<int32_t>(expected)]) << offset;
        }
    }
}

TEST(SampleTables, FindWhereASampleLies)
{
    constexpr uint64_t None = UINT64_MAX;
    const std::vector<uint64_t> sizes = {1, 2, 3, 4, 5, 6, 7};
    const struct
    {
        const char* Name;
        Bytes SamplesOfChunks;
        std::vector<uint64_t> Expected;
    } rows[] = {
        {"one entry",                  Chunks({1, 3, 1}),                   {100, 101, 103, 200, 204, 209, 300}       },
        {"one entry that begins late", Chunks({2, 3, 1}),                   {100, 101, 103, 200, 204, 209, None}      },
        {"runs",                       Chunks({1, 1, 1, 2, 2, 1}),          {100, 200, 202, 300, 304, None, None}     },
        {"an empty run",               Chunks({1, 2, 1, 2, 0, 1, 3, 4, 1}), {100, 101, 300, 303, 307, 312, None}      },
        {"an empty last run",          Chunks({1, 2, 1, 3, 0, 1}),          {100, 101, 200, 203, None, None, None}    },
        {"no samples",                 Chunks({1, 0, 1}),                   {None, None, None, None, None, None, None}},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const Film film(FilmWith(
            {.SamplesOfChunks = row.SamplesOfChunks, .SampleSizes = Sizes(sizes), .Offsets = Table("stco", {100, 200, 300})}));
        // In ascending order and back again, since places are found from the last one.
        for (int32_t step = 0; step < 14; ++step)
        {
            const auto sample = static_cast<size_t>(step < 7 ? step : 13 - step);
            const CSamplePlace place = TablesOf(film).FindSample(static_cast<uint32_t>(sample));
            EXPECT_EQ(place.IsFound ? place.Offset : None, row.Expected[sample]) << sample;
            EXPECT_EQ(place.Size, place.IsFound ? sizes[sample] : 0) << sample;
        }
        EXPECT_FALSE(TablesOf(film).FindSample(7).IsFound);
    }
}
