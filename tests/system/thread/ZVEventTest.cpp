#include "system/thread/ZVEvent.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{
TEST(ZVEvent, StaysSignalledUntilItIsClearedUnlessItResetsItself)
{
    for (const bool autoReset : {false, true})
    {
        ZVEvent event(autoReset);
        EXPECT_FALSE(event.Wait(0));
        event.Signal();
        EXPECT_TRUE(event.Wait(INT32_MAX));
        EXPECT_EQ(event.Wait(20), !autoReset);
        event.Clear();
        EXPECT_FALSE(event.IsSignalled());
    }
}

TEST(ZVEvent, WakesEveryWait)
{
    ZVEvent event(false);
    std::thread endless([&event] { EXPECT_TRUE(event.Wait(-1)); });
    std::thread limited([&event] { EXPECT_TRUE(event.Wait(INT32_MAX)); });
    event.Signal();
    endless.join();
    limited.join();
}
}
