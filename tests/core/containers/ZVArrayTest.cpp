#include "Counted.h"

#include "core/Rows.h"
#include "core/containers/ZVArray.h"
#include "core/containers/ZVNumberArray.h"
#include "core/containers/ZVOwnedPtrArray.h"

#include <memory>
#include <new>
#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
TEST(ZVArray, CapacityFollowsTheGrowthPolicy)
{
    // By the count and the step. A multiple of a set step gets one more; no step is the automatic one.
    ExpectRows<std::pair<int32_t, int32_t>, int32_t>({
        {{4, -1}, 4}, {{5, -1}, 64}, {{65, -1}, 256}, {{16385, -1}, 65536}, {{65537, -1}, 131073}, {{9, 10}, 10}, {{10, 10}, 20},
        {{5, 0}, 64},
    }, [](const auto& countAndStep)
    {
        ZVNumberArray<uint8_t> array, exact;
        array.SetGrowBy(countAndStep.second);
        array.SetCount(countAndStep.first);
        exact.SetCount(countAndStep.first, true);
        EXPECT_EQ(exact.GetCapacity(), countAndStep.first);
        return array.GetCapacity();
    });
    ZVNumberArray<uint8_t> array;
    EXPECT_THROW(array.SetCount(INT32_MAX), std::bad_alloc);
    EXPECT_EQ(array.GetCount(), 0);
}

TEST(ZVArray, PositionsAndCounts)
{
    using Values = std::vector<int>;
    const auto changed = [](auto change)
    {
        ZVNumberArray<int> array;
        for (const int value : {0, 1, 2, 3})
            array.Add(value);
        change(array);
        return Values(array.begin(), array.end());
    };
    EXPECT_EQ(changed([](auto& array) { array.RemoveAt(0, 2), array.RemoveAt(1, INT32_MAX); }), (Values {2}));
    EXPECT_EQ(changed([](auto& array) { array.InsertAt(0, 9), array.InsertAt(5, 8); }), (Values {9, 0, 1, 2, 3, 8}));
    EXPECT_EQ(changed([](auto& array) { array.SetCount(-3), array.SetCount(2); }), (Values {0, 0}));
    const Values unchanged {0, 1, 2, 3};
    EXPECT_EQ(changed([](auto& array) { array.RemoveAt(1, -1), array.RemoveAt(-1, 3), array.RemoveAt(4); }), unchanged);
    EXPECT_EQ(changed([](auto& array) { array.InsertAt(5, 9), array.InsertAt(-1, 9), array.SetElement(4, 9, true); }), unchanged);
}

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

TEST(ZVOwnedPtrArray, DeletesWhatItOwns)
{
    {
        ZVOwnedPtrArray<Counted> array, other;
        for (int value = 0; value < 6; ++value)
            array.Add(new Counted(value));
        array.Add(nullptr);
        array.RemoveAt(0, 2);
        array.SetElement(0, new Counted(9), true);
        array.SetElement(0, array[0], true);
        EXPECT_EQ(array[0]->Value, 9);
        const std::unique_ptr<Counted> detached(array.DetachAt(1));
        EXPECT_EQ(detached->Value, 3);
        EXPECT_EQ(Counted::Alive, 4);
        other.Add(new Counted(1));
        other = std::move(array);
        other.SetCount(1);
        EXPECT_EQ(Counted::Alive, 2);
    }
    Counted object(5);
    ZVOwnedPtrArray<Counted>(false).Add(&object);
    EXPECT_EQ(Counted::Alive, 1);
}
}
