#include "core/containers/ZVBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

namespace
{
TEST(ZVBuffer, GrowsAndMovesWithItsBytes)
{
    ZVBuffer buffer;
    buffer.Append(nullptr, 5);
    buffer.Append("x", -1);
    EXPECT_EQ(buffer.GetData(), nullptr);
    buffer.Append("ab", 2);
    EXPECT_THROW(buffer.Append("x", INT64_MAX), std::bad_alloc);
    std::string expected = "ab";
    while (expected.size() < 10000)
    {
        buffer.Append(buffer.GetData() + 1, buffer.GetUsed() - 1);
        expected += expected.substr(1);
    }
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), buffer.GetData(), buffer.GetData() + buffer.GetUsed()));
    buffer.SetUsed(3);
    buffer.Grow(100000);
    EXPECT_EQ(buffer.GetAllocated(), 100000);
    ZVBuffer other(std::move(buffer));
    EXPECT_TRUE(other.GetUsed() == 3 && memcmp(other.GetData(), "abb", 3) == 0);
    other.SetUsed(100001);
    EXPECT_EQ(other.GetUsed(), 100000);
    other.SetUsed(-1);
    EXPECT_EQ(other.GetUsed(), 0);
}
}
