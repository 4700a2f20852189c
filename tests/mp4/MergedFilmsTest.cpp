// Films of another program, merged and played by it.

#include "mp4/CMp4File.h"
#include "process/WorkFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace
{
using testing::ElementsAreArray;

class MergedFilmsTest : public testing::Test
{
protected:
    static std::string Run(const std::string& command)
    {
        EXPECT_EQ(system((command + " </dev/null >out 2>log").c_str()), 0) << command << "\n" << WorkFolder::Read("log");
        return WorkFolder::Read("out");
    }

    // One and a half seconds, in which the frames of picture and sound end together.
    static void Make(const std::string& picture, int pitch, const std::string& options, const std::string& film)
    {
        Run("ffmpeg -v error -y -f lavfi -i " + picture + "=size=320x180:rate=25 -f lavfi -i sine=" + std::to_string(pitch) +
            ":sample_rate=48000 -t 1.6 -c:v libx264 -bf 0 -g 10 -pix_fmt yuv420p -c:a ac3 -use_editlist 0 " + options + " " +
            film);
    }

    // Merges films into merged.mp4, which is a copy of the first.
    static void Merge(const std::vector<std::string>& films)
    {
        const auto open = [](CMp4File& file, const std::string& name)
        {
            EXPECT_TRUE(file.Open(ZVFilename::FromPath(ZVString::FromUTF8(name.c_str()))));
            EXPECT_TRUE(file.ReadAtoms());
            EXPECT_TRUE(file.Verify());
        };
        std::filesystem::copy_file(films.front(), "merged.mp4", std::filesystem::copy_options::overwrite_existing);
        CMp4File first;
        open(first, "merged.mp4");
        for (size_t index = 1; index < films.size(); ++index)
        {
            CMp4File next;
            open(next, films[index]);
            EXPECT_TRUE(first.Append(next));
            EXPECT_EQ(first.GetLastError(), L"");
        }
        EXPECT_TRUE(first.Save());
        EXPECT_EQ(first.GetLastError(), L"");
    }

    struct Frame
    {
        std::string Checksum;
        double Time;  // in seconds
    };

    // Of the stream that options choose and decode or copy.
    static std::vector<Frame> GetFrames(const std::string& film, const std::string& options)
    {
        std::vector<Frame> frames;
        std::istringstream lines(Run("ffmpeg -v error -i " + film + " " + options + " -f framemd5 -"));
        double timebase = 0;
        for (std::string line; std::getline(lines, line);)
        {
            int numerator, denominator, stream;
            long long dts, pts, duration, size;
            char checksum[40];
            if (sscanf(line.c_str(), "#tb 0: %d/%d", &numerator, &denominator) == 2)
                timebase = static_cast<double>(numerator) / denominator;
            else if (sscanf(line.c_str(), "%d, %lld, %lld, %lld, %lld, %32[0-9a-f]", &stream, &dts, &pts, &duration, &size,
                            checksum) == 6)
                frames.push_back({checksum, static_cast<double>(pts) * timebase});
        }
        return frames;
    }

    static std::vector<std::string> GetChecksums(const std::vector<std::string>& films, const std::string& options)
    {
        std::vector<std::string> checksums;
        for (const std::string& film : films)
            for (const Frame& frame : GetFrames(film, options))
                checksums.push_back(frame.Checksum);
        return checksums;
    }

    static double GetDuration(const std::string& film, const std::string& entry)
    {
        return std::stod(Run("ffprobe -v error -of csv=p=0 -show_entries " + entry + " " + film));
    }

    const WorkFolder m_folder;
};

TEST_F(MergedFilmsTest, PlayOneAfterTheOther)
{
    if (system("ffmpeg -version >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "ffmpeg is not there";
    // The movie of the first film stands in front of its media, which have to make room for what it becomes.
    Make("testsrc2", 440, "-movflags +faststart", "one.mp4");
    Make("smptebars", 880, "", "two.mp4");
    const std::vector<std::string> films = {"one.mp4", "two.mp4", "one.mp4"};
    Merge(films);

    EXPECT_THAT(GetChecksums({"merged.mp4"}, "-map 0:v"), ElementsAreArray(GetChecksums(films, "-map 0:v")));
    // Decoded sound overlaps with what is before it, so its packets are compared.
    EXPECT_THAT(GetChecksums({"merged.mp4"}, "-map 0:a -c copy"), ElementsAreArray(GetChecksums(films, "-map 0:a -c copy")));
    EXPECT_EQ(Run("ffprobe -v error -count_frames -of csv=p=0 -show_entries stream=nb_frames,nb_read_frames merged.mp4"),
              "120,120\n150,150,\n\n");
    for (const char* const entry : {"format=duration", "stream=duration -select_streams v", "stream=duration -select_streams a"})
        EXPECT_NEAR(GetDuration("merged.mp4", entry), 2 * GetDuration("one.mp4", entry) + GetDuration("two.mp4", entry), 0.002)
            << entry;

    // At the second join the sound is off by less than one of its frames.
    const std::vector<Frame> pictures = GetFrames("merged.mp4", "-map 0:v");
    const std::vector<Frame> sounds = GetFrames("merged.mp4", "-map 0:a -c copy");
    ASSERT_EQ(pictures.size(), 120U);
    ASSERT_EQ(sounds.size(), 150U);
    EXPECT_NEAR(pictures[80].Time, sounds[100].Time, 1536.0 / 48000);

    // A player jumps to the same pictures of each film as before.
    const auto getFlags = [](const std::string& film)
    { return Run("ffprobe -v error -select_streams v -of csv=p=0 -show_entries packet=flags " + film); };
    EXPECT_EQ(getFlags("merged.mp4"), getFlags("one.mp4") + getFlags("two.mp4") + getFlags("one.mp4"));
}
}
