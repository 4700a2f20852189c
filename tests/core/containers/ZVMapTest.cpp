#include "Counted.h"

#include "core/Rows.h"
#include "core/containers/ZVOwnedPtrMap.h"
#include "core/containers/ZVUniqueList.h"

#include <gmock/gmock.h>

#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
using testing::ElementsAre;
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
    // The table grows with the first entry that two in each bucket and two more cannot hold.
    ExpectRows<int32_t, int32_t>({{16, 7}, {17, 31}, {64, 31}, {65, 127}}, [](int32_t count)
    {
        IntSet set;
        while (set.GetCount() < count)
            set.Add(set.GetCount());
        return set.GetBucketCount();
    });
}

// Multiples of 7 * 15 share bucket 0 in both tables. -1 is 2^32 - 1 as a hash, which leaves 3 when divided by 7.
TEST(ZVMap, OrderIsByBucketAndChain)
{
    IntSet set;
    ZVMapPosition position = set.GetFirstPosition();
    EXPECT_EQ(set.GetNext(position), nullptr);
    for (const int key : {8, 0, 105, -1, 1, 210})
        EXPECT_TRUE(set.Add(key)) << key;
    EXPECT_THAT(KeysOf(set), ElementsAre(0, 105, 210, 8, 1, -1));
    set.InitHashTable(15, false);
    EXPECT_TRUE(set.Remove(-1));
    EXPECT_TRUE(set.Add(315));
    EXPECT_FALSE(set.Add(315));
    EXPECT_THAT(KeysOf(set), ElementsAre(210, 105, 0, 315, 1, 8));
    // What a walk has passed may be removed.
    position = set.GetFirstPosition();
    while (const IntSet::Node* node = set.GetNext(position))
        set.RemoveKey(node->Key);
    EXPECT_EQ(position.Bucket, -1);
    EXPECT_EQ(set.GetCount(), 0);
}

TEST(ZVOwnedPtrMap, DeletesReplacedAndRemovedObjects)
{
    for (const bool usePool : {false, true})
    {
        SCOPED_TRACE(usePool);
        ZVOwnedPtrMap<uint16_t, uint16_t, Counted> map, other;
        EXPECT_TRUE(map.SetUsePool(usePool, 64));
        for (uint16_t key = 0; key < 40; ++key)
            map.SetAt(key, new Counted(key));
        EXPECT_FALSE(map.SetUsePool(!usePool));
        map.SetAt(3, map.Get(3));
        map.SetAt(4, new Counted(104));
        EXPECT_EQ(map.Get(3)->Value, 3);
        EXPECT_EQ(map[4]->Value, 104);
        EXPECT_EQ(Counted::Alive, 40);
        map.SetAt(4, nullptr);
        EXPECT_TRUE(map.RemoveKey(map.FindNode(5)->Key)) << "the key may be the entry's own";
        other.SetAt(1, new Counted(1));
        other = std::move(map);
        EXPECT_EQ(Counted::Alive, 38);
        other.RemoveAll();
        other.SetAt(1, new Counted(1));
    }
    EXPECT_EQ(Counted::Alive, 0);
}
}
