#include "Counted.h"

#include "core/Rows.h"
#include "core/containers/ZVMapPool.h"
#include "core/containers/ZVOwnedPtrMap.h"
#include "core/containers/ZVUniqueList.h"

#include <bit>
#include <cstring>
#include <limits>
#include <new>
#include <set>
#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
using IntSet = ZVUniqueList<int>;

std::vector<int> KeysOf(const IntSet& set)
{
    std::vector<int> keys;
    for (const auto& entry : set)
        keys.push_back(entry.Key);
    return keys;
}

TEST(ZVMap, BucketCounts)
{
    ExpectRows<std::pair<int32_t, bool>, int32_t>({
        {{-1, false}, 7}, {{7, false}, 7}, {{8, false}, 15}, {{6, true}, 7}, {{7, true}, 15}, {{100, true}, 127},
    }, [](const auto& sizeAndHeadroom)
    {
        IntSet set;
        set.InitHashTable(sizeAndHeadroom.first, sizeAndHeadroom.second);
        return set.GetBucketCount();
    });
    EXPECT_EQ(IntSet().GetBucketCount() * 10 + IntSet(true).GetBucketCount(), 7);
    EXPECT_THROW(IntSet().InitHashTable(INT32_MAX, true), std::bad_alloc);
}

// Multiples of 7 * 15 share bucket 0 in both tables.
TEST(ZVMap, OrderIsByBucketAndChain)
{
    IntSet set;
    ZVMapPosition position = set.GetFirstPosition();
    EXPECT_EQ(set.GetNext(position), nullptr);
    for (const int key : {8, 0, 105, 1, 210})
        EXPECT_TRUE(set.Add(key));
    EXPECT_EQ(KeysOf(set), (std::vector {0, 105, 210, 8, 1}));
    set.InitHashTable(15, false);
    EXPECT_TRUE(set.Add(315) && !set.Add(315));
    EXPECT_EQ(KeysOf(set), (std::vector {210, 105, 0, 315, 1, 8}));
    EXPECT_TRUE(set.Remove(0) && set.Remove(210) && set.Remove(315) && !set.Remove(315) && set.Add(0));
    EXPECT_EQ(KeysOf(set), (std::vector {105, 0, 1, 8}));
    // A walk does not mind that what it has passed is removed.
    position = set.GetFirstPosition();
    while (const IntSet::Node* node = set.GetNext(position))
        set.RemoveKey(node->Key);
    EXPECT_TRUE(position.Bucket == -1 && set.GetCount() == 0);
}

TEST(ZVMap, ValuesAreReplacedAndDefaulted)
{
    ZVMap<int, int, int, int, true> map, other;
    int value = 4;
    EXPECT_TRUE(!map.Lookup(1, value) && !map.RemoveKey(1) && value == 4);
    map.SetAt(1, 10);
    map.SetAt(1, 11);
    map[8] += 5;
    other.SetAt(3, 3);
    other = std::move(map);
    EXPECT_TRUE(other.GetCount() == 2 && other.Lookup(1, value) && value == 11 && *other.FindValue(8) == 5);
    other.RemoveAll();
    EXPECT_EQ(other.GetBucketCount(), 7);
}

template <class T>
int32_t BucketOf(T key)
{
    ZVUniqueList<T> set;
    EXPECT_TRUE(set.Add(key) && !set.Add(key));
    return set.GetFirstPosition().Bucket;
}

// -1 is 2^32 - 1 as a hash, which leaves 3 when divided by 7.
TEST(ZVMap, BucketsOfKeys)
{
    EXPECT_TRUE(BucketOf(-1) == 3 && BucketOf(int64_t {-1}) == 3 && BucketOf(-1.5) == 3 && BucketOf(9.75) == 2);
    EXPECT_TRUE(BucketOf(uint64_t {0x100000009}) == 2 && BucketOf(std::numeric_limits<double>::infinity()) == 0);
    EXPECT_EQ(BucketOf(std::bit_cast<const Counted*>(uintptr_t {0x500000010})), 2);
}

TEST(ZVOwnedPtrMap, DeletesReplacedAndRemovedObjects)
{
    for (const bool usePool : {false, true})
    {
        ZVOwnedPtrMap<uint16_t, uint16_t, Counted> map, other;
        EXPECT_TRUE(map.SetUsePool(usePool, 64));
        for (uint16_t key = 0; key < 40; ++key)
            map.SetAt(key, new Counted(key));
        EXPECT_FALSE(map.SetUsePool(!usePool));
        map.SetAt(3, map.Get(3));
        map.SetAt(4, new Counted(104));
        EXPECT_TRUE(map.Get(3)->Value == 3 && map[4]->Value == 104 && map[1000] == nullptr && Counted::Alive == 40);
        map.SetAt(4, nullptr);
        map.RemoveKey(5);
        other.SetAt(1, new Counted(1));
        other = std::move(map);
        EXPECT_EQ(Counted::Alive, 38);
        other.RemoveAll();
        other.SetAt(1, new Counted(1));
    }
    EXPECT_EQ(Counted::Alive, 0);
}

// Takes nodes and writes all their bytes, so that one outside its block is found out.
void TakeNodes(ZVMapPool& pool, size_t nodeSize, int32_t count)
{
    std::set<void*> nodes;
    for (int32_t taken = 0; taken < count; ++taken)
    {
        void* const node = pool.Allocate();
        EXPECT_TRUE(reinterpret_cast<uintptr_t>(node) % 8 == 0 && nodes.insert(node).second);
        memset(node, 0x5a, nodeSize);
    }
}

// The blocks with room and those used up, by the size of a block and a node and the count of nodes. A block is used up when less
// than a node is left. Where only the padding of odd nodes does not fit it stays up to index 8.
TEST(ZVMapPool, BlocksFillUpAndAreSortedOut)
{
    using Counts = std::pair<int32_t, int32_t>;
    ExpectRows<std::tuple<size_t, size_t, int32_t>, Counts>({
        {{40, 16, 2}, {1, 0}}, {{40, 16, 3}, {1, 1}}, {{0, 24, 3}, {1, 2}}, {{26, 12, 9}, {9, 0}}, {{26, 12, 10}, {9, 1}},
    }, [](const auto& sizes)
    {
        const auto [blockSize, nodeSize, nodes] = sizes;
        ZVMapPool pool(blockSize, nodeSize);
        TakeNodes(pool, nodeSize, nodes);
        const Counts counts(pool.GetBlocksWithRoom(), pool.GetUsedUpBlocks());
        pool.Reset();
        EXPECT_EQ(pool.GetBlocksWithRoom(), counts.first + counts.second);
        TakeNodes(pool, nodeSize, nodes);
        EXPECT_EQ(pool.GetBlocksWithRoom() + pool.GetUsedUpBlocks(), counts.first + counts.second);
        return counts;
    });
}
}
