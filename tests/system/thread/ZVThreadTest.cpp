#include "system/thread/ZVThread.h"

#include "FakeTools.h"
#include "PriorityRights.h"
#include "core/ZVToolsPointer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <mutex>
#include <string>

#include <sched.h>

namespace
{
using testing::ElementsAre;
using testing::MatchesRegex;

constexpr int32_t NoLimit = -1;

// Bodies that have begun, and threads that no longer use their object.
std::atomic<int32_t> s_runs = 0;
std::atomic<int32_t> s_exits = 0;

void AwaitExits(int32_t count)
{
    while (s_exits < count)
        std::this_thread::yield();
}

// A thread that keeps the order of its steps, and whose body waits for the stop flag unless it is told otherwise.
class RecordingThread : public ZVThread
{
public:
    ~RecordingThread() override { Stop(NoLimit); }

    bool RegisterThread(uint32_t argument) override { return Note("register " + std::to_string(argument)); }
    bool ApplyPriority(int32_t level) override { return Note("priority " + std::to_string(level)); }

    std::string GetSteps() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_steps;
    }

    bool MayStart = true;
    bool Result = true;
    std::function<void()> Body = [this] { Wait(); };
    std::function<bool()> MayAbandon = [] { return true; };

protected:
    bool Run() override
    {
        ++s_runs;
        Note("run " + std::to_string(GetArgument()));
        EXPECT_TRUE(IsInRun());
        // A copy, because a test may set another body for the next start while an abandoned thread is in this one.
        const std::function<void()> body = Body;
        body();
        return Result;
    }
    bool OnStopTimeout() override { return MayAbandon(); }
    void OnCleanUp(bool flag) override { Note(flag ? "clean up" : "clean up, false"); }
    bool OnBeforeStart() override { return Note("before") && MayStart; }
    void OnAfterExit() override { Note("after"); }
    ExitFunction GetExitFunction() const override { return CountExit; }

private:
    static void CountExit(void* result)
    {
        ++s_exits;
        pthread_exit(result);
    }

    bool Note(const std::string& step)
    {
        const std::scoped_lock lock(m_mutex);
        m_steps += step + "; ";
        return true;
    }

    mutable std::mutex m_mutex;
    std::string m_steps;
};

class ZVThreadTest : public testing::Test
{
protected:
    ZVThreadTest()
    {
        g_pZVTools = &m_tools;
        s_runs = 0;
        s_exits = 0;
    }
    ~ZVThreadTest() override
    {
        AwaitExits(s_runs);
        g_pZVTools = nullptr;
    }

    FakeTools m_tools;
};

TEST_F(ZVThreadTest, RunsItsStepsInOrder)
{
    for (const bool result : {true, false})
    {
        RecordingThread thread;
        thread.Result = result;
        EXPECT_TRUE(thread.Stop(NoLimit));
        EXPECT_TRUE(thread.Start(7, false, -1));
        EXPECT_FALSE(thread.GetFinished());
        thread.SetStopFlag(true);
        thread.WaitForExit();
        EXPECT_TRUE(thread.GetFinished());
        EXPECT_FALSE(thread.IsInRun());
        EXPECT_EQ(thread.Stop(NoLimit), result);
        thread.SetCleanUpFlag(false);
        EXPECT_FALSE(thread.Stop(NoLimit)) << "the result is fetched";
        EXPECT_EQ(thread.GetSteps(), "before; register 7; priority -1; run 7; after; clean up; clean up, false; ");
    }
}

TEST_F(ZVThreadTest, StartsASecondTimeOnlyWhenAskedTo)
{
    ZVThread thread(true);
    uint64_t first = 0;
    EXPECT_TRUE(thread.GetHandleOut(&first));
    EXPECT_NE(first, 0u);
    EXPECT_TRUE(thread.Start(0, false, 0));
    EXPECT_EQ(thread.GetHandle(), first);
    EXPECT_EQ(thread.GetStartedCount(), 1);
    EXPECT_TRUE(thread.Start(0, true, 0));
    EXPECT_EQ(thread.GetStartedCount(), 2);
    EXPECT_TRUE(thread.IsRunning());
    EXPECT_FALSE(thread.GetStopFlag());
    EXPECT_TRUE(thread.Stop(NoLimit));
    EXPECT_TRUE(thread.ThreadBody()) << "the stop flag is still set, so the body returns at once";
}

TEST_F(ZVThreadTest, AStartCanBeRefusedByItsHookAndByTheSystem)
{
    RecordingThread thread;
    thread.MayStart = false;
    EXPECT_FALSE(thread.Start(0, false, 0));
    EXPECT_FALSE(thread.Wait()) << "nobody could end this wait";

    // No stack of this size is to be had.
    pthread_attr_t usual;
    pthread_attr_t huge;
    pthread_getattr_default_np(&usual);
    pthread_attr_init(&huge);
    pthread_attr_setstacksize(&huge, size_t {1} << 46);
    pthread_setattr_default_np(&huge);
    thread.MayStart = true;
    EXPECT_FALSE(thread.Start(0, false, 15));
    pthread_setattr_default_np(&usual);
    EXPECT_FALSE(thread.IsRunning());
    EXPECT_EQ(thread.GetStartedCount(), 0);
    EXPECT_THAT(m_tools.Manager.Lines, ElementsAre("1|ZVThread::StartThread|Error creating thread!"));
    EXPECT_TRUE(thread.Start(0, false, 0));
}

TEST_F(ZVThreadTest, GetsAThreadEvenWithoutTheRightToItsScheduling)
{
    int policy = -1;
    ZVRunWithoutPriorityRights(
        [&policy]
        {
            RecordingThread thread;
            thread.Body = [&policy] { policy = sched_getscheduler(0); };
            EXPECT_TRUE(thread.Start(0, false, 15));
            EXPECT_TRUE(thread.Stop(NoLimit));
        });
    EXPECT_EQ(policy, SCHED_OTHER);
}

TEST_F(ZVThreadTest, AbandonsAThreadThatDoesNotStop)
{
    ZVEvent isRunning(false);
    ZVEvent mayEnd(false);
    std::atomic<bool> stopFlagInBody = false;
    std::atomic<bool> waitInBody = false;
    int32_t questions = 0;
    RecordingThread thread;
    thread.Body = [&]
    {
        isRunning.Signal();
        mayEnd.Wait(NoLimit);
        stopFlagInBody = thread.GetStopFlag();
        waitInBody = thread.Wait();
    };
    thread.MayAbandon = [&questions] { return ++questions == 3; };
    thread.Start(0, false, 0);
    isRunning.Wait(NoLimit);

    testing::internal::CaptureStderr();
    EXPECT_FALSE(thread.Stop(0));
    const std::string line = "Hard killing thread \\(handle=[0-9a-f]+\\), it exceeded timeout=0 MS";
    EXPECT_THAT(testing::internal::GetCapturedStderr(), MatchesRegex(line + "\n"));
    EXPECT_THAT(m_tools.Manager.Lines, ElementsAre(MatchesRegex("1\\|ZVThread::Stop\\|" + line)));
    EXPECT_EQ(questions, 3);
    EXPECT_FALSE(thread.IsRunning());
    EXPECT_FALSE(thread.IsInRun());

    // The old thread knows that it is to end when a new one runs, and leaves the new one's state alone.
    thread.Body = [&thread] { thread.Wait(); };
    thread.Start(0, false, 0);
    const uint64_t second = thread.GetHandle();
    mayEnd.Signal();
    AwaitExits(1);
    EXPECT_TRUE(stopFlagInBody);
    EXPECT_TRUE(waitInBody);
    EXPECT_EQ(thread.GetHandle(), second);
    EXPECT_FALSE(thread.GetFinished());
    EXPECT_TRUE(thread.Stop(NoLimit));
}

TEST_F(ZVThreadTest, AnAbandonedWaitKeepsItsEvent)
{
    ZVEvent isRunning(true);
    RecordingThread thread;
    thread.SetTimeout(0);
    thread.Body = [&]
    {
        isRunning.Signal();
        EXPECT_TRUE(thread.Wait());
    };
    testing::internal::CaptureStderr();
    for (int32_t round = 0; round < 20; ++round)
    {
        thread.Start(0, false, 0);
        isRunning.Wait(NoLimit);
        thread.Stop(NoLimit);
    }
    testing::internal::GetCapturedStderr();
    AwaitExits(20);
}

TEST_F(ZVThreadTest, ABodyThatStopsItselfOnlySetsTheFlag)
{
    RecordingThread thread;
    thread.Body = [&thread]
    {
        EXPECT_FALSE(thread.Stop(NoLimit));
        EXPECT_TRUE(thread.GetStopFlag());
        EXPECT_TRUE(thread.Start(0, true, 0));
    };
    thread.Start(0, false, 0);
    EXPECT_TRUE(thread.Stop(NoLimit));
    EXPECT_EQ(thread.GetStartedCount(), 1);
}

TEST_F(ZVThreadTest, WaitsForTheStopFlagForTheOtherThreadOrForTheTime)
{
    RecordingThread other;
    other.Start(0, false, 0);
    ZVEvent timesAreUp(false);
    bool results[4] = {};
    RecordingThread thread;
    thread.Body = [&]
    {
        results[0] = thread.Wait(50);
        results[1] = thread.Wait(50, &other);
        timesAreUp.Signal();
        results[2] = thread.Wait(60'000, &other);
        results[3] = thread.Wait(60'000);
    };
    thread.Start(0, false, 0);
    timesAreUp.Wait(NoLimit);
    other.SetStopFlag(true);
    other.WaitForExit();
    thread.SetStopFlag(true);
    thread.WaitForExit();
    EXPECT_THAT(results, ElementsAre(false, false, true, true));
}

TEST_F(ZVThreadTest, MayBeStartedAndStoppedFromAnyThread)
{
    RecordingThread thread;
    thread.SetPollInterval(0);
    const auto startAndStop = [&thread]
    {
        for (int32_t round = 0; round < 20; ++round)
        {
            EXPECT_TRUE(thread.Start(0, round % 3 == 0, 0));
            if (round % 4 == 0)
                thread.Stop(NoLimit);
            thread.SetStopFlag(true);
        }
    };
    std::thread other(startAndStop);
    startAndStop();
    other.join();
    thread.Stop(NoLimit);
    EXPECT_EQ(s_runs, thread.GetStartedCount());
}
}
