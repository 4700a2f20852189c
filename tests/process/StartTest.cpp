#include "RunWorker.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::HasSubstr;

constexpr char InstalledTools[] = "/usr/lib/zivora/Lantern Deck 33/libZVTools.so";

// The worker in a folder of its own, away from its libraries.
class LoneWorker
{
public:
    LoneWorker()
    {
        char name[] = "/tmp/zv-start-XXXXXX";
        m_folder = mkdtemp(name);
        const std::string program = m_folder / "ZVWorker";
        std::filesystem::copy_file(m_original, program);
        setenv("ZV_WORKER_PROGRAM", program.c_str(), 1);
    }

    ~LoneWorker()
    {
        setenv("ZV_WORKER_PROGRAM", m_original.c_str(), 1);
        std::filesystem::remove_all(m_folder);
    }

    void AddFakeTools() const { std::filesystem::copy_file(ZV_FAKE_SIBLING, m_folder / "libZVTools.so"); }
    std::string GetFolder() const { return m_folder.string() + "/"; }

private:
    const std::string m_original = GetWorkerProgram();
    std::filesystem::path m_folder;
};

std::string ModuleMessage(const std::string& reason)
{
    return "The following module has failed to load:\r\nlibZVTools.so\r\n\r\nIt has reported the following error:\r\n\r\n" +
           reason + "\r\n\r\nPlease reinstall the latest version of the program.";
}

TEST(Start, WithoutTheToolsLibraryTheWorkerOnlySaysSo)
{
    if (std::filesystem::exists(InstalledTools))
        GTEST_SKIP() << "the product is installed on this machine, and its library is found";
    const LoneWorker worker;
    const WorkerRun run = RunWorker({"/Test"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Error, ModuleMessage("Failed to load ZVTools"));
    EXPECT_EQ(run.Output, "\n\nERROR in ZVLoadLibrary: error=" + std::string(InstalledTools) +
                              ": cannot open shared object file: No such file or directory, file=" + InstalledTools + "\n\n");
}

TEST(Start, AToolsLibraryThatRefusesEndsTheWorkerWithItsReason)
{
    const LoneWorker worker;
    worker.AddFakeTools();
    const struct
    {
        const char* Setting;
        const char* Reason;
    } rows[] = {
        {"FAKE_TOOLS_ERROR=kein Platz f\xc3\xbcr %s", "kein Platz f\xc3\xbcr %s"                 },
        {"FAKE_TOOLS_ERROR=",                         "Unknown error loading product information"},
        {"FAKE_TOOLS_NULL=1",                         "Failed to load ZVTools"                   },
    };
    for (const auto& row : rows)
    {
        const WorkerRun run = RunWorker({"/Test"}, {row.Setting});
        EXPECT_EQ(run.Status, 0);
        EXPECT_EQ(run.Error, ModuleMessage(row.Reason));
        EXPECT_EQ(run.Output, "") << "no report";
    }
}

TEST(Start, TheLibrariesLearnOfTheProcess)
{
    const LoneWorker worker;
    worker.AddFakeTools();
    const WorkerRun run = RunWorker({"/Test"}, {"FAKE_TOOLS_ERROR=describe"}, OutputKind::Closed);
    EXPECT_THAT(run.Error, HasSubstr("product='' install='" + worker.GetFolder() + "' data='' attach=1 shared=1 "));
    EXPECT_THAT(run.Error, HasSubstr("ignoresChildren=0")) << "though the caller does";
    EXPECT_THAT(run.Error, HasSubstr("output='/dev/null'")) << "no file takes the place of the closed standard output";
    const std::string block = run.Error.substr(run.Error.find("/dev/shm/"));
    EXPECT_FALSE(std::filesystem::exists(block.substr(0, block.find('\'')))) << "it is removed at the end";
}

TEST(Start, ALibraryThatBreaksAtItsEndDoesNotTakeTheReportWithIt)
{
    const LoneWorker worker;
    worker.AddFakeTools();
    const WorkerRun run = RunWorker({"/Test"}, {"FAKE_DETACH_KILLS=1"});
    EXPECT_EQ(run.Status, 128 + SIGKILL);
    EXPECT_THAT(run.Output, HasSubstr("Result: -1\n"));
}

TEST(Start, ALinkToTheProgramTakesTheLibrariesBesideTheProgramItself)
{
    const LoneWorker worker;
    worker.AddFakeTools();
    const LoneWorker other;
    other.AddFakeTools();
    const std::string link = other.GetFolder() + "link";
    std::filesystem::create_symlink(worker.GetFolder() + "ZVWorker", link);
    setenv("ZV_WORKER_PROGRAM", link.c_str(), 1);
    EXPECT_THAT(RunWorker({"/Test"}, {"FAKE_TOOLS_ERROR=describe"}).Error, HasSubstr("install='" + worker.GetFolder() + "'"));
}
}
