#include "RatioReport.h"
#include "core/containers/ZVStringMap.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace
{
constexpr int KeyCount = 200;  // about what an analysis result holds at most

std::vector<std::wstring> Keys()
{
    std::vector<std::wstring> keys;
    for (int index = 0; index < KeyCount; ++index)
        keys.push_back(L"Video Property " + std::to_wstring(index));
    return keys;
}

template <bool CaseSensitive>
void LookUpZVMap(benchmark::State& state)
{
    const std::vector<std::wstring> keys = Keys();
    ZVStringMap<ZVString, CaseSensitive, int> map;
    for (const std::wstring& key : keys)
        map.SetAt(key.c_str(), 1);
    size_t index = 0;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(map.FindValue(keys[index].c_str()));
        index = (index + 1) % keys.size();
    }
}

void LookUpUnorderedMap(benchmark::State& state)
{
    const std::vector<std::wstring> keys = Keys();
    std::unordered_map<std::wstring, int> map;
    for (const std::wstring& key : keys)
        map[key] = 1;
    size_t index = 0;
    for (auto _ : state)
    {
        const wchar_t* key = keys[index].c_str();
        benchmark::DoNotOptimize(map.find(key));
        index = (index + 1) % keys.size();
    }
}

ZV_COMPARE(MapLookupExact, 1.2, LookUpZVMap<true>, LookUpUnorderedMap, "std::unordered_map");
ZV_COMPARE(MapLookupFolded, 1.2, LookUpZVMap<false>, LookUpUnorderedMap, "std::unordered_map");
}
