#include "LoneWorker.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::HasSubstr;

constexpr char InstalledTools[] = "/usr/lib/zivora/Lantern Deck 33/libZVTools.so";

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
    const LoneWorker worker(ZV_FAKE_SIBLING);
    for (const auto& [setting, reason] : {std::pair("FAKE_TOOLS_ERROR=kein Platz f\xc3\xbcr %s", "kein Platz f\xc3\xbcr %s"),
                                          std::pair("FAKE_TOOLS_ERROR=", "Unknown error loading product information"),
                                          std::pair("FAKE_TOOLS_NULL=1", "Failed to load ZVTools")})
    {
        const WorkerRun run = RunWorker({"/Test"}, {setting});
        EXPECT_EQ(run.Status, 0);
        EXPECT_EQ(run.Error, ModuleMessage(reason));
        EXPECT_EQ(run.Output, "") << "no report";
    }
}

TEST(Start, TheLibrariesLearnOfTheProcess)
{
    const LoneWorker worker(ZV_FAKE_SIBLING);
    const std::string install = "install='" + worker.PathOf("") + "'";
    const WorkerRun run = RunWorker({"/Test"}, {"FAKE_TOOLS_ERROR=describe"}, [] { close(STDOUT_FILENO); });
    EXPECT_THAT(run.Error, HasSubstr("product='' " + install + " data='' attach=1 shared=1 "));
    EXPECT_THAT(run.Error, HasSubstr("ignoresChildren=0")) << "though the caller does";
    EXPECT_THAT(run.Error, HasSubstr("output='/dev/null'")) << "no file takes the place of the closed standard output";
    const std::string block = run.Error.substr(run.Error.find("/dev/shm/"));
    EXPECT_FALSE(std::filesystem::exists(block.substr(0, block.find('\'')))) << "it is removed at the end";

    // A link to the program takes the libraries beside the program itself.
    const LoneWorker other(ZV_FAKE_SIBLING);
    std::filesystem::create_symlink(worker.PathOf("ZVWorker"), "link");
    setenv("ZV_WORKER_PROGRAM", other.PathOf("link").c_str(), 1);
    EXPECT_THAT(RunWorker({"/Test"}, {"FAKE_TOOLS_ERROR=describe"}).Error, HasSubstr(install));
}

TEST(Start, ALibraryThatBreaksAtItsEndDoesNotTakeTheReportWithIt)
{
    const LoneWorker worker(ZV_FAKE_SIBLING);
    const WorkerRun run = RunWorker({"/Test"}, {"FAKE_DETACH_KILLS=1"});
    EXPECT_EQ(run.Status, 128 + SIGKILL);
    EXPECT_THAT(run.Output, HasSubstr("Result: -1\n"));
}
}
