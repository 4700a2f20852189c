#include "worker/ZVApp.h"

#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
// Writes down the order in which an application is led through its life.
class RecordingApp : public ZVApp
{
public:
    explicit RecordingApp(bool starts) : m_starts(starts) {}

    bool Initialize() override
    {
        Calls += "I";
        return m_starts;
    }
    bool Uninitialize() override
    {
        Calls += "U";
        return true;
    }
    bool Process() override
    {
        Calls += "P";
        ExitCode = 7;
        return true;
    }

    void* GetHandle() const { return ModuleHandle; }
    int32_t GetData() const { return ModuleData; }

    std::string Calls;

private:
    bool m_starts;
};

TEST(ZVApp, RunsInOrderAndProcessesNothingWhenTheStartFails)
{
    RecordingApp app(true);
    EXPECT_EQ(g_pApp, &app);
    EXPECT_EQ(app.Run(), 7);
    EXPECT_EQ(app.Calls, "IPU");
    RecordingApp failing(false);
    EXPECT_EQ(failing.Run(), 0);
    EXPECT_EQ(failing.Calls, "IU");
}

TEST(ZVApp, ModuleEventsAreCounted)
{
    RecordingApp app(true);
    int first = 0;
    int second = 0;
    EXPECT_TRUE(app.OnModuleEvent(&first, ZVModuleEvent::Attach));
    EXPECT_TRUE(app.OnModuleEvent(&second, ZVModuleEvent::Attach));
    EXPECT_EQ(app.GetHandle(), &first);
    EXPECT_TRUE(app.OnModuleEvent(&second, ZVModuleEvent::Detach));
    EXPECT_EQ(app.Calls, "I");
    EXPECT_TRUE(app.OnModuleEvent(&first, ZVModuleEvent::Detach));
    EXPECT_EQ(app.Calls, "IU");
}

// Sends itself a hangup while it works.
class HangupApp final : public RecordingApp
{
public:
    HangupApp() : RecordingApp(true) {}

    bool Process() override
    {
        raise(SIGHUP);
        ExitCode = g_bExitRequested;
        return true;
    }
};

TEST(ZVApp, RunHandlingHangupSurvivesAHangupAndAsksForTheEnd)
{
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    const pid_t child = fork();
    if (child == 0)
    {
        dup2(pipeEnds[1], STDERR_FILENO);
        HangupApp app;
        int handle = 0;
        const bool kept = app.RunHandlingHangup(&handle, nullptr, 5) == 1 && app.GetHandle() == &handle && app.GetData() == 5;
        _exit(kept && app.Calls == "IU" ? 42 : 1);
    }
    close(pipeEnds[1]);
    std::string message(256, '\0');
    const ssize_t size = read(pipeEnds[0], message.data(), message.size());
    message.resize(size > 0 ? static_cast<size_t>(size) : 0);
    close(pipeEnds[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 42);
    EXPECT_EQ(message, "Received a hangup signal, will exit!\n");
}
}
