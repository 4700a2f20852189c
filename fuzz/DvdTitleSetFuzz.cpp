// The information file of a DVD's title set.

#include "Require.h"
#include "core/bytes/ZVByteSpan.h"
#include "disc/dvd/CDvdTitleInfo.h"

#include <cstdint>

namespace
{
// What four bytes of decimal digits can tell, in milliseconds, and as many cells as a byte counts.
constexpr int64_t MaximumTime = ((99 * 60 + 99) * 60 + 99) * int64_t {1001} + 39 * 40;
constexpr int64_t MaximumCells = 255;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    CDvdTitleInfo info;
    const bool isRead = info.Read(ZVByteSpan(data, static_cast<int64_t>(size)));
    Require(isRead == (info.Duration > 0));
    Require(isRead || info.Chapters.GetCount() == 0);
    Require(info.Duration <= MaximumTime);
    Require(info.Chapters.GetCount() <= MaximumCells);
    int64_t before = 0;
    for (const int64_t chapter : info.Chapters)
    {
        Require(chapter >= before);
        Require(chapter <= MaximumCells * MaximumTime);
        before = chapter;
    }
    return 0;
}
