#include "system/library/ZVDllBuffer.h"
#include "system/library/ZVDllString.h"

#include <cstring>
#include <cwchar>
#include <gtest/gtest.h>

namespace
{
TEST(ZVDllString, ReadsAndWritesTheStringBehindIt)
{
    ZVString string = L"old";
    const ZVString share = string;
    ZVDllString view(string);
    wchar_t* const buffer = view.GetBuffer(100, true);
    EXPECT_STREQ(buffer, L"old");
    wmemset(buffer + 3, L'x', 97);
    view.ReleaseBuffer(100);
    EXPECT_EQ(string.GetLength(), 100);
    EXPECT_STREQ(share, L"old");
    view.SetString(L"new text", 3);
    EXPECT_STREQ(string, L"new");
    view.SetString(view.GetString() + 1, -1);
    EXPECT_STREQ(string, L"ew");
}

TEST(ZVDllBuffer, GrowsTheBufferBehindItFromTheSlotBehindTheDestructors)
{
    ZVBuffer buffer;
    ZVDllBuffer view(buffer);
    void** table = nullptr;
    memcpy(&table, static_cast<void*>(&view), sizeof table);
    uint8_t* const data = reinterpret_cast<uint8_t* (*)(IZVDllBuffer*, int64_t)>(table[2])(&view, 1000);
    ASSERT_EQ(data, view.GetData());
    view.SetUsed(5000);
    EXPECT_EQ(buffer.GetUsed(), 1000) << "no more than is there";
#ifndef __SANITIZE_ADDRESS__  // whose allocator ends the process in place of refusing
    EXPECT_EQ(view.Grow(INT64_MAX), nullptr);
#endif
}
}
