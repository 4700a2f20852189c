#include "system/thread/ZVTimer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace
{
// Only lower limits: a busy machine can make any sleep longer.
TEST(ZVTimer, CountsSecondsSinceItsRestart)
{
    const int64_t before = ZVTimer::GetMicroseconds();
    ZVTimer timer;
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const double first = timer.GetElapsed(true);
    const double second = timer.GetElapsed(false);
    EXPECT_GE(first, 0.030);
    EXPECT_LE(first + second, static_cast<double>(ZVTimer::GetMicroseconds() - before) / 1e6 + 1e-9);
    EXPECT_NEAR(ZVTimer::GetMilliseconds() / 1000.0, static_cast<double>(time(nullptr)), 5.0);
}
}
