#include "RatioReport.h"
#include "core/string/ZVString.h"

#include <cstdlib>
#include <string>
#include <vector>

namespace
{
constexpr wchar_t TwentyCharacters[] = L"Twenty characters ok";
constexpr wchar_t FortyCharacters[] = L"Forty characters, just the usual length.";

// More blocks than the pool of the string manager keeps.
constexpr size_t ManyBlocks = 64;

// Takes all blocks out of the pool for a scope, so that what other comparisons left there does not count.
struct EmptyPool
{
    std::vector<ZVString> Holders;

    EmptyPool()
    {
        for (size_t count = 0; count < ManyBlocks; ++count)
            Holders.emplace_back(L"x");
    }
};

void BuildString(benchmark::State& state)
{
    const EmptyPool pool;
    for (auto _ : state)
    {
        ZVString text(TwentyCharacters);
        benchmark::DoNotOptimize(text);
    }
}

// The pool is full of blocks that are too short, so that each string comes from the heap.
void BuildStringFromHeap(benchmark::State& state)
{
    const EmptyPool pool;
    {
        const EmptyPool shortBlocks;
    }
    for (auto _ : state)
    {
        ZVString text(TwentyCharacters);
        benchmark::DoNotOptimize(text);
    }
}

void BuildStdWString(benchmark::State& state)
{
    for (auto _ : state)
    {
        std::wstring text(TwentyCharacters);
        benchmark::DoNotOptimize(text);
    }
}

void CopyString(benchmark::State& state)
{
    const ZVString source(FortyCharacters);
    for (auto _ : state)
    {
        ZVString text(source);
        benchmark::DoNotOptimize(text);
    }
}

void CopyStdWString(benchmark::State& state)
{
    const std::wstring source(FortyCharacters);
    for (auto _ : state)
    {
        std::wstring text(source);
        benchmark::DoNotOptimize(text);
    }
}

constexpr size_t TextSize = 64 * 1024;

std::string ASCIIText()
{
    std::string text;
    while (text.size() < TextSize)
        text += "The quick brown fox jumps over the lazy dog. ";
    return text;
}

void DecodeUTF8(benchmark::State& state)
{
    const std::string source = ASCIIText();
    ZVString text;
    for (auto _ : state)
    {
        text.SetFromUTF8(source.c_str());
        benchmark::DoNotOptimize(text);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * source.size()));
}

void DecodeMbstowcs(benchmark::State& state)
{
    const std::string source = ASCIIText();
    std::wstring text(source.size() + 1, L'\0');
    for (auto _ : state)
        benchmark::DoNotOptimize(std::mbstowcs(text.data(), source.c_str(), text.size()));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * source.size()));
}

ZV_COMPARE(BuildAndDrop20, 1.5, BuildString, BuildStdWString, "std::wstring");
ZV_COMPARE(BuildAndDrop20Heap, 2.0, BuildStringFromHeap, BuildStdWString, "std::wstring");
ZV_COMPARE(Copy40, 0.25, CopyString, CopyStdWString, "std::wstring");
ZV_COMPARE(DecodeASCII, 1.0 / 3, DecodeUTF8, DecodeMbstowcs, "std::mbstowcs");
}
