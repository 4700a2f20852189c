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
class CompareBy final : public IZVQSortCompare<int32_t>
{
public:
    using Function = std::function<int32_t(const int32_t&, const int32_t&)>;
    explicit CompareBy(Function function) : m_function(std::move(function)) {}
    int32_t Compare(const int32_t& first, const int32_t& second) override { return m_function(first, second); }

private:
    Function m_function;
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
    const std::pair<const char*, ValueAt> rows[] = {
        {"random",       [](int32_t,       uint32_t random) { return static_cast<int32_t>(random); }    },
        {"few distinct", [](int32_t,       uint32_t random) { return static_cast<int32_t>(random % 3); }},
        {"reversed",     [](int32_t index, uint32_t) { return -index; }                                 },
        {"equal",        [](int32_t,       uint32_t) { return 5; }                                      },
        {"up and down",  [](int32_t index, uint32_t) { return std::min(index, 30'000 - index); }        },
    };
    CompareBy compare(Difference);
    std::mt19937 random(7);
    for (const bool useHelper : {true, false})
        for (const auto& [name, valueAt] : rows)
        {
            ZVQSort<int32_t> sort(compare, useHelper);
            for (const int32_t count : {0, 1, 2, 3, 4, 15, 16, 17, 18, 33, 1000, 60'000})
            {
                std::vector<int32_t> values = NumbersTo(count);
                for (int32_t& value : values)
                    value = valueAt(value, static_cast<uint32_t>(random()));
                std::vector<int32_t> expected = values;
                std::ranges::sort(expected);
                sort.Sort(values.data(), count);
                EXPECT_TRUE(values == expected) << name << ", " << count;
            }
            EXPECT_EQ(sort.GetStartedCount(), useHelper ? 1 : 0) << name;
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
    void SortRange(void* low, void*) override
    {
        if (low == nullptr)
            PushRange(this, this);
        else
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    void OnAfterExit() override
    {
        ZVQSortBase::OnAfterExit();
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
    }
};

TEST(ZVQSort, ReturnsOnlyWhenItsHelperIsGone)
{
    SlowHelperSort sort;
    for (int32_t round = 0; round < 5; ++round)
    {
        sort.Sort();
        EXPECT_FALSE(sort.IsRunning());
    }
    EXPECT_EQ(sort.GetStartedCount(), 5);
}

// The places that a sort of sorted numbers asks about, in order.
std::vector<std::pair<int32_t, int32_t>> QuestionsFor(int32_t count)
{
    std::vector<std::pair<int32_t, int32_t>> questions;
    CompareBy compare(
        [&questions](const int32_t& first, const int32_t& second)
        {
            questions.emplace_back(first, second);
            return Difference(first, second);
        });
    ZVQSort<int32_t>(compare, false).Sort(NumbersTo(count).data(), count);
    return questions;
}

TEST(ZVQSort, PartitionsAboveSixteenElements)
{
    const auto partition = QuestionsFor(17);
    EXPECT_EQ(partition[0], std::pair(0, 9));
    EXPECT_EQ(partition[1], std::pair(0, 16));
    EXPECT_EQ(partition[2], std::pair(9, 16));
    // A Shell sort with the gaps 8, 3 and 1.
    const auto shell = QuestionsFor(16);
    ASSERT_EQ(shell.size(), 8u + 13u + 15u);
    for (size_t index = 0; index < shell.size(); ++index)
        EXPECT_EQ(shell[index].second - shell[index].first, index < 8 ? 8 : index < 21 ? 3 : 1);
}

TEST(ZVQSort, KeepsAllElementsWhateverTheComparisonAnswers)
{
    std::atomic<uint32_t> state = 1;
    const CompareBy::Function answers[] = {
        [](const int32_t&, const int32_t&) { return -1; },
        [](const int32_t&, const int32_t&) { return 1; },
        [&state](const int32_t&, const int32_t&)
        { return static_cast<int32_t>((state = state * 1664525u + 1013904223u) >> 30) - 1; },
    };
    for (const auto& answer : answers)
        for (const int32_t count : {2, 16, 17, 40'000})
        {
            std::vector<int32_t> values = NumbersTo(count);
            const int32_t* const low = values.data();
            std::atomic<bool> isInside = true;
            CompareBy compare(
                [&](const int32_t& first, const int32_t& second)
                {
                    if (std::min(&first, &second) < low || std::max(&first, &second) >= low + count)
                        isInside = false;
                    return answer(first, second);
                });
            ZVQSort<int32_t>(compare).Sort(values.data(), count);
            EXPECT_TRUE(isInside);
            std::ranges::sort(values);
            EXPECT_TRUE(values == NumbersTo(count));
        }
}

// The worst opponent of a quick sort: it settles the order while it is asked, always so that the present pivot turns out to be
// low.
TEST(ZVQSort, ComparesNoMoreThanNLogNTimes)
{
    constexpr int32_t Count = 20'000;
    constexpr int32_t Unsettled = Count;
    std::vector<int32_t> settled(Count, Unsettled);
    int32_t nextValue = 0;
    int32_t candidate = 0;
    int64_t questions = 0;
    CompareBy opponent(
        [&](const int32_t& first, const int32_t& second)
        {
            ++questions;
            int32_t& left = settled[static_cast<size_t>(first)];
            int32_t& right = settled[static_cast<size_t>(second)];
            if (left == Unsettled && right == Unsettled)
                (first == candidate ? left : right) = nextValue++;
            if (left == Unsettled || right == Unsettled)
                candidate = left == Unsettled ? first : second;
            return Difference(left, right);
        });
    ZVQSort<int32_t>(opponent, false).Sort(NumbersTo(Count).data(), Count);
    // 14.3 is the logarithm of the count. A quadratic sort asks tens of millions of times.
    EXPECT_LT(questions, 5 * int64_t {Count} * 15);
}
}
