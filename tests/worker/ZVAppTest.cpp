#include "worker/ZVApp.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace
{
// Writes down the order in which an application is led through its life.
class RecordingApp final : public ZVApp
{
public:
    bool Initialize() override
    {
        Calls += "I";
        return true;
    }
    bool Uninitialize() override
    {
        Calls += "U";
        return true;
    }
    bool Process() override
    {
        Calls += "P";
        ExitCode = Work();
        return true;
    }

    void* GetHandle() const { return ModuleHandle; }
    int32_t GetData() const { return ModuleData; }

    std::string Calls;
    std::function<int()> Work = [] { return 7; };
};

TEST(ZVApp, ModuleEventsAreCounted)
{
    RecordingApp app;
    int first = 0;
    int second = 0;
    EXPECT_TRUE(app.OnModuleEvent(&first, ZVModuleEvent::Attach));
    EXPECT_TRUE(app.OnModuleEvent(&second, ZVModuleEvent::Attach));
    EXPECT_EQ(app.GetHandle(), &first);
    EXPECT_TRUE(app.OnModuleEvent(&second, ZVModuleEvent::Detach));
    EXPECT_EQ(app.Calls, "I");
    EXPECT_TRUE(app.OnModuleEvent(&first, static_cast<ZVModuleEvent>(2))) << "a reason that means nothing";
    EXPECT_EQ(app.Calls, "I");
    EXPECT_TRUE(app.OnModuleEvent(&first, ZVModuleEvent::Detach));
    EXPECT_EQ(app.Calls, "IU");
}

TEST(ZVApp, RunHandlingHangupSurvivesAHangupAndAsksForTheEnd)
{
    const auto run = []
    {
        RecordingApp app;
        app.Work = []
        {
            raise(SIGHUP);
            return static_cast<int>(g_bExitRequested);
        };
        int handle = 0;
        EXPECT_EQ(app.RunHandlingHangup(&handle, nullptr, 5), 1);
        EXPECT_EQ(app.GetHandle(), &handle);
        EXPECT_EQ(app.GetData(), 5);
        EXPECT_EQ(app.Calls, "IPU");
        _exit(testing::Test::HasFailure() ? 1 : 42);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(42), testing::Eq("Received a hangup signal, will exit!\n"));
}
}
