#include "mp4/heif/ILocAtom.h"

#include "mp4/AtomBytes.h"

#include <gtest/gtest.h>

namespace
{
using namespace AtomBytes;

// Four sizes, a digit each: of offset, length, base offset and index.
Bytes ILoc(int version, uint32_t sizes, uint32_t count, const Bytes& items)
{
    return FullAtom("iloc", Number(sizes, 2) + Number(count, version < 2 ? 2 : 4) + items, version);
}

const std::vector<ILocEntry>* FindEntries(const Tree& tree)
{
    const auto* const atom = tree.Find<ILocAtom>();
    return atom == nullptr ? nullptr : &atom->GetEntries();
}

struct Version
{
    int Number;
    Bytes File;
    uint16_t Method;
    uint64_t Index;
};

// Item 3 of data reference 5 has base offset 6, and one extent of 9 bytes at 8.
const Version Versions[] = {
    {0,        ILoc(0,        0x4884,        1,                          Number(3,      2) + Number(5, 2) + Number(6, 8) + Number(1, 2) + Number(8, 4) + Number(9, 8)), 0, 0},
    { 1, ILoc(1,              0x4884,      1, Number(3, 2) + "\xff\xf1" + Number(5, 2) + Number(6, 8) + Number(1, 2) + Number(8,           4) + Number(9,                                                                                                                                                            8)),
     1,                                                                                                                                                               0 },
    {                                                                                                                                                                    2,
     ILoc(2, 0x8448, 1,
     Number(3,              4) + Number(2, 2) + Number(5, 2) + Number(6, 4) + Number(1,           2) + Number(7,                                                                                                                                                            8) + Number(8,                                                                                                                                                              8) + Number(9,                                                                                                                                                               4)),
     2, 7},
};

TEST(ILocAtomTest, HasTheFieldsOfItsVersion)
{
    for (const Version& row : Versions)
    {
        const Tree tree(row.File);
        EXPECT_STREQ(tree.Message, L"") << row.Number;
        EXPECT_EQ(tree.Write(), row.File);
        ASSERT_NE(FindEntries(tree), nullptr) << row.Number;
        ASSERT_EQ(FindEntries(tree)->size(), 1U) << row.Number;
        const ILocEntry& entry = FindEntries(tree)->front();
        EXPECT_EQ(entry.ItemID, 3U);
        EXPECT_EQ(entry.GetConstructionMethod(), row.Method);
        EXPECT_EQ(entry.DataReferenceIndex, 5);
        EXPECT_EQ(entry.BaseOffset, 6U);
        ASSERT_EQ(entry.Extents.size(), 1U);
        EXPECT_EQ(entry.Extents[0].Index, row.Index);
        EXPECT_EQ(entry.Extents[0].Offset, 8U);
        EXPECT_EQ(entry.Extents[0].Length, 9U);
    }
}

TEST(ILocAtomTest, OddSizesOfBaseOffsetAndIndexReadNothing)
{
    // The base offset takes part in what an entry needs at least.
    const Bytes entry = Number(3, 4) + Number(0, 2) + Number(0, 2) + Number(1, 2) + Number(0x010203, 3);
    const Bytes file = ILoc(2, 0x3002, 1, entry + Zeros(2)) + ILoc(2, 0x3020, 1, entry);
    const Tree tree(file);
    EXPECT_STREQ(tree.Message, L"");
    EXPECT_EQ(tree.Write(), file);
    for (const auto& root : tree.Roots)
    {
        const auto& entries = dynamic_cast<const ILocAtom&>(*root).GetEntries();
        ASSERT_EQ(entries.size(), 1U);
        EXPECT_EQ(entries[0].BaseOffset, 0U);
        ASSERT_EQ(entries[0].Extents.size(), 1U);
        EXPECT_EQ(entries[0].Extents[0].Offset, 0x010203U);
        EXPECT_EQ(entries[0].Extents[0].Length, 0U);
    }
}

Bytes MakeItems(int count, uint16_t extents)
{
    Bytes items;
    const Bytes item = Number(1, 2) + Number(0, 2) + Number(extents, 2);
    for (int index = 0; index < count; ++index)
        items += item + Bytes(extents * size_t {2}, '\1');
    return items;
}

TEST(ILocAtomTest, LimitsItemsAndExtents)
{
    const Tree most(ILoc(0, 0x1100, 20'000, MakeItems(20'000, 32)));
    EXPECT_STREQ(most.Message, L"");
    ASSERT_NE(FindEntries(most), nullptr);
    EXPECT_EQ(FindEntries(most)->size(), 20'000U);
    EXPECT_EQ(FindEntries(most)->back().Extents.size(), 32U);
    // The count alone is enough.
    for (const int version : {0, 2})
        EXPECT_STREQ(Tree(ILoc(version, 0x1100, 20'001, "")).Message, L"ILocAtom::ILocAtom too many iloc item entries");
    EXPECT_STREQ(Tree(ILoc(0, 0x1100, 1, MakeItems(1, 33))).Message, L"ILocAtom::ILocAtom too many extents per entry");
}

TEST(ILocAtomTest, AnExtentMustBeThere)
{
    const Bytes items = MakeItems(1, 3);
    EXPECT_STREQ(Tree(ILoc(0, 0x1100, 1, items)).Message, L"");
    EXPECT_STREQ(Tree(ILoc(0, 0x1100, 1, items.substr(0, items.size() - 1))).Message,
                 L"ILocAtom::ILocAtom not enough bytes left for an extent");
    // The size of an index counts in version 2.
    const Bytes entry = Number(3, 4) + Number(0, 2) + Number(0, 2) + Number(1, 2) + Zeros(8);
    EXPECT_STREQ(Tree(ILoc(2, 0x4004, 1, entry)).Message, L"");
    EXPECT_STREQ(Tree(ILoc(2, 0x4008, 1, entry)).Message, L"ILocAtom::ILocAtom not enough bytes left for an extent");
}

TEST(ILocAtomTest, EndsBeforeAnItemThatDoesNotFit)
{
    struct Minimum
    {
        int Version;
        size_t Bytes;
    };
    for (const auto& [version, bytes] : {
             Minimum {0, 4 + 6 },
              Minimum {1, 4 + 8 },
              Minimum {2, 4 + 10}
    })
        for (const size_t present : {2 * bytes - 1, 2 * bytes})
        {
            const Bytes file = ILoc(version, 0x4440, 3, Zeros(present)) + Atom("free");
            const Tree tree(file);
            EXPECT_STREQ(tree.Message, L"") << version;
            EXPECT_EQ(tree.Write(), file) << version;
            ASSERT_NE(FindEntries(tree), nullptr);
            EXPECT_EQ(FindEntries(tree)->size(), present / bytes) << version;
            EXPECT_EQ(tree.Find<ILocAtom>()->GetItemCount(), 3U) << version;
        }
}

TEST(ILocAtomTest, AShortOneHasNoItems)
{
    for (const auto& [version, bytes] : {std::pair(0, size_t {4}), std::pair(1, size_t {4}), std::pair(2, size_t {6})})
        for (size_t size = 0; size < bytes; ++size)
        {
            const Bytes file = FullAtom("iloc", Bytes(size, '\xff'), version);
            const Tree tree(file);
            EXPECT_STREQ(tree.Message, L"") << version;
            EXPECT_EQ(tree.Write(), file) << version;
            ASSERT_NE(FindEntries(tree), nullptr);
            EXPECT_TRUE(FindEntries(tree)->empty()) << version;
        }
}

// Entries take more memory than bytes in the file, so many lists have a bound together.
TEST(ILocAtomTest, TheListsOfAFileShareABound)
{
    const Bytes full = ILoc(0, 0, 20'000, MakeItems(20'000, 0));
    Bytes file;
    for (int32_t count = 0; count <= CAtomLimits::MaximumEntries / 20'000; ++count)
        file += full;
    const Tree tree(file);
    EXPECT_STREQ(tree.Message, L"");
    ASSERT_GE(tree.Roots.size(), 2U);
    const auto& last = dynamic_cast<const ILocAtom&>(*tree.Roots.back());
    const auto& before = dynamic_cast<const ILocAtom&>(**(tree.Roots.end() - 2));
    EXPECT_EQ(before.GetEntries().size(), 20'000U);
    EXPECT_TRUE(last.GetEntries().empty());
    EXPECT_TRUE(tree.Write() == file);
}
}
