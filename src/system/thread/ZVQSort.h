#pragma once

#include "system/thread/IZVQSortCompare.h"
#include "system/thread/ZVQSortBase.h"

#include <bit>
#include <cstring>
#include <memory>
#include <utility>

// A quick sort in place, for elements that may be moved as bytes, as those of the product's containers may. No element is copied,
// and the comparison sees each of them in its place in the array. Equal elements may change places. One object sorts one array at
// a time, which nobody else may touch meanwhile; for a large array it uses a second thread.
//
// Whatever a comparison answers, the array holds the same elements afterwards, and the number of comparisons grows no faster than
// n log n.
template <class T>
class ZVQSort final : public ZVQSortBase
{
public:
    // Sorts by a comparison of the caller's, which must live as long as the sort. Without useHelper the sort stays in the calling
    // thread.
    explicit ZVQSort(IZVQSortCompare<T>& compare, bool useHelper = true) : ZVQSortBase(useHelper), m_compare(compare) {}
    // Sorts by a comparison that it owns, which must not be null.
    explicit ZVQSort(std::unique_ptr<IZVQSortCompare<T>> compare, bool useHelper = true)
        : ZVQSortBase(useHelper), m_owned(std::move(compare)), m_compare(*m_owned)
    {
    }

    // Sorts that many elements. With fewer than 2 there is nothing to do.
    void Sort(T* elements, int64_t count)
    {
        if (count >= 2)
            SortShared(elements, elements + (count - 1));
    }

    // Sorts an array of the product's containers.
    template <class Array>
    void Sort(Array& array)
    {
        Sort(array.GetData(), array.GetCount());
    }

private:
    // A Shell sort is faster for ranges of at most this many elements.
    static constexpr ptrdiff_t LargestShellRange = 16;

    void SortRange(void* low, void* high) override
    {
        // Twice the depth of even partitions. More than this means that the pivots are bad and the time would become quadratic.
        const auto count = static_cast<uint64_t>(static_cast<T*>(high) - static_cast<T*>(low)) + 1;
        SortBetween(static_cast<T*>(low), static_cast<T*>(high), 2 * static_cast<int32_t>(std::bit_width(count)));
    }

    // Calls itself only for the smaller part, so the depth is at most the logarithm of the count.
    void SortBetween(T* low, T* high, int32_t partitionsLeft)
    {
        while (high - low >= LargestShellRange)
        {
            if (partitionsLeft-- == 0)
            {
                HeapSort(low, high - low + 1);
                return;
            }
            T* const pivot = Partition(low, high);
            if (pivot - low <= high - pivot)
            {
                SortPart(low, pivot - 1, partitionsLeft);
                low = pivot + 1;
            }
            else
            {
                SortPart(pivot + 1, high, partitionsLeft);
                high = pivot - 1;
            }
        }
        ShellSort(low, high - low + 1);
    }

    void SortPart(T* low, T* high, int32_t partitionsLeft)
    {
        const bool isShared = high - low + 1 >= SmallestSharedRange && PushRange(low, high);
        if (!isShared)
            SortBetween(low, high, partitionsLeft);
    }

    // Moves what is below the median of three elements before it and what is above after it. Returns the median's place, which is
    // neither the first nor the last. The walks also end at the bounds, because a comparison may contradict itself.
    T* Partition(T* low, T* high)
    {
        T* const middle = low + (high - low + 2) / 2;
        SwapIfOutOfOrder(low, middle);
        SwapIfOutOfOrder(low, high);
        SwapIfOutOfOrder(middle, high);

        T* const pivot = high - 1;
        Swap(middle, pivot);
        T* fromLow = low;
        T* fromHigh = pivot;
        for (;;)
        {
            do
                ++fromLow;
            while (fromLow < pivot && m_compare.Compare(*fromLow, *pivot) < 0);
            do
                --fromHigh;
            while (fromHigh > low && m_compare.Compare(*pivot, *fromHigh) < 0);
            if (fromLow >= fromHigh)
                break;
            Swap(fromLow, fromHigh);
        }
        Swap(fromLow, pivot);
        return fromLow;
    }

    void ShellSort(T* elements, ptrdiff_t count)
    {
        for (ptrdiff_t gap = (count + 1) / 2; gap > 0; gap = gap == 2 ? 1 : gap * 5 / 11)
            for (ptrdiff_t index = gap; index < count; ++index)
                for (T* element = elements + index; element - elements >= gap && IsAfter(element - gap, element); element -= gap)
                    Swap(element - gap, element);
    }

    void HeapSort(T* elements, ptrdiff_t count)
    {
        for (ptrdiff_t root = count / 2; root-- > 0;)
            SiftDown(elements, root, count);
        for (ptrdiff_t last = count - 1; last > 0; --last)
        {
            Swap(elements, elements + last);
            SiftDown(elements, 0, last);
        }
    }

    void SiftDown(T* elements, ptrdiff_t root, ptrdiff_t count)
    {
        for (ptrdiff_t child = 2 * root + 1; child < count; child = 2 * root + 1)
        {
            if (child + 1 < count && IsAfter(elements + child + 1, elements + child))
                ++child;
            if (!IsAfter(elements + child, elements + root))
                return;
            Swap(elements + child, elements + root);
            root = child;
        }
    }

    bool IsAfter(const T* first, const T* second) { return m_compare.Compare(*first, *second) > 0; }

    void SwapIfOutOfOrder(T* first, T* second)
    {
        if (IsAfter(first, second))
            Swap(first, second);
    }

    static void Swap(void* first, void* second)
    {
        std::byte firstBytes[sizeof(T)];
        std::byte secondBytes[sizeof(T)];
        memcpy(firstBytes, first, sizeof(T));
        memcpy(secondBytes, second, sizeof(T));
        memcpy(first, secondBytes, sizeof(T));
        memcpy(second, firstBytes, sizeof(T));
    }

    std::unique_ptr<IZVQSortCompare<T>> m_owned;
    IZVQSortCompare<T>& m_compare;
};
