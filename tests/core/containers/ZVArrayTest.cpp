#include "Counted.h"

#include "core/containers/ZVArray.h"

#include <gtest/gtest.h>

namespace
{
TEST(ZVArray, ElementsAreConstructedAndDestroyedOnce)
{
    {
        ZVArray<Counted> array;
        for (int value = 0; value < 70; ++value)
            array.Add(Counted(value));
        // Values that lie in storage which is freed or moved by the call.
        while (array.GetCount() < array.GetCapacity())
            array.Add(array[69]);
        array.Add(array[69]);
        array.InsertAt(1, array[70]);
        EXPECT_EQ(array.Find(Counted(69)), 1);
        EXPECT_EQ(array[257].Value, 69);
        array.RemoveAt(3, INT32_MAX);
        ZVArray<Counted> copy(array);
        copy[0].Value = 50;
        EXPECT_EQ(array[0].Value, 0);
        EXPECT_EQ(Counted::Alive, 6);
        array = copy;
        ZVArray<Counted> taken(std::move(copy));
        taken = std::move(array);
        EXPECT_EQ(Counted::Alive, 3);
        EXPECT_EQ(taken[0].Value, 50);
        taken.SetCount(5);
        taken.RemoveAll(false);
        EXPECT_EQ(Counted::Alive, 0);
        taken.Add(Counted(1));
    }
    EXPECT_EQ(Counted::Alive, 0);
}
}
