#include "RunWorker.h"
#include "mp4/AtomBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace AtomBytes;
using testing::HasSubstr;

// Shows a file of the working folder with the program for developers, and returns its status as a shell tells it.
int Dump(const std::string& name)
{
    const std::string program = std::filesystem::path(GetWorkerProgram()).parent_path() / "zvmp4dump";
    return WEXITSTATUS(system((program + " " + name + " >output 2>errors").c_str()));
}

TEST(Mp4Dump, ShowsTheTreeUpToWhatIsWrong)
{
    const WorkFolder folder;
    WorkFolder::Write("film.mp4", Atom("moov", Atom("udta", Atom("free", "text"))));
    EXPECT_EQ(Dump("film.mp4"), 0);
    EXPECT_THAT(WorkFolder::Read("output"), HasSubstr("Atom: free\tPosition: 16, length=12"));
    WorkFolder::Write("bad.mp4", Atom("free") + Atom("ftyp", Zeros(9)));
    EXPECT_EQ(Dump("bad.mp4"), 1);
    EXPECT_THAT(WorkFolder::Read("output"), HasSubstr("Atom: free"));
    EXPECT_THAT(WorkFolder::Read("errors"), HasSubstr("In FTYP, non zero size"));
    EXPECT_EQ(Dump("missing.mp4"), 1);
    EXPECT_EQ(Dump(""), 1);
}

// A child that is longer than the atom it is in: those who watch the worker know such an end.
TEST(Mp4Dump, StopsAtOnceWhenTheSizesContradictEachOther)
{
#ifdef ZV_IS_SANITIZED
    GTEST_SKIP() << "the sanitizers report a store to nowhere in their own way";
#endif
    const WorkFolder folder;
    WorkFolder::Write("film.mp4", Atom("moov", Number(1, 4) + "free" + Number(100, 8)) + Zeros(200));
    EXPECT_EQ(Dump("film.mp4"), 128 + SIGSEGV);
}
}
