#include "Counted.h"

#include "core/containers/ZVOwnedPtrMap.h"
#include "core/containers/ZVUniqueList.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace
{
using IntSet = ZVUniqueList<int>;

template <class Map>
std::vector<int> KeysOf(const Map& map)
{
    std::vector<int> keys;
    for (const auto& entry : map)
        keys.push_back(entry.Key);
    return keys;
}

void AddAll(IntSet& set, std::initializer_list<int> keys)
{
    for (const int key : keys)
        EXPECT_TRUE(set.Add(key));
}

TEST(ZVMap, BucketCounts)
{
    struct Row
    {
        int32_t Size;
        bool AddHeadroom;
        int32_t BucketCount;
    };
    constexpr Row Rows[] = {
        {-1,  false, 7  },
        {7,   false, 7  },
        {8,   false, 15 },
        {15,  false, 15 },
        {16,  false, 31 },
        {6,   true,  7  },
        {7,   true,  15 },
        {100, true,  127},
    };
    for (const Row& row : Rows)
    {
        SCOPED_TRACE(row.Size);
        IntSet set;
        set.InitHashTable(row.Size, row.AddHeadroom);
        EXPECT_EQ(set.GetBucketCount(), row.BucketCount);
    }
    EXPECT_EQ(IntSet().GetBucketCount(), 0);
    EXPECT_EQ(IntSet(true).GetBucketCount(), 7);
    EXPECT_THROW(IntSet().InitHashTable(INT32_MAX, true), std::bad_alloc);
}

// Multiples of 7 * 15 share bucket 0 in both tables.
TEST(ZVMap, OrderIsByBucketAndChain)
{
    IntSet set;
    AddAll(set, {8, 0, 105, 1, 210});
    EXPECT_EQ(KeysOf(set), (std::vector {0, 105, 210, 8, 1}));
    set.InitHashTable(15, false);
    AddAll(set, {315});
    EXPECT_EQ(KeysOf(set), (std::vector {210, 105, 0, 315, 1, 8}));
    for (const int key : {0, 210, 315})
        EXPECT_TRUE(set.Remove(key));
    EXPECT_FALSE(set.Remove(315));
    AddAll(set, {0});
    EXPECT_EQ(KeysOf(set), (std::vector {105, 0, 1, 8}));
}

// Multiples of 7 * 31. The 17th entry is one more than 2 * 7 + 2, and the table for 17 has 31 buckets; the entry goes behind the
// turned chain.
TEST(ZVMap, GrowsWithTheSeventeenthEntry)
{
    IntSet set;
    for (int index = 0; index < 16; ++index)
        AddAll(set, {index * 217});
    EXPECT_FALSE(set.Add(217));
    EXPECT_EQ(set.GetBucketCount(), 7);

    AddAll(set, {16 * 217});
    EXPECT_EQ(set.GetBucketCount(), 31);
    std::vector<int> turned;
    for (int index = 15; index >= 0; --index)
        turned.push_back(index * 217);
    turned.push_back(16 * 217);
    EXPECT_EQ(KeysOf(set), turned);
}

TEST(ZVMap, PositionsWalkTheMapWhileItsEntriesAreRemoved)
{
    IntSet set;
    ZVMapPosition position = set.GetFirstPosition();
    EXPECT_EQ(position.Bucket, 0);
    EXPECT_EQ(set.GetNext(position), nullptr);

    AddAll(set, {2, 9, 5});
    position = set.GetFirstPosition();
    EXPECT_EQ(position.Bucket, 2);
    std::vector<int> seen;
    while (const IntSet::Node* node = set.GetNext(position))
    {
        seen.push_back(node->Key);
        set.RemoveKey(node->Key);
    }
    EXPECT_EQ(seen, (std::vector {2, 9, 5}));
    EXPECT_EQ(position.Bucket, -1);
    EXPECT_EQ(set.GetCount(), 0);
}

TEST(ZVMap, ValuesAreReplacedAndDefaulted)
{
    ZVMap<int, int, int, int, true> map;
    int value = 4;
    EXPECT_FALSE(map.Lookup(1, value));
    EXPECT_FALSE(map.RemoveKey(1));
    map.SetAt(1, 10);
    EXPECT_FALSE(map.Lookup(8, value));
    EXPECT_EQ(value, 4);
    map.SetAt(1, 11);
    map[8] += 5;

    ZVMap<int, int, int, int, true> other;
    other.SetAt(3, 3);
    other = std::move(map);
    EXPECT_EQ(KeysOf(other), (std::vector {1, 8}));
    EXPECT_TRUE(other.Lookup(1, value));
    EXPECT_EQ(value, 11);
    EXPECT_EQ(*other.FindValue(8), 5);
    other.RemoveAll();
    EXPECT_EQ(other.GetBucketCount(), 7);
}

struct Corner
{
    int32_t X;
    int32_t Y;

    uint32_t GetHash() const { return static_cast<uint32_t>(X + Y); }
    friend bool operator==(Corner, Corner) = default;
};

// -1 is 2^32 - 1 as a hash, which leaves 3 when divided by 7.
TEST(ZVMap, BucketsOfKeys)
{
    const auto bucketOf = []<class T>(T key)
    {
        ZVUniqueList<T> set;
        set.Add(key);
        EXPECT_FALSE(set.Add(key));
        return set.GetFirstPosition().Bucket;
    };
    EXPECT_EQ(bucketOf(-1), 3);
    EXPECT_EQ(bucketOf(int16_t {-1}), 3);
    EXPECT_EQ(bucketOf(int64_t {-1}), 3);
    EXPECT_EQ(bucketOf(uint64_t {0x100000009}), 2);
    EXPECT_EQ(bucketOf(9.75), 2);
    EXPECT_EQ(bucketOf(-1.5), 3);
    EXPECT_EQ(bucketOf(std::numeric_limits<double>::infinity()), 0);
    EXPECT_EQ(bucketOf(std::bit_cast<const Counted*>(uintptr_t {0x500000010})), 2);
    EXPECT_EQ(bucketOf(Corner {4, 5}), 2);
}

TEST(ZVOwnedPtrMap, DeletesReplacedAndRemovedObjects)
{
    for (const bool usePool : {false, true})
    {
        SCOPED_TRACE(usePool);
        {
            ZVOwnedPtrMap<uint16_t, uint16_t, Counted> map;
            EXPECT_TRUE(map.SetUsePool(usePool));
            for (uint16_t key = 0; key < 40; ++key)
                map.SetAt(key, new Counted(key));
            map.SetAt(3, map.Get(3));
            EXPECT_EQ(map.Get(3)->Value, 3);
            map.SetAt(3, new Counted(103));
            EXPECT_EQ(map[3]->Value, 103);
            EXPECT_EQ(Counted::Alive, 40);
            map.SetAt(4, nullptr);
            map.RemoveKey(5);
            EXPECT_EQ(map[1000], nullptr);
            EXPECT_EQ(Counted::Alive, 38);

            ZVOwnedPtrMap<uint16_t, uint16_t, Counted> other;
            other.SetAt(1, new Counted(1));
            other = std::move(map);
            EXPECT_EQ(Counted::Alive, 38);
        }
        EXPECT_EQ(Counted::Alive, 0);
    }
}
}
