#include "mp4/CMp4File.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "mp4/samples/CSTBLAtom.h"
#include "samples/FilmBytes.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace FilmBytes;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

Bytes Brand(const Bytes& major, uint32_t minor)
{
    return Atom("ftyp", major + Number(minor, 4));
}

Bytes Edit(uint32_t duration, uint32_t mediaTime = 0, uint32_t rate = 0x10000)
{
    return Atom("edts", Table("elst", {duration, mediaTime, rate}, 3));
}

Bytes References(const Bytes& location)
{
    return Atom("dinf", FullAtom("dref", Number(1, 4) + FullAtom("url ", location)));
}

// Where the data of the first mdat begin in a film with a brand of 16 bytes.
constexpr uint32_t DataStart = 24;

// A film of one track, whose parts a test may replace. It has two samples of two bytes, each in a chunk of its own.
struct Parts
{
    Bytes FirstAtom = Brand("isom", 1);
    Bytes Data = Atom("mdat", "aabb");
    Bytes LastAtom = {};
    uint32_t MovieTimescale = 600;
    int MovieVersion = 0;
    uint64_t MovieDuration = 1200;
    uint32_t Timescale = 1000;
    Bytes Handler = "vide";
    Bytes Matrix = Zeros(36);
    Bytes InTrack = {};
    Bytes InInformation = {};
    Bytes InMovie = {};
    Tables Samples = {.Entries = Descriptions({VideoEntry()}),
                      .Times = Table("stts", {2, 1000}, 2),
                      .SamplesOfChunks = Chunks({1, 1, 1}),
                      .SampleSizes = Sizes({2, 2}),
                      .Offsets = Table("stco", {DataStart, DataStart + 2})};

    Bytes MakeTrack() const
    {
        const Bytes header =
            FullAtom("tkhd", Zeros(8) + Number(1, 4) + Zeros(4) + Number(1200, 4) + Zeros(16) + Matrix + Zeros(8));
        const Bytes mediaHeader = FullAtom("mdhd", Zeros(8) + Number(Timescale, 4) + Number(2000, 4) + Zeros(4));
        return Atom("trak", header + InTrack +
                                Atom("mdia", mediaHeader + FullAtom("hdlr", "mhlr" + Handler + Zeros(12)) +
                                                 Atom("minf", InInformation + Samples.Make())));
    }
    Bytes MakeMovie(const Bytes& tracks) const
    {
        const int width = MovieVersion == 0 ? 4 : 8;
        return Atom("moov", FullAtom("mvhd",
                                     Zeros(2 * static_cast<size_t>(width)) + Number(MovieTimescale, 4) +
                                         Number(MovieDuration, width) + Zeros(80),
                                     MovieVersion) +
                                tracks + InMovie);
    }
    Bytes Make() const { return FirstAtom + Data + MakeMovie(MakeTrack()) + LastAtom; }
};

void Open(CMp4File& file, std::unique_ptr<CGeneralReader> stream)
{
    EXPECT_TRUE(file.OpenStream(std::move(stream), ZVFilename::FromPath(L"film.mp4")));
    EXPECT_TRUE(file.ReadAtoms());
    EXPECT_TRUE(file.Verify());
}

void Open(CMp4File& file, const Bytes& bytes)
{
    Open(file, std::make_unique<MemoryFile>(bytes));
}

// A film that was merged of several, written and read again.
struct Merged : Tree
{
    explicit Merged(const std::vector<Bytes>& films) : Tree(Merge(films))
    {
        for (const auto& root : Roots)
        {
            if (root->GetType() == FourCC("mdat"))
                Mdats.Add(static_cast<CMDATAtom*>(root.get()));
            if (root->GetType() == FourCC("moov"))
                Movie = static_cast<CMOOVAtom*>(root.get());
        }
        Movie->Verify(Mdats, true);
    }

    static Bytes Merge(const std::vector<Bytes>& films)
    {
        CMp4File first;
        Open(first, films.front());
        for (size_t index = 1; index < films.size(); ++index)
        {
            CMp4File next;
            Open(next, films[index]);
            EXPECT_TRUE(first.Append(next));
            EXPECT_EQ(first.GetLastError(), L"");
        }
        return WriteAll(first.GetRootAtoms());
    }

    // The samples of a track, one after the other.
    Bytes GetMedia(size_t track = 0)
    {
        Bytes media;
        const CSTBLAtom& tables = *Movie->GetTracks()[track]->GetSampleTables();
        for (uint32_t sample = 0; sample < tables.GetSampleCount(); ++sample)
        {
            const CSamplePlace place = tables.FindSample(sample);
            Bytes bytes(place.Size, '?');
            File.ReadAt(static_cast<int64_t>(place.Offset), bytes.data(), static_cast<int64_t>(bytes.size()));
            media += bytes;
        }
        return media;
    }
    std::vector<uint32_t> GetSyncSamples() const
    {
        const CAtomTable& samples = Movie->GetTracks()[0]->GetSampleTables()->GetSyncSamples()->GetSamples();
        std::vector<uint32_t> numbers;
        for (uint32_t row = 0; row < samples.GetCount(); ++row)
            numbers.push_back(samples.Get<uint32_t>(row));
        return numbers;
    }

    CMDATList Mdats;
    CMOOVAtom* Movie = nullptr;
};

TEST(CMp4MergerTest, PutsSamplesBehindThoseOfTheFirstFilm)
{
    Parts second;
    second.FirstAtom = Brand("isom", 1) + Atom("free", "space");
    second.Data = Atom("mdat", "..ccddee");
    const uint32_t start = DataStart + 13 + 2;
    second.Samples.Times = Table("stts", {1, 1000, 2, 500}, 2);
    second.Samples.SamplesOfChunks = Chunks({1, 2, 1, 2, 1, 1, 9, 7, 1});
    second.Samples.SampleSizes = Sizes({2, 2, 2});
    second.Samples.Offsets = Table("stco", {start, start + 4});
    Merged film({Parts().Make(), second.Make(), Parts().Make()});
    EXPECT_EQ(film.GetMedia(), "aabbccddeeaabb");
    EXPECT_EQ(film.Mdats.GetCount(), 1);
    EXPECT_EQ(film.Movie->GetDuration(), 3600U);
    const CTRAKAtom& track = *film.Movie->GetTracks()[0];
    EXPECT_EQ(track.GetHeader()->GetDuration(), 3600U);
    EXPECT_EQ(track.GetMedia()->GetHeader()->GetDuration(), 6000U);
    EXPECT_EQ(track.GetSampleTables()->GetTimes()->GetTotalDuration(), 2000U + 2000U + 2000U);
    // What was said of chunks that the second film does not have is not said of those of the third.
    EXPECT_EQ(film.Write().substr(film.Write().find("stsc")).substr(8, 4 + 5 * 12 - 12),
              Number(4, 4) + Number(1, 4) + Number(1, 4) + Number(1, 4) + Number(3, 4) + Number(2, 4) + Number(1, 4) +
                  Number(4, 4) + Number(1, 4) + Number(1, 4) + Number(5, 4) + Number(1, 4) + Number(1, 4));
}

TEST(CMp4MergerTest, TakesMediaOfSeveralMdatAtomsAndOffsetsOfBothWidths)
{
    Parts parts;
    parts.Data = Atom("mdat", "aa") + Atom("free") + Atom("mdat", "xbb");
    parts.Samples.Offsets = Table("stco", {DataStart, DataStart + 19});
    Parts wide = parts;
    wide.Data = Atom("mdat", "cc") + Atom("free") + Atom("mdat", "xdd");
    wide.Samples.Offsets = Table("co64", {DataStart, DataStart + 19}, 1, 8);
    EXPECT_EQ(Merged({parts.Make(), parts.Make(), wide.Make()}).GetMedia(), "aabbaabbccdd");
    EXPECT_EQ(Merged({wide.Make(), parts.Make()}).GetMedia(), "ccddaabb");
}

// Without a list all samples are such.
TEST(CMp4MergerTest, ListsTheSyncSamplesOfBothFilms)
{
    const Parts all;
    Parts listed;
    listed.Samples.Others = Table("stss", {2});
    EXPECT_THAT(Merged({listed.Make(), listed.Make()}).GetSyncSamples(), ElementsAre(2, 4));
    EXPECT_THAT(Merged({listed.Make(), all.Make()}).GetSyncSamples(), ElementsAre(2, 3, 4));
    EXPECT_THAT(Merged({all.Make(), listed.Make()}).GetSyncSamples(), ElementsAre(1, 2, 4));
}

TEST(CMp4MergerTest, AddsDurationsOfAnyWidthAndTimescale)
{
    struct Row
    {
        const char* Name;
        int FirstVersion;
        uint64_t First;
        int SecondVersion;
        uint64_t Second;
        uint32_t SecondTimescale;
        uint64_t Expected;
    };
    const Row rows[] = {
        {"beyond 32 bits",      0, 0xffff'fff0, 0, 0x20,       600,  0x1'0000'0010},
        {"of other versions",   0, 100,         1, 50,         600,  150          },
        {"of other timescales", 0, 1200,        0, 1000,       1000, 1800         },
        {"rounded",             0, 0,           0, 5,          1000, 3            },
        {"first is not known",  0, UINT32_MAX,  0, 1,          600,  UINT32_MAX   },
        {"second is not known", 1, 7,           0, UINT32_MAX, 600,  UINT64_MAX   },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        Parts first, second;
        first.MovieVersion = row.FirstVersion;
        first.MovieDuration = row.First;
        second.MovieVersion = row.SecondVersion;
        second.MovieDuration = row.Second;
        second.MovieTimescale = row.SecondTimescale;
        EXPECT_EQ(Merged({first.Make(), second.Make()}).Movie->GetDuration(), row.Expected);
    }
}

TEST(CMp4MergerTest, SortsTracksByTheirKinds)
{
    const auto makeFilm = [](const Bytes& data, const std::vector<const char*>& handlers)
    {
        Parts parts;
        parts.Data = Atom("mdat", data);
        Bytes tracks;
        for (const Bytes handler : handlers)
        {
            parts.Handler = handler;
            parts.Samples.Entries = Descriptions({handler == "vide" ? VideoEntry() : SoundEntry("ac-3")});
            const uint32_t start = DataStart + (handler == "vide" ? 0 : 4);
            parts.Samples.Offsets = Table("stco", {start, start + 2});
            tracks += parts.MakeTrack();
        }
        return parts.FirstAtom + parts.Data + parts.MakeMovie(tracks);
    };
    Merged film({makeFilm("aabbAABB", {"vide", "soun"}), makeFilm("ccddCCDD", {"soun", "vide"})});
    EXPECT_EQ(film.GetMedia(0), "aabbccdd");
    EXPECT_EQ(film.GetMedia(1), "AABBCCDD");
    for (const auto& [first, second] : {std::pair(makeFilm("aabb", {"vide"}), makeFilm("aabbAABB", {"vide", "soun"})),
                                        std::pair(makeFilm("aabbAABB", {"vide", "soun"}), makeFilm("AABB", {"vide", "vide"}))})
    {
        CMp4File one, other;
        Open(one, first);
        Open(other, second);
        EXPECT_FALSE(one.Append(other));
        EXPECT_EQ(one.GetLastError(), L"MOOVAtom Append not finished trak");
    }
}

TEST(CMp4MergerTest, AddsUpTheEditsOfWholeTracks)
{
    Parts first, second;
    first.InTrack = Edit(1200) + Atom("tref", Atom("sync", Number(7, 4)));
    second.InTrack = Edit(0xffff'ff00) + Atom("tref", Atom("sync", Number(8, 4)) + Atom("hint", Number(9, 4)));
    second.FirstAtom = Brand("mp42", 2);
    FakeTools tools;
    g_pZVTools = &tools;
    const Merged film({first.Make(), second.Make()});
    g_pZVTools = nullptr;
    const Bytes edit = Number(1, 4) + Number(1200 + 0xffff'ff00ULL, 8) + Number(0, 8) + Number(0x10000, 4);
    EXPECT_THAT(film.Write(), HasSubstr(FullAtom("elst", edit, 1)));
    EXPECT_THAT(film.Write(), HasSubstr(Atom("tref", Atom("sync", Number(7, 4)))));
    EXPECT_THAT(tools.Manager.Lines, ElementsAre(EndsWith("|Warning: FTYP Major brands incompatible: isom and mp42\n"),
                                                 EndsWith("|Warning: FTYP minor versions incompatible: 1 and 2\n"),
                                                 EndsWith("|Warning skipping append of sync TrackReferenceTypeAtom\n"),
                                                 EndsWith("|Warning skipping append of hint TrackReferenceTypeAtom\n")));
}

// Its media are zeros that nobody stores.
class LongFile final : public MemoryFile
{
public:
    using MemoryFile::MemoryFile;

    int64_t GetLength() override { return MemoryFile::GetLength() + Size; }

    static constexpr int64_t Size = 0x9000'0000;
};

// What is longer than 32 bits count gets a table for it, and what is in front may still grow.
TEST(CMp4MergerTest, MakesRoomForOffsetsOfManyGigabytes)
{
    Parts parts;
    const uint32_t start = static_cast<uint32_t>(16 + parts.MakeMovie(parts.MakeTrack()).size() + 16);
    parts.Samples.Offsets = Table("stco", {start, start + 2});
    const Bytes film =
        parts.FirstAtom + parts.MakeMovie(parts.MakeTrack()) + Number(1, 4) + "mdat" + Number(16 + LongFile::Size, 8);
    CMp4File first, second;
    Open(first, std::make_unique<LongFile>(film));
    Open(second, std::make_unique<LongFile>(film));
    ASSERT_TRUE(first.Append(second));
    CMOOVAtom& movie = static_cast<CMOOVAtom&>(*first.GetRootAtoms()[1]);
    const CChunkOffsetAtomBase& chunks = *movie.GetTracks()[0]->GetSampleTables()->GetChunkOffsets();
    EXPECT_EQ(chunks.GetType(), FourCC("co64"));
    EXPECT_EQ(chunks.GetOffset(3), start + uint64_t {LongFile::Size} + 2);
    movie.ConvertToRelative();
    EXPECT_EQ(chunks.GetOffset(3), uint64_t {LongFile::Size} + 2);
}

// A change to both films, and what is said then.
struct Refusal
{
    const char* Name;
    std::function<void(Parts& first, Parts& second)> Change;
    const wchar_t* Error;
};

void PrintTo(const Refusal& row, std::ostream* stream)
{
    *stream << row.Name;
}

class MergeRefusalTest : public testing::TestWithParam<Refusal>
{
};

TEST_P(MergeRefusalTest, LeavesBothFilmsAsTheyWere)
{
    Parts one, other;
    GetParam().Change(one, other);
    CMp4File first, second;
    Open(first, one.Make());
    Open(second, other.Make());
    const Bytes firstBytes = WriteAll(first.GetRootAtoms());
    const Bytes secondBytes = WriteAll(second.GetRootAtoms());
    EXPECT_FALSE(first.Append(second));
    EXPECT_EQ(first.GetLastError(), GetParam().Error);
    EXPECT_EQ(WriteAll(first.GetRootAtoms()), firstBytes);
    EXPECT_EQ(WriteAll(second.GetRootAtoms()), secondBytes);
}

// Gives the second film one thing that the first one has otherwise.
auto Second(Bytes Parts::*part, const Bytes& value)
{
    return [=](Parts&, Parts& second) { second.*part = value; };
}

auto Both(Bytes Parts::*part, const Bytes& one, const Bytes& other)
{
    return [=](Parts& first, Parts& second)
    {
        first.*part = one;
        second.*part = other;
    };
}

auto Both(Bytes Tables::*table, const Bytes& one, const Bytes& other)
{
    return [=](Parts& first, Parts& second)
    {
        first.Samples.*table = one;
        second.Samples.*table = other;
    };
}

auto SecondTable(Bytes Tables::*table, const Bytes& value)
{
    return [=](Parts&, Parts& second) { second.Samples.*table = value; };
}

const Bytes Sound = SoundEntry("ac-3", Atom("dac3", "abc"));

// Sound that is like the other but for one byte of its description.
auto SoundWith(size_t offset, char byte)
{
    Bytes entry = Sound;
    entry[offset] = byte;
    return Both(&Tables::Entries, Descriptions({Sound}), Descriptions({entry}));
}

auto Descriptor(const Bytes& type, const Bytes& own, const Bytes& other)
{
    return Both(&Tables::Entries, Descriptions({VideoEntry("avc1", Atom(type, own))}),
                Descriptions({VideoEntry("avc1", Atom(type, other))}));
}

const Bytes TwoEdits = Atom("edts", Table("elst", {1, 0, 0x10000, 1, 0, 0x10000}, 3));

// clang-format off
const Refusal Refusals[] = {
    // The files.
    {"Fragments", Second(&Parts::LastAtom, Atom("moof")), L"Error: cannot merge moof atom"},
    {"OwnFragments", Both(&Parts::LastAtom, Atom("moof"), ""), L"The first file is a film in fragments"},
    {"NoRoomForMedia", [](Parts& first, Parts&)
        {
            first.Data = "";
            first.Samples = {.Times = Table("stts", {}), .SamplesOfChunks = Chunks({}), .SampleSizes = Sizes({}), .Offsets = Table("stco", {})};
        }, L"The first file has no mdat atom that could take the media of the second"},
    {"CutMedia", Both(&Parts::LastAtom, Number(100, 4) + "mdatx", ""), L"The media of the first file are cut"},
    {"OtherCutMedia", Second(&Parts::LastAtom, Number(100, 4) + "mdatx"), L"The media of the second file are cut"},
    {"LostChunk", Both(&Tables::Offsets, Table("stco", {DataStart, 5000}), Parts().Samples.Offsets),
     L"A chunk of the first file lies in no mdat atom"},
    {"OtherLostChunk", SecondTable(&Tables::Offsets, Table("stco", {3, DataStart})), L"A chunk of the second file lies in no mdat atom"},
    // Lists of atoms.
    {"OpaqueTwice", Both(&Tables::Others, Atom("ctts", "1"), Atom("ctts", "2")), L"Append not implemented for this atom"},
    {"OpaqueHere", Both(&Tables::Others, Atom("ctts"), ""), L"Append not implemented for this atom"},
    {"OpaqueThere", SecondTable(&Tables::Others, Atom("ctts")), L"CContainerAtom::AppendMissing not implemented for stbl"},
    {"Several", Both(&Parts::InInformation, Atom("dinf") + Atom("dinf"), Atom("dinf")),
     L"CContainerAtom::AppendMultiple not implemented for minf with child dinf"},
    {"Missing", Second(&Parts::InTrack, Edit(1)), L"CContainerAtom::AppendMissing not implemented for trak"},
    // Tracks.
    {"OtherTimescale", [](Parts&, Parts& second) { second.Timescale = 999; }, L"MDHD: Timescales are different\n"},
    {"NoMovieTimescale", [](Parts&, Parts& second) { second.MovieTimescale = 0; }, L"mvhd: The durations cannot be added"},
    {"TooLong", [](Parts& first, Parts&) { first.MovieVersion = 1; first.MovieDuration = UINT64_MAX - 5; },
     L"mvhd: The durations cannot be added"},
    {"OtherHandler", Second(&Parts::Handler, "soun"), L"HDLR: Handler types are different"},
    {"OtherVideoHeader", Both(&Parts::InInformation, FullAtom("vmhd", Zeros(8)), FullAtom("vmhd", Zeros(7) + "1")),
     L"VMHD Atom has different data"},
    {"Turned", Second(&Parts::Matrix, Zeros(35) + "1"), L"TKHD: The tracks have different sizes or rotations"},
    {"MediaElsewhere", Both(&Parts::InInformation, References(""), References("http://host/film")),
     L"Cannot merge content referred to by URL"},
    {"SeveralEdits", Both(&Parts::InTrack, Edit(1), TwoEdits), L"Cannot merge ELST boxes with multiple entries"},
    {"LateEdit", Both(&Parts::InTrack, Edit(1, 0, 0x20001), Edit(1, 0xffffffff)),
     L"ELST boxes are too complex to merge.\r\nMedia Time (should be 0): 0 18446744073709551615\r\n"
     L"Media Rate Int (should be 1): 2 1\r\nMedia Rate Frac (should be 0): 1 0"},
    {"OwnEdit", Both(&Parts::InTrack, Edit(1), ""), L"Cannot merge a track without an ELST box with one that has it"},
    // Samples.
    {"OtherSizes", SecondTable(&Tables::SampleSizes, FixedSizes(2, 2)), L"STSZ Sample Size is different"},
    {"TooManySamples", Both(&Tables::SampleSizes, FixedSizes(2, 0x80000000), FixedSizes(2, 0x80000000)),
     L"STSZ: The tracks have too many samples"},
    {"TooManyToList", [](Parts& first, Parts& second)
        { first.Samples.SampleSizes = FixedSizes(2, 0xf0000000); second.Samples.Others = Table("stss", {1}); },
     L"STSS: A track has too many samples"},
    {"TooFewTimes", SecondTable(&Tables::Times, Table("stts", {1, 1000}, 2)), L"The tables of a track are not about the same samples"},
    {"TooManyInChunks", SecondTable(&Tables::SamplesOfChunks, Chunks({1, 2, 1})), L"The tables of a track are not about the same samples"},
    {"ChunksOutOfOrder", SecondTable(&Tables::SamplesOfChunks, Chunks({2, 1, 1, 1, 1, 1})),
     L"The tables of a track are not about the same samples"},
    {"SyncBehindTheEnd", SecondTable(&Tables::Others, Table("stss", {1, 3})), L"The tables of a track are not about the same samples"},
    // Descriptions.
    {"MoreDescriptions", SecondTable(&Tables::Entries, Descriptions({VideoEntry(), VideoEntry()})), L"STSD: Mismatched number of children"},
    {"OtherVideo", SecondTable(&Tables::Entries, Descriptions({VideoEntry("mp4v")})), L"VIDEAtom: different types"},
    {"OtherVideoCodec", Both(&Tables::Entries, Descriptions({VideoEntry("mp4v")}),
        Descriptions({VideoEntry("mp4v", FullAtom("esds", Bytes("\x03\x12") + Number(1, 2) + Zeros(1) + "\x04\x0d\x6c"))})),
     L"VIDEAtom: Different encodings"},
    {"OtherParameters", Descriptor("avcC", "1", "2"), L"STSD: The avcC atoms of the avc1 descriptions are different"},
    {"MissingParameters", SecondTable(&Tables::Entries, Descriptions({VideoEntry("avc1", Atom("pasp"))})),
     L"STSD: The avc1 descriptions are different"},
    {"OtherUnknown", Both(&Tables::Entries, Descriptions({Atom("hvc1", "1")}), Descriptions({Atom("hvc1", "2")})),
     L"STSD: The hvc1 descriptions are different"},
    {"OtherHints", Both(&Tables::Entries, Descriptions({Atom("rtp ", Zeros(16))}), Descriptions({Atom("rtp ", Zeros(15) + "1")})),
     L"STSD: The rtp  descriptions are different"},
    {"OtherSound", Both(&Tables::Entries, Descriptions({Sound}), Descriptions({SoundEntry("ec-3")})), L"Sound tracks have different types"},
    {"OtherChannels", SoundWith(25, 6), L"Sound tracks have different number of channels"},
    {"OtherSampleSize", SoundWith(27, 24), L"Sound tracks have different sample sizes"},
    {"OtherSampleRate", SoundWith(33, 1), L"Sound tracks have different sample rates"},
    {"OtherCompression", SoundWith(29, 1), L"Sound tracks have different encodings"},
    {"OtherSoundParameters", SoundWith(Sound.size() - 1, 'x'), L"STSD: The dac3 atoms of the ac-3 descriptions are different"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, MergeRefusalTest, testing::ValuesIn(Refusals), [](const auto& row) { return row.param.Name; });

// Of what only a program keeps to itself the own side stays.
TEST(CMp4MergerTest, KeepsTheOwnTagsAndBitRates)
{
    Parts first, second;
    first.InMovie = Atom("udta", "own") + Atom("free", "one");
    second.InMovie = Atom("udta", "other") + Atom("meta", Zeros(8)) + Atom("free") + Atom("free");
    first.Samples.Entries = Descriptions({VideoEntry("avc1", Atom("avcC", "same") + Atom("btrt", "1"))});
    second.Samples.Entries = Descriptions({VideoEntry("avc1", Atom("btrt", "2") + Atom("avcC", "same"))});
    EXPECT_THAT(Merged({first.Make(), second.Make()}).Write(), EndsWith(first.InMovie));
}

TEST(CMp4MergerTest, NeedsTwoVerifiedFiles)
{
    CMp4File file, closed;
    Open(file, Parts().Make());
    EXPECT_FALSE(file.Append(file));
    EXPECT_EQ(file.GetLastError(), L"A file cannot be merged with itself");
    EXPECT_FALSE(file.Append(closed));
    EXPECT_FALSE(closed.Append(file));
    EXPECT_EQ(closed.GetLastError(), L"Only files that were verified can be merged");
}
}
