#include "core/containers/ZVBuffer.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <utility>

namespace
{
std::string TextOf(const ZVBuffer& buffer)
{
    return {reinterpret_cast<const char*>(buffer.GetData()), static_cast<size_t>(buffer.GetUsed())};
}

TEST(ZVBuffer, GrowsAndMovesWithItsBytes)
{
    ZVBuffer buffer;
    buffer.Append("abcdef", 6);
    buffer.SetUsed(3);
    buffer.Grow(1000);
    EXPECT_EQ(buffer.GetAllocated(), 1000);
    EXPECT_EQ(TextOf(buffer), "abc");
    buffer.SetUsed(6);
    ZVBuffer other(std::move(buffer));
    EXPECT_EQ(TextOf(other), "abcdef");
    other.SetUsed(1001);
    EXPECT_EQ(other.GetUsed(), 1000);
    other.SetUsed(-1);
    EXPECT_EQ(other.GetUsed(), 0);
}

TEST(ZVBuffer, AppendsItsOwnBytes)
{
    ZVBuffer buffer;
    buffer.Append("ab", 2);
    std::string expected = "ab";
    while (expected.size() < 10000)
    {
        buffer.Append(buffer.GetData() + 1, buffer.GetUsed() - 1);
        expected += expected.substr(1);
        ASSERT_EQ(TextOf(buffer), expected);
    }
}

TEST(ZVBuffer, AppendsNothingOrThrows)
{
    ZVBuffer buffer;
    buffer.Append(nullptr, 5);
    buffer.Append("x", 0);
    buffer.Append("x", -1);
    EXPECT_EQ(buffer.GetData(), nullptr);
    buffer.Append("x", 1);
    EXPECT_THROW(buffer.Append("x", INT64_MAX), std::bad_alloc);
    EXPECT_EQ(TextOf(buffer), "x");
}
}
