#include "core/containers/ZVBuffer.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

namespace
{
std::string TextOf(const ZVBuffer& buffer)
{
    return {reinterpret_cast<const char*>(buffer.GetData()), static_cast<size_t>(buffer.GetUsed())};
}

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
        ASSERT_EQ(TextOf(buffer), expected);
    }
    buffer.SetUsed(3);
    buffer.Grow(100000);
    EXPECT_EQ(buffer.GetAllocated(), 100000);
    EXPECT_EQ(TextOf(buffer), "abb");
    ZVBuffer other(std::move(buffer));
    EXPECT_EQ(TextOf(other), "abb");
    other.SetUsed(100001);
    EXPECT_EQ(other.GetUsed(), 100000);
    other.SetUsed(-1);
    EXPECT_EQ(other.GetUsed(), 0);
}
}
