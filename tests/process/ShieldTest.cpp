// The lock that the worker takes, as its user sees it.

#include "FilmFolder.h"
#include "mp4/quicktime/KeyBytes.h"

#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace
{
namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

constexpr char NotGuarded[] = "The lock is not whole, since the kernel does not guard the files: Function not implemented";

struct Outcome
{
    int Status;
    bool HasResult;
    std::string Log;
};

Outcome RunDevices(std::vector<std::string> settings, const std::function<void()>& prepare)
{
    const WorkFolder folder;
    settings.push_back("ZV_LOG_FILE=" + fs::absolute("worker.log").string());
    const int status = RunWorker({"/AnalyzeDevices", "none", "result.xml"}, settings, prepare).Status;
    return {status, fs::exists("result.xml"), WorkFolder::Read("worker.log")};
}

// Makes the system look like an old one for the process, to which one of its calls is unknown.
void ForgetCall(long number)
{
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<uint32_t>(number), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter {std::size(program), program};
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter);
}

void UseOldKernel()
{
    ForgetCall(SYS_landlock_create_ruleset);
}

TEST(Shield, AnOldKernelCostsALineUnlessTheLockIsRequired)
{
    const Outcome usual = RunDevices({}, UseOldKernel);
    EXPECT_EQ(usual.Status, 0);
    EXPECT_TRUE(usual.HasResult);
    EXPECT_THAT(usual.Log, HasSubstr(NotGuarded));

    const Outcome required = RunDevices({"ZV_SHIELD=require"}, UseOldKernel);
    EXPECT_EQ(required.Status, 255);
    EXPECT_FALSE(required.HasResult);
    EXPECT_THAT(required.Log, HasSubstr(NotGuarded));

    const Outcome off = RunDevices({"ZV_SHIELD=off"}, UseOldKernel);
    EXPECT_EQ(off.Status, 0);
    EXPECT_THAT(off.Log, Not(HasSubstr("The lock is not whole")));
}

TEST(Shield, ASystemWithoutFiltersIsSaid)
{
    const Outcome usual = RunDevices({}, [] { ForgetCall(SYS_seccomp); });
    EXPECT_EQ(usual.Status, 0);
    EXPECT_THAT(usual.Log, HasSubstr("The lock is not whole, since the kernel does not filter the calls"));
}

TEST(Shield, SettingsThatMeanNothingAreSaid)
{
    const Outcome outcome = RunDevices({"ZV_SHIELD=maybe", "ZV_MEMORY_LIMIT=4 gigabytes"}, [] {});
    EXPECT_EQ(outcome.Status, 0);
    EXPECT_THAT(outcome.Log, HasSubstr("ZV_SHIELD is neither 'off' nor 'require', so it does not count: maybe"));
    EXPECT_THAT(outcome.Log,
                HasSubstr("ZV_MEMORY_LIMIT is no number of bytes, such as 4G or 512M, so it does not count: 4 gigabytes"));
}

class ShieldOfFilms : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!FilmFolder::IsUsable())
            GTEST_SKIP() << "ffmpeg, mkvmerge or the codec component is not there";
    }

    FilmFolder m_folder;
};

#if !defined(ZV_IS_SANITIZED)
TEST_F(ShieldOfFilms, AFilmThatWantsMoreMemoryFails)
{
    FilmFolder::Make("-f lavfi -i color=s=4096x4096:r=5:d=1 -c:v libx264 -preset ultrafast film.mkv");
    EXPECT_EQ(FilmFolder::Analyze("film.mkv", {"ZV_MEMORY_LIMIT=64M"}).Run.Status, 255);
    EXPECT_EQ(FilmFolder::Analyze("film.mkv", {"ZV_MEMORY_LIMIT=1G"}).Run.Status, 0);
}
#endif

// A cover of an analysis stays in the folder for temporary files.
TEST_F(ShieldOfFilms, ACoverAmongTheKeysOfAFilmIsWritten)
{
    using namespace AtomBytes;
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mov");
    const Bytes cover = "\xff\xd8\xff\xe0 a cover";
    const Bytes meta =
        Atom("meta", Handler("mdta") + Keys({Key("com.apple.quicktime.artwork")}) + Atom("ilst", Item(0, cover, 13)));
    Bytes film = FilmFolder::Read("film.mov");
    // The movie is the last atom.
    const size_t start = film.rfind("moov") - 4;
    FilmFolder::Write("film.mov", film.replace(start, 4, Number(film.size() - start + meta.size(), 4)) + meta);

    const FilmAnalysis analysis = FilmFolder::AnalyzeForLibrary("film.mov", {"ZV_SHIELD=require"});
    EXPECT_EQ(analysis.Run.Status, 0);
    const std::string path = fs::absolute("data/Temp/cover art.jpg");
    EXPECT_THAT(analysis.Properties, testing::Contains("Image File=" + path));
    EXPECT_EQ(FilmFolder::Read(path), cover);
}

// The cover goes from the folder for temporary files to another device, which the task cannot do without a program.
TEST_F(ShieldOfFilms, ACoverIsMovedToAnotherDevice)
{
    FilmFolder::Make("-f lavfi -i testsrc2=s=320x180:r=1:d=1 -frames:v 1 cover.png");
    FilmFolder::Make(FilmPicture + FilmH264 + "plain.mp4");
    FilmFolder::Make("-i plain.mp4 -i cover.png -map 0 -map 1 -c copy -disposition:v:1 attached_pic film.mp4");
    fs::create_directory("device");
    if (mount("tmpfs", "device", "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "no tmpfs can be mounted";
    const std::string picture = fs::absolute("device/a b's \xff picture.png");
    const WorkerRun run = RunWorker({"/Thumbnail", fs::absolute("film.mp4"), picture}, {"ZV_SHIELD=require"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(WorkFolder::Read(picture), WorkFolder::Read("cover.png"));
    EXPECT_EQ(umount("device"), 0);
}
}
