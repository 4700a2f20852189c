// What a caller leaves around the worker, and what it must not do to the result.

#include "FilmFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <thread>

namespace
{
namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;

// The worker's devices task, whose result needs no film.
std::vector<std::string> DevicesTask(const std::string& variables, const std::string& result)
{
    return {"/AnalyzeDevices", variables, result};
}

std::string GetLogSetting()
{
    return "ZV_LOG_FILE=" + fs::absolute("worker.log").string();
}

void LimitFileSize(rlim_t bytes)
{
    const rlimit limit {bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}

TEST(Surroundings, ACallerThatClosesItsEndStillGetsTheResult)
{
    const WorkFolder folder;
    const auto closeReader = []
    {
        int ends[2];
        if (pipe(ends) == 0)
            dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        signal(SIGPIPE, SIG_DFL);
    };
    EXPECT_EQ(RunWorker(DevicesTask("none", "result.xml"), {}, closeReader).Status, 0);
    EXPECT_TRUE(fs::exists("result.xml"));
}

TEST(Surroundings, AFileSizeLimitIsAFailedWrite)
{
    const WorkFolder folder;
    WorkFolder::Write("result.xml", "what was there");
    // The log goes elsewhere: it would reach the limit too.
    const WorkerRun run = RunWorker(DevicesTask("none", "result.xml"), {"ZV_LOG_FILE=/dev/null"}, [] { LimitFileSize(40); });
    EXPECT_EQ(run.Status, 255);
    EXPECT_EQ(WorkFolder::Read("result.xml"), "what was there");
}

TEST(Surroundings, AnOutputThatDoesNotWaitGetsTheWholeReport)
{
    constexpr size_t NameLength = 100'000;
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    fcntl(ends[0], F_SETPIPE_SZ, 4096);
    std::string output;
    std::thread reader(
        [&]
        {
            char bytes[1000];
            for (ssize_t count; (count = read(ends[0], bytes, sizeof bytes)) > 0; usleep(100))
                output.append(bytes, static_cast<size_t>(count));
        });
    const WorkerRun run = RunWorker({std::string(NameLength, 'x')}, {},
                                    [&]
                                    {
                                        dup2(ends[1], STDOUT_FILENO);
                                        fcntl(STDOUT_FILENO, F_SETFL, O_NONBLOCK);
                                    });
    close(ends[1]);
    reader.join();
    close(ends[0]);
    EXPECT_EQ(run.Status, 255);
    EXPECT_GT(output.size(), NameLength);
    EXPECT_THAT(output, EndsWith("\nResult: -1\n"));
}

TEST(Surroundings, NoResultTakesThePlaceOfItsInput)
{
    const WorkFolder folder;
    WorkFolder::Write("input.xml", "the input");
    fs::create_hard_link("input.xml", "hard.xml");
    fs::create_symlink("input.xml", "symbolic.xml");
    for (const char* result : {"input.xml", "./input.xml", "hard.xml", "symbolic.xml", "input.xml;1"})
    {
        SCOPED_TRACE(result);
        const WorkerRun run = RunWorker(DevicesTask("input.xml", result), {GetLogSetting()});
        EXPECT_EQ(run.Status, 255);
        EXPECT_THAT(run.Output, EndsWith("\nResult: -1\n"));
        EXPECT_EQ(WorkFolder::Read("input.xml"), "the input");
        EXPECT_THAT(WorkFolder::Read("worker.log"),
                    HasSubstr("The result would take the place of the input: " + std::string(result)));
    }
}

class SurroundingsOfFilms : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!FilmFolder::IsUsable())
            GTEST_SKIP() << "ffmpeg, mkvmerge or the codec component is not there";
    }

    FilmFolder m_folder;
};

TEST_F(SurroundingsOfFilms, SuccessIsLoggedThoughTheResultCannotBeWritten)
{
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mkv");
    const WorkerRun run = RunWorker({"/AnalyzeVideoExtended", "film.mkv", "film.mkv/result.xml"}, {GetLogSetting()});
    EXPECT_EQ(run.Status, 255);
    EXPECT_THAT(FilmFolder::Read("worker.log"), HasSubstr("AnalyzeVideoExtended succeeded..."));
}

// With less and less memory the worker fails, but never tells less of the film.
TEST_F(SurroundingsOfFilms, WantOfMemoryIsNoFactAboutTheFilm)
{
#ifdef ZV_IS_SANITIZED
    GTEST_SKIP() << "the sanitizers need more memory than any limit";
#endif
    FilmFolder::Make("-f lavfi -i testsrc2=s=1280x720:r=25:d=1 " + FilmH264 + "film.mkv");
    // Frames of a palette are converted for the crop detection, in memory of its own.
    FilmFolder::Make("-f lavfi -i color=gray:s=640x280:r=1:d=60 -vf pad=640:360:0:40 -c:v png -pix_fmt pal8 bars.mkv");
    for (const auto& [task, name, expected] : {std::tuple(&FilmFolder::Analyze, "film.mkv", "Video Scan=Progressive"),
                                               std::tuple(&FilmFolder::FindBlackBars, "bars.mkv", "Video Crop=0x40x640x320")})
    {
        const std::set<std::string> whole = task(name, {}, [] {}).Properties;
        ASSERT_THAT(whole, testing::Contains(expected));
        int32_t failures = 0;
        for (rlim_t megabytes = 400; megabytes >= 40; megabytes -= 8)
        {
            const rlimit limit {megabytes << 20, megabytes << 20};
            const FilmAnalysis analysis = task(name, {}, [&limit] { setrlimit(RLIMIT_AS, &limit); });
            // A decoder does not always say that it has no memory, but it complains then.
            const bool hasComplaints = analysis.Log.find("CZVVideoAnalyzeExtended::AVLog") != std::string::npos;
            if (!analysis.HasResult)
                ++failures;
            else if (!hasComplaints)
            {
                EXPECT_EQ(analysis.Properties, whole) << megabytes << " MiB\n" << analysis.Log;
            }
        }
        EXPECT_GT(failures, 0);
    }
}

// A film and the result may lie anywhere, and so may the product and its data.
TEST_F(SurroundingsOfFilms, FoldersMayHaveAnyBytesInTheirNames)
{
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mkv");
    const fs::path program = GetWorkerProgram();
    for (const std::string name : std::initializer_list<const char*> {"\xf0\x9f\x98\x80", "caf\xe9", "back\\slash"})
    {
        SCOPED_TRACE(name);
        fs::create_directory(name);
        for (const char* file : {"ZVWorker", "libZVTools.so", "libZVReader.so"})
            fs::copy_file(program.parent_path() / file, fs::path(name) / file);
        fs::copy(program.parent_path() / "Plugins", fs::path(name) / "Plugins",
                 fs::copy_options::copy_symlinks | fs::copy_options::recursive);
        setenv("ZV_WORKER_PROGRAM", fs::absolute(name + "/ZVWorker").c_str(), 1);
        const std::string result = "result.xml";
        const std::string data = fs::absolute(name + "/data");
        const std::string home = fs::absolute(name + "/home");
        const std::vector<std::string> settings[] = {
            {"ZV_DATA_DIR=" + data},
            { "ZV_DATA_DIR=",       "HOME=" + home}
        };
        for (const std::vector<std::string>& setting : settings)
        {
            fs::remove(result);
            EXPECT_EQ(RunWorker({"/AnalyzeVideoExtended", "film.mkv", result}, setting).Status, 0);
            EXPECT_TRUE(fs::exists(result));
        }
        setenv("ZV_WORKER_PROGRAM", program.c_str(), 1);
        EXPECT_TRUE(fs::exists(data + "/Logs/ZVWorker.log"));
        EXPECT_TRUE(fs::exists(home + "/.zivora/Generic/Logs/ZVWorker.log"));
    }
}
}
