#include "system/thread/ZVQSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <numeric>
#include <random>
#include <thread>
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
                EXPECT_TRUE(values == expected) << count;
            }
            EXPECT_EQ(sort.GetStartedCount(), useHelper ? 1 : 0);
            EXPECT_FALSE(sort.Start(0, false, 0)) << "a helper without a sort";
        }
}

// Passes one made-up range to the helper, which is busy with it until the caller has nothing left to do, and ends slowly.
class SlowHelperSort final : public ZVQSortBase
{
public:
    SlowHelperSort() : ZVQSortBase(true) {}
    ~SlowHelperSort() override { Stop(NoTimeout); }
    void Sort() { SortShared(nullptr, nullptr); }

private:
    static void Rest() { std::this_thread::sleep_for(std::chrono::milliseconds(30)); }
    void SortRange(void* low, void*) override { low == nullptr ? void(PushRange(this, this)) : Rest(); }
    void OnAfterExit() override
    {
        ZVQSortBase::OnAfterExit();
        Rest();
    }
};

TEST(ZVQSort, ReturnsOnlyWhenItsHelperIsGone)
{
    SlowHelperSort sort;
    for (int32_t round = 1; round <= 5; ++round)
    {
        sort.Sort();
        EXPECT_TRUE(!sort.IsRunning() && sort.GetStartedCount() == round);
    }
}

TEST(ZVQSort, KeepsAllElementsWhateverTheComparisonAnswers)
{
    std::atomic<uint32_t> state = 1;
    const auto answerAtRandom = [&] { return static_cast<int32_t>((state = state * 1664525u + 1013904223u) >> 30) - 1; };
    const std::function<int32_t()> answers[] = {[] { return -1; }, [] { return 1; }, answerAtRandom};
    for (const auto& answer : answers)
        for (const int32_t count : {2, 16, 17, 40'000})
        {
            std::vector<int32_t> values = NumbersTo(count);
            const int32_t* const low = values.data();
            std::atomic<bool> isInside = true;
            const auto compare = [&](const int32_t& first, const int32_t& second)
            {
                if (std::min(&first, &second) < low || std::max(&first, &second) >= low + count)
                    isInside = false;
                return answer();
            };
            ZVQSort<int32_t>(std::make_unique<CompareBy>(compare)).Sort(values.data(), count);
            EXPECT_TRUE(isInside);
            std::ranges::sort(values);
            EXPECT_TRUE(values == NumbersTo(count));
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
