#include "system/thread/ZVThread.h"

#include "system/log/ToolsFixture.h"

#include <functional>
#include <string>
#include <thread>

namespace
{
using testing::ElementsAre;
using testing::MatchesRegex;
using ZVThreadTest = ToolsFixture;

constexpr int32_t NoLimit = -1;

// Threads that still use their object.
std::atomic<int32_t> s_alive = 0;

template <class Condition>
void Await(Condition condition)
{
    while (!condition())
        std::this_thread::yield();
}

// A thread whose body waits for the stop flag unless it is told otherwise.
class BodyThread final : public ZVThread
{
public:
    ~BodyThread() override
    {
        Stop(NoLimit);
        Await([] { return s_alive == 0; });
    }

    void StartAndAwaitBody()
    {
        Start(0, false, 0);
        Await([this] { return Bodies == GetStartedCount(); });
    }

    std::atomic<int32_t> Bodies = 0;  // the number that have begun
    std::function<void()> Body = [this] { Wait(); };
    std::function<bool()> MayAbandon = [] { return true; };

protected:
    bool Run() override
    {
        // A copy, because a test may set another body for the next start while an abandoned thread is in this one.
        const std::function<void()> body = Body;
        ++s_alive;
        ++Bodies;
        body();
        return true;
    }
    bool OnStopTimeout() override { return MayAbandon(); }
    ExitFunction GetExitFunction() const override
    {
        return [](void*) { --s_alive; };
    }
};

TEST_F(ZVThreadTest, TellsWhenTheSystemHasNoThread)
{
    // The system has no stack of this size.
    pthread_attr_t usual;
    pthread_attr_t huge;
    pthread_getattr_default_np(&usual);
    pthread_attr_init(&huge);
    pthread_attr_setstacksize(&huge, size_t {1} << 46);
    pthread_setattr_default_np(&huge);
    BodyThread thread;
    EXPECT_FALSE(thread.Start(0, false, 15));
    pthread_setattr_default_np(&usual);
    EXPECT_FALSE(thread.IsRunning());
    EXPECT_EQ(thread.GetStartedCount(), 0);
    EXPECT_FALSE(thread.Wait());
    EXPECT_THAT(m_tools.Manager.Lines, ElementsAre("1|ZVThread::StartThread|Error creating thread!"));
    EXPECT_TRUE(thread.Start(0, false, 0));
}

TEST_F(ZVThreadTest, AbandonsAThreadThatDoesNotStop)
{
    ZVEvent mayEnd(false);
    std::atomic<bool> isStoppedInBody = false;
    int32_t questions = 0;
    BodyThread thread;
    thread.Body = [&]
    {
        mayEnd.Wait(NoLimit);
        isStoppedInBody = thread.GetStopFlag() && thread.Wait();
    };
    thread.MayAbandon = [&questions] { return ++questions == 3; };
    thread.StartAndAwaitBody();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(thread.Stop(0));
    const std::string line = "Hard killing thread \\(handle=[0-9a-f]+\\), it exceeded timeout=0 MS";
    EXPECT_THAT(testing::internal::GetCapturedStderr(), MatchesRegex(line + "\n"));
    EXPECT_THAT(m_tools.Manager.Lines, ElementsAre(MatchesRegex("1\\|ZVThread::Stop\\|" + line)));
    EXPECT_EQ(questions, 3);
    EXPECT_FALSE(thread.IsRunning());

    // While a new thread runs, the old one still knows that it is to end, and it leaves the state of the new one alone.
    thread.Body = [&thread] { thread.Wait(); };
    thread.StartAndAwaitBody();
    mayEnd.Signal();
    Await([] { return s_alive == 1; });
    EXPECT_TRUE(isStoppedInBody);
    EXPECT_TRUE(thread.IsRunning());
    EXPECT_FALSE(thread.GetFinished());
    EXPECT_TRUE(thread.Stop(NoLimit));
}

TEST_F(ZVThreadTest, ABodyThatStopsItselfOnlySetsTheFlag)
{
    BodyThread thread;
    EXPECT_TRUE(thread.Stop(NoLimit)) << "never started";
    thread.Body = [&thread]
    {
        EXPECT_FALSE(thread.Stop(NoLimit));
        EXPECT_TRUE(thread.GetStopFlag());
        EXPECT_TRUE(thread.Start(0, true, 0)) << "it runs";
    };
    thread.Start(0, false, 0);
    EXPECT_TRUE(thread.Stop(NoLimit));
    EXPECT_FALSE(thread.Stop(NoLimit)) << "the result is fetched";
    EXPECT_EQ(thread.GetStartedCount(), 1);
}

TEST_F(ZVThreadTest, WaitsForTheStopFlagForTheOtherThreadOrForTheTime)
{
    BodyThread other;
    other.Start(0, false, 0);
    ZVEvent timesAreUp(false);
    BodyThread thread;
    thread.Body = [&]
    {
        EXPECT_FALSE(thread.Wait(20));
        EXPECT_FALSE(thread.Wait(20, &other));
        timesAreUp.Signal();
        EXPECT_TRUE(thread.Wait(INT32_MAX, &other));
        EXPECT_TRUE(thread.Wait(INT32_MAX));
    };
    thread.Start(0, false, 0);
    timesAreUp.Wait(NoLimit);
    other.SetStopFlag(true);
    other.WaitForExit();
    thread.SetStopFlag(true);
    thread.WaitForExit();
}

// Nobody waits for a thread that somebody else has started in the meantime: that one has no reason to end.
TEST_F(ZVThreadTest, MayBeStartedAndStoppedFromAnyThread)
{
    BodyThread thread;
    thread.SetPollInterval(0);
    const auto startAndStop = [&thread]
    {
        for (int32_t round = 0; round < 20; ++round)
        {
            EXPECT_TRUE(thread.Start(0, round % 3 == 0, 0));
            if (round % 4 == 0)
                thread.Stop(NoLimit);
        }
    };
    std::thread other(startAndStop);
    startAndStop();
    other.join();
    thread.Stop(NoLimit);
    EXPECT_EQ(thread.Bodies, thread.GetStartedCount());
}
}
