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
        std::thread waiting([&] { EXPECT_TRUE(event.Wait(autoReset ? -1 : INT32_MAX)); });
        event.Signal();
        waiting.join();
        EXPECT_EQ(event.Wait(20), !autoReset);
        event.Clear();
        EXPECT_FALSE(event.IsSignalled());
    }
}
}
