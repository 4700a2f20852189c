#include "core/string/StringProbe.h"

#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
using Blocks = std::vector<ZVStringData*>;

ZVStringGlobals& Manager = ZVStringGlobals::Get();

void FreeAll(const Blocks& blocks)
{
    std::for_each(blocks.begin(), blocks.end(), [](ZVStringData* block) { Manager.FreeData(block); });
}

// New blocks, pooled in this order.
Blocks PoolBlocks(const std::vector<int32_t>& capacities)
{
    Blocks blocks;
    for (const int32_t capacity : capacities)
        blocks.push_back(Manager.AllocateData(capacity - 1, false));
    FreeAll(blocks);
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
    const EmptyPool pool;
    const auto taken = [](int32_t need) { return Manager.AllocateData(need - 1, true); };
    Blocks blocks = PoolBlocks({200, 116, 101, 115, 101});
    EXPECT_EQ(taken(100), blocks[2]) << "the smallest surplus, of 16 and of 1, and the earlier of two";
    EXPECT_EQ(taken(100), blocks[3]) << "a surplus of 15 ends the scan";
    EXPECT_EQ(taken(102), blocks[1]);
    blocks.push_back(PoolBlocks({101})[0]);
    EXPECT_EQ(taken(100), blocks[5]) << "a block that comes back takes the slot in front";
    EXPECT_EQ(taken(200), blocks[0]);
    FreeAll({blocks[0], blocks[1], blocks[2], blocks[3], blocks[5]});
    blocks = PoolBlocks({1032, 1031});
    EXPECT_EQ(taken(1031), blocks[1]) << "the largest need that is served, and the only block that was kept";
    FreeAll({blocks[1]});
    const EmptyPool sixteenSlots;
    PoolBlocks(std::vector<int32_t>(17, 10));
    for (blocks.clear(); blocks.empty() || blocks.back()->Capacity == 10;)
        blocks.push_back(taken(1));
    EXPECT_EQ(blocks.size(), 16u + 1u) << "a seventeenth block was not kept";
    FreeAll(blocks);
}

TEST(ZVStringManager, FilledTextAndCharacterClasses)
{
    const EmptyPool pool;
    ZVStringData* old = ZVStringData::FromCharacters(Manager.CreateFromNarrow("a\xe9z"));
    EXPECT_EQ(std::wstring(old->Characters()), L"a\u00e9z");
    Manager.FreeData(old);
    ASSERT_EQ(Manager.CreateFilled(3), old->Characters()) << "the block comes again, with the old text in it";
    EXPECT_EQ(std::wstring(old->Characters(), 4), std::wstring(4, L'\0'));
    Manager.FreeData(old);
    Manager.RebuildCharacterTables(false);
    // Digit 1, alphabetic 2, space 4, upper 8, lower 16, punctuation 32, printable 64, which the no-break space is everywhere.
    ExpectRows<wchar_t, int>({{L'7', 65}, {L'Z', 74}, {L'a', 82}, {L'\t', 4}, {L'!', 96}, {0xa0, 64}},
                             [](wchar_t character) { return Manager.ClassFromTable(character); });
}
}
