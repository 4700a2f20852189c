#include "system/thread/ZVQSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>
#include <vector>

namespace
{
using Comparison = std::function<int32_t(const int32_t&, const int32_t&)>;

struct CompareBy final : IZVQSortCompare<int32_t>
{
    explicit CompareBy(Comparison comparison) : Answer(std::move(comparison)) {}
    int32_t Compare(const int32_t& first, const int32_t& second) override { return Answer(first, second); }

    Comparison Answer;
};

int32_t Difference(const int32_t& first, const int32_t& second)
{
    return first < second ? -1 : first > second;
}

std::vector<int32_t> NumbersTo(int32_t count)
{
    std::vector<int32_t> numbers(static_cast<size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

TEST(ZVQSort, SortsWithAndWithoutAHelper)
{
    using ValueAt = int32_t (*)(int32_t index, uint32_t random);
    const ValueAt rows[] = {
        [](int32_t, uint32_t random) { return static_cast<int32_t>(random); },
        [](int32_t, uint32_t random) { return static_cast<int32_t>(random % 3); },
        [](int32_t index, uint32_t) { return std::min(-index, index - 30'000); },
    };
    CompareBy compare(Difference);
    std::mt19937 random(7);
    for (const bool useHelper : {true, false})
        for (const ValueAt valueAt : rows)
        {
            ZVQSort<int32_t> sort(compare, useHelper);
            for (const int32_t count : {0, 1, 2, 3, 15, 16, 17, 18, 33, 60'000})
            {
                std::vector<int32_t> values = NumbersTo(count);
                for (int32_t& value : values)
                    value = valueAt(value, static_cast<uint32_t>(random()));
                std::vector<int32_t> expected = values;
                std::ranges::sort(expected);
                sort.Sort(values.data(), count);
                EXPECT_TRUE(values == expected) << count << " elements";
            }
            EXPECT_EQ(sort.GetStartedCount(), useHelper ? 1 : 0);
            EXPECT_FALSE(sort.Start(0, false, 0)) << "a helper without a sort";
        }
}

// The worst opponent of a quick sort: it settles the order while it is asked, so that the pivot always turns out to be low.
TEST(ZVQSort, ComparesNoMoreThanNLogNTimes)
{
    constexpr int32_t Count = 20'000;
    constexpr int32_t Unsettled = Count;
    std::vector<int32_t> settled(Count, Unsettled);
    int32_t nextValue = 0, candidate = 0, questions = 0;
    const auto oppose = [&](const int32_t& first, const int32_t& second)
    {
        ++questions;
        int32_t& left = settled[static_cast<size_t>(first)];
        int32_t& right = settled[static_cast<size_t>(second)];
        if (left == Unsettled && right == Unsettled)
            (first == candidate ? left : right) = nextValue++;
        if (left == Unsettled || right == Unsettled)
            candidate = left == Unsettled ? first : second;
        return Difference(left, right);
    };
    ZVQSort<int32_t>(std::make_unique<CompareBy>(oppose), false).Sort(NumbersTo(Count).data(), Count);
    // 14.3 is the logarithm of the count. A quadratic sort asks tens of millions of times.
    EXPECT_LT(questions, 5 * Count * 15);
}
}
