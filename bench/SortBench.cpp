#include "RatioReport.h"
#include "core/containers/ZVStringArray.h"
#include "system/thread/ZVQSort.h"

#include <algorithm>
#include <cwchar>
#include <random>

namespace
{
constexpr int32_t StringCount = 1'000'000;

// Both sides ask the same object through the same virtual call.
class CompareCharacters final : public IZVQSortCompare<ZVString>
{
public:
    int32_t Compare(const ZVString& first, const ZVString& second) override { return wcscmp(first, second); }
};

const ZVStringArray& UnsortedStrings()
{
    static const ZVStringArray s_strings = []
    {
        std::mt19937 random(1);
        ZVStringArray strings;
        strings.Reserve(StringCount);
        for (int32_t index = 0; index < StringCount; ++index)
            strings.Add(ZVFormat(L"Film %08x (%d).mkv", random(), 1950 + random() % 75));
        return strings;
    }();
    return s_strings;
}

template <class Sort>
void SortStrings(benchmark::State& state, Sort sort)
{
    CompareCharacters compare;
    for (auto _ : state)
    {
        state.PauseTiming();
        ZVStringArray strings(UnsortedStrings());
        state.ResumeTiming();
        sort(strings, compare);
        state.PauseTiming();
        strings.RemoveAll();
        state.ResumeTiming();
    }
}

void SortWithZVQSort(benchmark::State& state)
{
    SortStrings(state,
                [](ZVStringArray& strings, IZVQSortCompare<ZVString>& compare) { ZVQSort<ZVString>(compare).Sort(strings); });
}

void SortWithStdSort(benchmark::State& state)
{
    SortStrings(state,
                [](ZVStringArray& strings, IZVQSortCompare<ZVString>& compare)
                {
                    std::sort(strings.begin(), strings.end(),
                              [&compare](const ZVString& first, const ZVString& second)
                              { return compare.Compare(first, second) < 0; });
                });
}

ZV_COMPARE_WITH_THREADS(SortMillionStrings, 1.0, SortWithZVQSort, SortWithStdSort, "std::sort");
}
