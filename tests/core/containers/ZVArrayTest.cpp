#include "Counted.h"

#include "core/containers/ZVArray.h"
#include "core/containers/ZVFilenameArray.h"
#include "core/containers/ZVNumberArray.h"
#include "core/containers/ZVOwnedPtrArray.h"
#include "core/string/ZVString.h"

#include <gtest/gtest.h>

#include <new>
#include <utility>
#include <vector>

namespace
{
std::vector<int> ValuesOf(const ZVArray<Counted>& array)
{
    std::vector<int> values;
    for (const Counted& element : array)
        values.push_back(element.Value);
    return values;
}

TEST(ZVArray, CapacityFollowsTheGrowthPolicy)
{
    struct Row
    {
        const char* Name;
        int32_t GrowBy, Count;
        bool Exact;
        int32_t Capacity;
    };
    constexpr Row Rows[] = {
        {"last of the first step",         -1, 4,     false, 4     },
        {"5th",                            -1, 5,     false, 64    },
        {"65th",                           -1, 65,    false, 256   },
        {"257th",                          -1, 257,   false, 1024  },
        {"1025th",                         -1, 1025,  false, 4096  },
        {"4097th",                         -1, 4097,  false, 16384 },
        {"16385th",                        -1, 16385, false, 65536 },
        {"first beyond the table",         -1, 65537, false, 131073},
        {"step, below it",                 10, 9,     false, 10    },
        {"step, a multiple gets one more", 10, 10,    false, 20    },
        {"exact ignores the step",         10, 5,     true,  5     },
        {"no step is the automatic one",   0,  5,     false, 64    },
    };
    for (const Row& row : Rows)
    {
        SCOPED_TRACE(row.Name);
        ZVNumberArray<uint8_t> array;
        array.SetGrowBy(row.GrowBy);
        array.SetCount(row.Count, row.Exact);
        EXPECT_EQ(array.GetCapacity(), row.Capacity);
    }
}

TEST(ZVArray, CapacityThatCannotBeCountedThrowsAndChangesNothing)
{
    ZVNumberArray<uint8_t> array;
    array.Add(7);
    EXPECT_THROW(array.Reserve(INT32_MAX), std::bad_alloc);
    array.SetGrowBy(INT32_MAX);
    EXPECT_THROW(array.SetCount(INT32_MAX), std::bad_alloc);
    EXPECT_EQ(array.GetCount(), 1);
    EXPECT_EQ(array[0], 7);
}

TEST(ZVArray, PositionsAndCounts)
{
    struct Row
    {
        const char* Name;
        void (*Change)(ZVNumberArray<int>&);
        std::vector<int> Expected;
    };
    const Row rows[] = {
        {"remove from the middle",      [](auto& array) { array.RemoveAt(1, 2); },                      {0, 3}         },
        {"remove more than there are",  [](auto& array) { array.RemoveAt(1, INT32_MAX); },              {0}            },
        {"remove a negative count",     [](auto& array) { array.RemoveAt(1, -1); },                     {0, 1, 2, 3}   },
        {"remove before the start",     [](auto& array) { array.RemoveAt(-1, 3); },                     {0, 1, 2, 3}   },
        {"remove behind the end",       [](auto& array) { array.RemoveAt(4); },                         {0, 1, 2, 3}   },
        {"insert at the start",         [](auto& array) { array.InsertAt(0, 9); },                      {9, 0, 1, 2, 3}},
        {"insert at the end",           [](auto& array) { array.InsertAt(4, 9); },                      {0, 1, 2, 3, 9}},
        {"insert behind the end",       [](auto& array) { array.InsertAt(5, 9); },                      {0, 1, 2, 3}   },
        {"insert before the start",     [](auto& array) { array.InsertAt(-1, 9); },                     {0, 1, 2, 3}   },
        {"set behind the end",          [](auto& array) { array.SetElement(4, 9, true); },              {0, 1, 2, 3}   },
        {"shorten to a negative count", [](auto& array) { array.SetCount(-3); },                        {}             },
        {"lengthen over old values",    [](auto& array) { array.RemoveAll(false), array.SetCount(2); }, {0, 0}         },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        ZVNumberArray<int> array;
        for (const int value : {0, 1, 2, 3})
            array.Add(value);
        row.Change(array);
        EXPECT_EQ(std::vector<int>(array.begin(), array.end()), row.Expected);
    }
}

TEST(ZVArray, ElementsAreConstructedAndDestroyedOnce)
{
    {
        ZVArray<Counted> array;
        for (int value = 0; value < 70; ++value)
            array.Add(Counted(value));
        array.InsertAt(1, Counted(100));
        EXPECT_EQ(array.Find(Counted(69)), 70);
        array.RemoveAt(3, 68);
        EXPECT_EQ(Counted::Alive, 3);

        ZVArray<Counted> copy(array);
        copy[0].Value = 50;
        EXPECT_EQ(array[0].Value, 0);
        array = copy;
        EXPECT_EQ(Counted::Alive, 6);
        ZVArray<Counted> taken(std::move(copy));
        taken = std::move(array);
        EXPECT_EQ(Counted::Alive, 3);
        taken.SetCount(5);
        EXPECT_EQ(ValuesOf(taken), (std::vector {50, 100, 1, 0, 0}));
        taken.RemoveAll(false);
        EXPECT_EQ(Counted::Alive, 0);
        EXPECT_EQ(taken.GetCapacity(), 256);
        taken.Add(Counted(1));
    }
    EXPECT_EQ(Counted::Alive, 0);
}

// The storage is replaced at the 5th and the 65th element, and by the insertion of the 257th.
TEST(ZVArray, ValueMayBeAnElementOfTheSameArray)
{
    ZVArray<ZVString> array;
    array.Add(L"a text that stands for itself");
    while (array.GetCount() < 256)
        array.Add(array[array.GetCount() / 2]);
    array.InsertAt(0, array[255]);
    EXPECT_EQ(array.GetCapacity(), 1024);
    for (const ZVString& text : array)
        EXPECT_STREQ(text, L"a text that stands for itself");
}

TEST(ZVArray, StringsAreReleasedAndNewOnesAreEmpty)
{
    ZVString shared(L"shared by all");
    {
        ZVArray<ZVString> array;
        array.SetCount(3);
        EXPECT_STREQ(array[2], L"");
        array.SetElement(2, shared, true);
        array.Add(shared);
        array.RemoveAt(2);
        ZVFilenameArray names;
        names.Add(shared);
        ZVFilenameArray moreNames = names;
        names = ZVFilenameArray();
    }
    // The buffer of a text that nobody shares is the text itself.
    const wchar_t* const characters = shared;
    EXPECT_EQ(shared.GetBuffer(-1), characters);
    shared.ReleaseBuffer();
}

TEST(ZVOwnedPtrArray, DeletesWhatLeavesIt)
{
    {
        ZVOwnedPtrArray<Counted> array;
        for (int value = 0; value < 6; ++value)
            array.Add(new Counted(value));
        array.Add(nullptr);
        array.RemoveAt(0, 2);
        array.SetElement(0, new Counted(9), true);
        array.SetElement(0, array[0], true);
        EXPECT_EQ(array[0]->Value, 9);
        EXPECT_EQ(Counted::Alive, 4);
        Counted* const detached = array.DetachAt(1);
        EXPECT_EQ(detached->Value, 3);
        delete detached;
        EXPECT_EQ(array.DetachAt(4), nullptr);

        ZVOwnedPtrArray<Counted> other;
        other.Add(new Counted(1));
        other = std::move(array);
        EXPECT_EQ(Counted::Alive, 3);
        other.SetCount(1);
        EXPECT_EQ(Counted::Alive, 1);
    }
    EXPECT_EQ(Counted::Alive, 0);
}

TEST(ZVOwnedPtrArray, LeavesWhatItDoesNotOwn)
{
    Counted object(5);
    ZVOwnedPtrArray<Counted> array(false);
    array.Add(&object);
    array.Add(&object);
    array.RemoveAt(0);
    ZVOwnedPtrArray<Counted>(std::move(array)).RemoveAll();
    EXPECT_EQ(Counted::Alive, 1);
}
}
