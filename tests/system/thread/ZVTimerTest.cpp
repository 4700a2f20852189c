#include "system/thread/ZVTimer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <thread>

namespace
{
TEST(ZVTimer, CountsSecondsSinceItsRestart)
{
    const int64_t before = ZVTimer::GetMicroseconds();
    ZVTimer timer;
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const double first = timer.GetElapsed(true);
    const double second = timer.GetElapsed(false);
    EXPECT_GE(first, 0.030);
    // The limit is a reading taken later, since a busy machine makes any step longer.
    EXPECT_LE(first + second, static_cast<double>(ZVTimer::GetMicroseconds() - before) / 1e6 + 1e-9);
    EXPECT_NEAR(ZVTimer::GetMilliseconds(), static_cast<double>(time(nullptr)) * 1000, 60'000) << "the clock on the wall";
}
}
