#include "system/thread/ZVCriticalSection.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{
TEST(ZVCriticalSection, KeepsOtherThreadsOutUntilTheLastUnlock)
{
    constexpr int32_t Rounds = 2000;
    ZVCriticalSection section;
    int64_t counter = 0;
    const auto count = [&section, &counter]
    {
        for (int32_t round = 0; round < Rounds; ++round)
        {
            EXPECT_FALSE(section.IsHeldByCaller());
            const ZVCriticalSectionLock outer(section);
            section.Lock();
            EXPECT_EQ(section.GetDepth(), 2);
            section.Unlock();
            EXPECT_TRUE(section.IsHeldByCaller());
            ++counter;
        }
    };
    std::thread other(count);
    count();
    other.join();
    EXPECT_EQ(counter, 2 * Rounds);
    EXPECT_EQ(section.GetDepth(), 0);
    EXPECT_EQ(section.GetOwner(), 0u);
}
}
