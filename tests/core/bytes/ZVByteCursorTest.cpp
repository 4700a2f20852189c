#include "core/bytes/ZVByteCursor.h"

#include <gtest/gtest.h>

namespace
{
using DiscCursor = ZVByteCursor<std::endian::big, ZVZeroPastEnd>;
using LittleCursor = ZVByteCursor<std::endian::little, ZVZeroPastEnd>;

constexpr uint8_t Bytes[] = {0xfe, 0xdc, 0xba, 0x98, 0x76, 0x54, 0x32, 0x10, 'a', 'b', 'c'};
const ZVByteSpan Span(Bytes, sizeof Bytes);
}

TEST(ZVByteCursor, ReadsNumbersInTheOrderOfItsKind)
{
    DiscCursor big(Span);
    EXPECT_EQ(big.Read<uint8_t>(), 0xfe);
    EXPECT_EQ(big.Read<int16_t>(), -9030);  // 0xdcba
    EXPECT_EQ(big.ReadUnsigned(3), 0x987654u);
    EXPECT_EQ(big.GetPosition(), 6);
    big.SeekTo(0);
    EXPECT_EQ(big.Read<uint64_t>(), 0xfedcba9876543210u);

    LittleCursor little(Span);
    EXPECT_EQ(little.Read<uint16_t>(), 0xdcfe);
    EXPECT_EQ(little.ReadUnsigned(3), 0x7698bau);
    EXPECT_EQ(little.Read<int8_t>(), 0x54);
    little.SeekTo(0);
    EXPECT_EQ(little.Read<int64_t>(), 0x1032547698badcfe);
}

TEST(ZVByteCursor, GivesZeroPastTheEndAndStays)
{
    for (const int64_t position : {int64_t {8}, int64_t {11}, int64_t {12}, int64_t {-1}, INT64_MAX, INT64_MIN})
    {
        SCOPED_TRACE(position);
        DiscCursor cursor(Span, position);
        EXPECT_EQ(cursor.Read<uint32_t>(), 0u);
        EXPECT_EQ(cursor.GetPosition(), position);
    }
}

TEST(ZVByteCursor, MovesPastTextThatIsNotThere)
{
    DiscCursor cursor(Span, 8);
    EXPECT_EQ(cursor.ReadBytes(3), "abc");
    EXPECT_EQ(cursor.ReadBytes(0), "");
    EXPECT_EQ(cursor.ReadBytes(-5), "");
    EXPECT_EQ(cursor.GetPosition(), 11);
    cursor.SeekTo(9);
    EXPECT_EQ(cursor.ReadBytes(3), "");
    EXPECT_EQ(cursor.GetPosition(), 12);
    EXPECT_EQ(cursor.ReadBytes(INT64_MAX), "");
    EXPECT_EQ(cursor.GetPosition(), INT64_MAX);
}

TEST(ZVByteSpan, PartsStayInside)
{
    EXPECT_EQ(Span.Part(8, 2).GetSize(), 2);
    EXPECT_EQ(Span.Part(8, INT64_MAX).GetSize(), 3);
    EXPECT_EQ(Span.Part(11, 1).GetSize(), 0);
    EXPECT_EQ(Span.Part(12, 1).GetSize(), 0);
    EXPECT_EQ(Span.Part(-1, 5).GetSize(), 0);
    EXPECT_EQ(Span.Part(8, -1).GetSize(), 0);
    EXPECT_EQ(*Span.Part(8, 2).Find(1, 1), 'b');
    EXPECT_EQ(Span.Part(8, 2).Find(1, 2), nullptr);
}
