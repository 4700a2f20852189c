#include "FilmFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <sys/resource.h>

namespace
{
constexpr const char* Containers[] = {".mkv", ".mp4", ".ts", ".avi", ".flv", ".wmv", ".ogg"};
constexpr int DamagesPerContainer = 5;

// Far above what a whole film of this size takes, and far below what a size that was read from a damaged one may ask for.
constexpr long MaximumKilobytes = 1'000'000;

// Damages a film in one of the ways in which real ones are damaged. The same numbers give the same damage everywhere.
std::string Damage(std::string film, const std::string& other, size_t kind, std::mt19937& numbers)
{
    // The first bytes of a file are those that the others hang on.
    const auto anywhere = [&numbers](size_t size) { return numbers() % size; };
    const auto inFront = [&](size_t size) { return anywhere(numbers() % 2 == 0 ? std::min<size_t>(size, 2000) : size); };
    switch (kind)
    {
    case 0:
        for (int count = 200; count > 0; --count)
            film[inFront(film.size())] ^= static_cast<char>(1 << numbers() % 8);
        return film;
    case 1:
        for (int count = 0; count < 8; ++count)
            film.replace(inFront(film.size()), 4, "\xff\xff\xff\x7f");
        return film;
    case 2:
        return film.erase(inFront(film.size()), anywhere(2000));
    default:
        film.resize(anywhere(film.size()));
        return kind == 3 ? film : film + other.substr(anywhere(other.size()));
    }
}

TEST(DamagedFilm, NeverBreaksTheWorker)
{
    if (!FilmFolder::IsUsable())
        GTEST_SKIP() << "ffmpeg, mkvmerge or the codec component is not there";
    const FilmFolder folder;
    std::vector<std::string> films;
    for (const std::string container : Containers)
    {
        const char* const codecs = container == ".ogg"   ? "-c:v libtheora -c:a libvorbis"
                                   : container == ".flv" ? "-c:v flv -c:a libmp3lame -ar 44100"
                                                         : "-c:v mpeg4 -c:a libmp3lame";
        FilmFolder::Make(FilmPicture + FilmSound + codecs + " film" + container);
        films.push_back(FilmFolder::Read("film" + container));
    }
    std::mt19937 numbers(1);
    for (size_t index = 0; index < films.size() * DamagesPerContainer; ++index)
    {
        SCOPED_TRACE("damage number " + std::to_string(index));
        const size_t container = index % films.size();
        const std::string name = std::string("damaged") + Containers[container];
        FilmFolder::Write(name, Damage(films[container], films[numbers() % films.size()], index / films.size(), numbers));
        const FilmAnalysis analysis = FilmFolder::Analyze(name);
        // Either a result or a reason, and no word of a sanitizer.
        EXPECT_EQ(analysis.Run.Error, "");
        EXPECT_EQ(analysis.Run.Status, analysis.HasResult ? 0 : 255);
        EXPECT_THAT(analysis.Run.Output, testing::EndsWith(analysis.HasResult ? "\nResult: 0\n" : "\nResult: -1\n"));
        EXPECT_THAT(analysis.Log, testing::HasSubstr(analysis.HasResult ? "succeeded" : "The file does not open ("));
        if (testing::Test::HasFailure())
            return;
    }
    rusage usage {};
    getrusage(RUSAGE_CHILDREN, &usage);
    EXPECT_LT(usage.ru_maxrss, MaximumKilobytes) << "by any of the programs that were run";
}
}
