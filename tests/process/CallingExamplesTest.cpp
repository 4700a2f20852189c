// The examples that callers copy, run as they stand in the document.

#include "FilmFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace
{
class CallingExamples : public testing::TestWithParam<std::string>
{
protected:
    // Runs the example with a worker and a film; the lines that it prints go to "out", its complaints to "err".
    static int Analyze(const std::string& worker, const std::string& film)
    {
        const int status = system((GetParam() + " '" + worker + "' '" + film + "' >out 2>err").c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_P(CallingExamples, TellWhatAFilmIs)
{
    if (!FilmFolder::IsUsable())
        GTEST_SKIP() << "ffmpeg, mkvmerge or the codec component is not there";
    const FilmFolder work;
    work.Make("-f lavfi -i testsrc=s=64x48:d=1 -metadata artist='\"A\" & <B> &lt;' film.mkv");
    ASSERT_EQ(Analyze(GetWorkerProgram(), "film.mkv"), 0) << work.Read("err");
    EXPECT_THAT(work.Read("out"), testing::HasSubstr("\nWidth = 64\n"));
    EXPECT_THAT(work.Read("out"), testing::HasSubstr("Artist = \"A\" & <B> &lt;\n"));
}

TEST_P(CallingExamples, TellWhenItFailed)
{
    const WorkFolder work;
    WorkFolder::Write("empty", "");
    WorkFolder::Write("idle", "#!/bin/sh\n");
    WorkFolder::Write("crash", "#!/bin/sh\nprintf 'Total time: 1 ms\\nResult: 0\\n'; kill -SEGV $$\n");
    for (const char* script : {"idle", "crash"})
        chmod(script, 0755);
    for (const std::string& worker : {GetWorkerProgram(), work.PathOf("idle"), work.PathOf("crash")})
    {
        EXPECT_EQ(Analyze(worker, "empty"), 1) << worker;
        EXPECT_THAT(WorkFolder::Read("err"), testing::HasSubstr("could not be analyzed: status ")) << worker;
        EXPECT_EQ(WorkFolder::Read("out"), "") << worker;
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, CallingExamples, testing::Values(ZV_CALLING_EXAMPLE, "python3 " ZV_CALLING_SCRIPT),
                         [](const auto& tested) { return tested.index == 0 ? "CPlusPlus" : "Python"; });
}
