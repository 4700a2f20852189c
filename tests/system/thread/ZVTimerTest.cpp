#include "system/thread/ZVTimer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace
{
// Each upper limit is a reading taken later, since a busy machine makes any step longer.
TEST(ZVTimer, CountsSecondsSinceItsRestart)
{
    const int64_t before = ZVTimer::GetMicroseconds();
    ZVTimer timer;
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const double first = timer.GetElapsed(true);
    const double second = timer.GetElapsed(false);
    EXPECT_GE(first, 0.030);
    EXPECT_LE(first + second, static_cast<double>(ZVTimer::GetMicroseconds() - before) / 1e6 + 1e-9);
}

TEST(ZVTimer, GivesTheWallClockInMilliseconds)
{
    const auto seconds = []
    { return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count(); };
    const double earliest = seconds();
    const double present = ZVTimer::GetMilliseconds() / 1000.0;
    EXPECT_TRUE(present > earliest - 0.001 && present < seconds() + 0.001);
}
}
