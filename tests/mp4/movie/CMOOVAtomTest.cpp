#include "mp4/samples/FilmBytes.h"

#include "mp4/samples/CSTBLAtom.h"

#include <gtest/gtest.h>

using namespace FilmBytes;

namespace
{
const Bytes SoundTables = Tables {.Entries = Descriptions({SoundEntry()})}.Make();
const Bytes VideoTables = Tables {}.Make();
const Bytes UnknownTables = Tables {.Entries = Descriptions({Atom("hvc1", Zeros(78))})}.Make();
}

TEST(CMOOVAtom, SortsItsTracksByHandlerAndDescriptions)
{
    // A handler that says nothing of sound or picture leaves it to the descriptions; one that does has the last word.
    const Film film(Movie(Track("text", UnknownTables) + Track("text", SoundTables) + Track("vide", UnknownTables) +
                          Track("soun", SoundTables) + Track("meta", VideoTables)));
    EXPECT_EQ(film.Message, L"");
    const CMOOVAtom& movie = film.GetMovie();
    const auto& tracks = movie.GetTracks();
    ASSERT_EQ(tracks.size(), 5U);
    EXPECT_EQ(movie.GetAudioTracks(), (std::vector<CTRAKAtom*> {tracks[1], tracks[3]}));
    EXPECT_EQ(movie.GetVideoTracks(), (std::vector<CTRAKAtom*> {tracks[2], tracks[4]}));
    EXPECT_EQ(movie.GetMediaType(), 'v');
    EXPECT_EQ(movie.GetChannels(), 2);
    EXPECT_EQ(movie.GetBitDepth(), 16);
    EXPECT_EQ(movie.GetSampleRate(), 48000);
    // The first video track has an entry that is not understood.
    EXPECT_EQ(movie.GetWidth(), 0);
    EXPECT_EQ(movie.GetVideoObjectType(), 0);
    EXPECT_EQ(tracks[1]->GetDurationInSeconds(), 2.5);
}

TEST(CMOOVAtom, CountsFramesThatTheTablesAgreeOn)
{
    // 100 sizes, but 8 chunks of 6: 48 frames in 1200 units of which 600 are a second.
    Tables tables;
    tables.SamplesOfChunks = Chunks({1, 6, 1});
    tables.SampleSizes = FixedSizes(512, 100);
    tables.Offsets = Table("stco", {1, 2, 3, 4, 5, 6, 7, 8});
    const Film film(Movie(Track("vide", tables.Make(), 1200)));
    EXPECT_EQ(film.GetMovie().GetFramesPerSecond(), 24.0);
    EXPECT_EQ(film.GetMovie().GetWidth(), 640);
    EXPECT_EQ(film.GetMovie().GetHeight(), 480);
    const Film endless(Movie(Track("vide", tables.Make(), 0)));
    EXPECT_EQ(endless.GetMovie().GetFramesPerSecond(), 0.0);
}

TEST(CMOOVAtom, FindsSamplesThatLieOverEachOther)
{
    // Ten bytes each: picture at 1000 and 1010, sound where a row says.
    Tables video;
    video.SamplesOfChunks = Chunks({1, 2, 1});
    video.SampleSizes = Sizes({10, 10});
    video.Offsets = Table("stco", {1000});
    Tables audio {.Entries = Descriptions({SoundEntry()})};
    audio.SampleSizes = FixedSizes(10, 2);
    const struct
    {
        uint64_t First;
        uint64_t Second;
        const wchar_t* Message;
    } rows[] = {
        {990,  1020, L""                   },
        {991,  1020, L"Overlapping samples"},
        {990,  1019, L"Overlapping samples"},
        {1000, 1020, L"Overlapping samples"},
        {1020, 1030, L""                   },
        {1020, 1029, L"Overlapping samples"},
        {1030, 1020, L"Overlapping samples"},
    };
    for (const auto& row : rows)
    {
        audio.Offsets = Table("stco", {row.First, row.Second});
        const Bytes file = Movie(Track("soun", audio.Make()) + Track("vide", video.Make()));
        Film film(file, true);
        EXPECT_EQ(film.Message, row.Message) << row.First << ' ' << row.Second;
        EXPECT_EQ(Film(file).Message, L"");
    }
}
