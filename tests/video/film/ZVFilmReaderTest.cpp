#include "video/film/ZVFilmReader.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "process/WorkFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Films that are made with the system's tools and read with the real codec libraries.
class ZVFilmReaderTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!ZVFilmReader({}).GetCodec().Loaded || system("ffmpeg -version >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "the codec component is not built, or ffmpeg is not there";
        g_pZVTools = &m_tools;
    }
    void TearDown() override { g_pZVTools = nullptr; }

    static void Make(const std::string& arguments)
    {
        ASSERT_EQ(system(("ffmpeg -v error -y -f lavfi -i testsrc2=s=160x90:r=25 -f lavfi -i sine " + arguments).c_str()), 0);
    }

    // Opens a film of the folder with the decoder of its main stream.
    static void Open(ZVFilmReader& film, const wchar_t* name)
    {
        ASSERT_TRUE(film.Open(name));
        ASSERT_NE(film.ChooseMainStream(), nullptr);
        ASSERT_TRUE(film.OpenDecoders());
    }

    static int32_t CountFrames(ZVFilmReader& film)
    {
        int32_t count = 0;
        while (film.NextFrame() != nullptr)
            ++count;
        return count;
    }

    WorkFolder m_folder;
    FakeTools m_tools;
};

// The segments of the playlist are not complete, and it is asked again and again for the next.
TEST_F(ZVFilmReaderTest, DoesNotWaitForALivePlaylist)
{
    Make("-frames:v 3 -c:v libx264 -an part.ts");
    WorkFolder::Write("live.m3u8", "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:1\n#EXTINF:1.0,\npart.ts\n");
    ZVFilmReader film({.Limits = {.Microseconds = 1'000'000}});
    Open(film, L"live.m3u8");
    EXPECT_THAT(m_tools.Manager.Lines, Contains(HasSubstr("Not all of its streams became known within 1 s and 512 MiB")));
    CountFrames(film);
    EXPECT_THAT(m_tools.Manager.Lines, Contains(HasSubstr("No frame came within 1 s and 512 MiB of reading")));
}

TEST_F(ZVFilmReaderTest, ReadsNoMoreThanItsBudgetWithoutAFrame)
{
    constexpr int64_t Limit = 16 << 20;
    WorkFolder::Write("zeros.mp3", "");
    std::filesystem::resize_file("zeros.mp3", int64_t {4} << 30);
    ZVFilmReader film({.Limits = {.Bytes = Limit}});
    ASSERT_TRUE(film.Open(L"zeros.mp3"));
    EXPECT_LT(film.GetContainer().pb->bytes_read, 2 * Limit);
    EXPECT_THAT(m_tools.Manager.Lines, Contains(HasSubstr("30 s and 16 MiB of reading")));
}

TEST_F(ZVFilmReaderTest, RestartsTheBudgetWithEachFrameAndPlace)
{
    // Raw pictures of some 20 KB, of which one fits into the budget and the film does not.
    Make("-t 4 -c:v rawvideo -pix_fmt yuv420p -an film.avi");
    ZVFilmReader film({.Probe = ZVFilmOptions::Probing::Header, .Limits = {.Bytes = 300'000}});
    Open(film, L"film.avi");
    EXPECT_EQ(CountFrames(film), 100);
    film.SeekTo(2);
    EXPECT_EQ(CountFrames(film), 50);
    EXPECT_THAT(m_tools.Manager.Lines, Not(Contains(HasSubstr("No frame came"))));
}

TEST_F(ZVFilmReaderTest, SaysNothingOfASoundPictureThatStaysInTheDecoder)
{
    for (const char* name : {"one.png", "one.jpg", "one.mp4"})
    {
        Make(std::string("-frames:v 1 -an ") + name);
        ZVFilmReader film({.ThreadCount = 4});
        Open(film, ZVString::FromUTF8(name));
        CountFrames(film);
    }
    EXPECT_THAT(m_tools.Manager.Lines, IsEmpty());
}

}
