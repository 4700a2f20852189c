#include "Counted.h"

#include "core/containers/ZVOwnedPtrMap.h"

#include <gtest/gtest.h>

namespace
{
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
