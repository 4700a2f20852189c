#include "core/string/StringProbe.h"

#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
using Blocks = std::vector<ZVStringData*>;

ZVStringGlobals& Manager = ZVStringGlobals::Get();

// New blocks, pooled in this order.
Blocks PoolBlocks(const std::vector<int32_t>& capacities)
{
    Blocks blocks;
    for (const int32_t capacity : capacities)
        blocks.push_back(Manager.AllocateData(capacity - 1, false));
    std::for_each(blocks.begin(), blocks.end(), [](ZVStringData* block) { Manager.FreeData(block); });
    return blocks;
}

TEST(ZVStringManager, CreateFromWide)
{
    constexpr bool Force = true, Trust = true;
    // The text that was created, with the capacity of its block, or 0 for the singleton.
    const auto created = [](const wchar_t* source, int32_t sourceLength, int32_t allocLength, bool force, bool trust)
    {
        const EmptyPool pool;
        wchar_t* characters = Manager.CreateFromWide(source, sourceLength, allocLength, force, trust, true);
        ZVStringData* block = ZVStringData::FromCharacters(characters);
        EXPECT_EQ(characters[block->Length], L'\0');
        if (characters == Manager.GetEmpty())
            return S(L" 0");
        const S text = ZVFormat(L"%s %d", S(characters), block->Capacity);
        Manager.FreeData(block);
        return text;
    };
    ExpectTexts({
        {created(L"ab\0cd", 5, -1, !Force, !Trust), L"ab 3"},
        {created(L"abc", -1, 10, !Force, !Trust), L"abc 11"}, {created(L"ab\0cd", 5, -1, !Force, Trust),  L"ab 6"},
        {created(L"abc", -1, 2, !Force, !Trust),  L"ab 3"},   {created(L"\0abc", 4, -1, !Force, !Trust),  L" 0"},
        {created(L"abc", -1, 0, !Force, !Trust),  L" 0"},     {created(nullptr, 3, -1, !Force, Trust),    L" 0"},
        {created(L"abc", -1, 0, Force, !Trust),   L" 1"},     {created(nullptr, -1, 5, !Force, !Trust),   L" 6"},
    });
}

TEST(ZVStringManager, PoolGivesTheBestBlock)
{
    const auto take = [](int32_t need)
    {
        ZVStringData* const block = Manager.AllocateData(need - 1, true);
        Manager.FreeData(block);
        return block;
    };
    {
        const EmptyPool pool;
        const Blocks blocks = PoolBlocks({200, 116, 101, 101});
        EXPECT_EQ(take(100), blocks[2]) << "the smallest surplus, and the first of two";
        EXPECT_EQ(take(102), blocks[1]);
    }
    const EmptyPool pool;
    const Blocks blocks = PoolBlocks({1032, 1031});
    EXPECT_EQ(take(1031), blocks[1]) << "a block of 1031 is kept, one of 1032 is not";
}
}
