#include "core/string/StringProbe.h"
#include "core/string/ZVCharacter.h"

#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
ZVStringGlobals& Manager()
{
    return ZVStringGlobals::Get();
}

// New blocks, pooled in this order.
std::vector<ZVStringData*> PoolBlocks(const std::vector<int32_t>& capacities)
{
    std::vector<ZVStringData*> blocks;
    for (const int32_t capacity : capacities)
        blocks.push_back(Manager().AllocateData(capacity - 1, false));
    std::for_each(blocks.begin(), blocks.end(), [](ZVStringData* block) { Manager().FreeData(block); });
    return blocks;
}

TEST(ZVStringManager, CreateFromWide)
{
    constexpr bool Force = true, Trust = true;
    // The text that was created, with the capacity of its block, or 0 for the singleton.
    const auto created = [](const wchar_t* source, int32_t sourceLength, int32_t allocLength, bool force, bool trust)
    {
        const EmptyPool pool;
        wchar_t* characters = Manager().CreateFromWide(source, sourceLength, allocLength, force, trust, true);
        ZVStringData* block = ZVStringData::FromCharacters(characters);
        EXPECT_EQ(characters[block->Length], L'\0');
        const bool isSingleton = characters == Manager().GetEmpty();
        EXPECT_EQ(block->RefCount.load(), isSingleton ? ZVStringData::ImmortalCount : 1);
        const ZVString text = ZVFormat(L"%s %d", ZVString(characters, block->Length), isSingleton ? 0 : block->Capacity);
        if (!isSingleton)
            Manager().FreeData(block);
        return text;
    };
    ExpectTexts({
        {"measured",                      created(L"abc", -1, -1, !Force, !Trust),   L"abc 4" },
        {"NUL ends an untrusted length",  created(L"ab\0cd", 5, -1, !Force, !Trust), L"ab 3"  },
        {"trusted length copies NUL",     created(L"ab\0cd", 5, -1, !Force, Trust),  L"ab 6"  },
        {"NUL in the first place",        created(L"\0abc", 4, -1, !Force, !Trust),  L" 0"    },
        {"room beyond the text",          created(L"abc", -1, 10, !Force, !Trust),   L"abc 11"},
        {"room for a part of the text",   created(L"abc", -1, 2, !Force, !Trust),    L"ab 3"  },
        {"null source of trusted length", created(nullptr, 3, -1, !Force, Trust),    L" 0"    },
        {"null source with room",         created(nullptr, -1, 5, !Force, !Trust),   L" 6"    },
        {"no room",                       created(L"abc", -1, 0, !Force, !Trust),    L" 0"    },
        {"no room, but a block",          created(L"abc", -1, 0, Force, !Trust),     L" 1"    },
    });
}

TEST(ZVStringManager, PoolGivesTheBestBlock)
{
    // The capacity of the block that is given for a need when blocks of these capacities are pooled.
    const auto given = [](const std::vector<int32_t>& capacities, int32_t need, bool usePool = true)
    {
        const EmptyPool pool;
        PoolBlocks(capacities);
        ZVStringData* block = Manager().AllocateData(need - 1, usePool);
        EXPECT_EQ(block->Length, need - 1);
        EXPECT_EQ(block->RefCount.load(), 1);
        const int32_t capacity = block->Capacity;
        Manager().FreeData(block);
        const EmptyPool rest;  // keeps what is still pooled from the next case
        return capacity;
    };
    ExpectNumbers({
        {"smallest surplus",                given({200, 120, 150}, 100), 120},
        {"surplus of 15 ends the scan",     given({115, 101}, 100),      115},
        {"surplus of 16 does not",          given({116, 101}, 100),      101},
        {"all too small",                   given({50, 99}, 100),        100},
        {"pool not asked for",              given({110}, 100, false),    100},
        {"block that is too large to keep", given({1032}, 1),            1  },
    });
}

TEST(ZVStringManager, SlotsOfThePool)
{
    const EmptyPool pool;
    std::vector<ZVStringData*> blocks = PoolBlocks({200, 300, 200});
    ASSERT_EQ(Manager().AllocateData(99, true), blocks[0]);
    // A new block takes the slot in front, and of two equal blocks the one in front wins.
    blocks.push_back(PoolBlocks({200})[0]);
    EXPECT_EQ(Manager().AllocateData(99, true), blocks[3]);
    Manager().FreeData(blocks[0]);
    Manager().FreeData(blocks[3]);

    const EmptyPool sixteenSlots;
    blocks = PoolBlocks({1031});
    EXPECT_EQ(Manager().AllocateData(1030, true), blocks[0]) << "the largest need that is served";
    Manager().FreeData(blocks[0]);
    const EmptyPool rest;
    blocks = PoolBlocks(std::vector<int32_t>(17, 10));
    for (ZVStringData*& block : blocks)
        block = Manager().AllocateData(0, true);
    EXPECT_EQ(std::count_if(blocks.begin(), blocks.end(), [](ZVStringData* block) { return block->Capacity == 10; }), 16);
    std::for_each(blocks.begin(), blocks.end(), [](ZVStringData* block) { Manager().FreeData(block); });
}

TEST(ZVStringManager, FilledTextAndCharacterClasses)
{
    const EmptyPool pool;
    ZVStringData* old = ZVStringData::FromCharacters(Manager().CreateFromNarrow("a\xe9z"));
    EXPECT_EQ(std::wstring(old->Characters()), L"a\u00e9z");
    Manager().FreeData(old);
    ASSERT_EQ(Manager().CreateFilled(3), old->Characters()) << "the block comes again, with the old text in it";
    EXPECT_EQ(std::wstring(old->Characters(), 4), std::wstring(4, L'\0'));
    Manager().FreeData(old);
    Manager().RebuildCharacterTables(false);
    EXPECT_EQ(Manager().ClassFromTable(L'7'), 1 + 64);
    EXPECT_EQ(Manager().ClassFromTable(L'Z'), 2 + 8 + 64);
    EXPECT_EQ(Manager().ClassFromTable(L'a'), 2 + 16 + 64);
    EXPECT_EQ(Manager().ClassFromTable(L'\t'), 4);
    EXPECT_EQ(Manager().ClassFromTable(L'!'), 32 + 64);
    EXPECT_EQ(Manager().ClassFromTable(0xa0), 64) << "the no-break space prints in every locale";
}
}
