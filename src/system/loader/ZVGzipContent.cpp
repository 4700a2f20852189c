#include "system/loader/ZVGzipContent.h"

#include "contracts/IZVCompression.h"
#include "contracts/IZVTools.h"
#include "contracts/ZVReleasePointer.h"
#include "core/ZVToolsPointer.h"
#include "core/containers/ZVBuffer.h"
#include "system/loader/CFileLoader.h"
#include "system/loader/CFileReplacement.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <utility>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"ZVGzipContent::Inflate"};

// A decoder is asked for blocks of three times the input, and the output grows in steps of this many bytes.
constexpr int64_t OutputStep = 0x4000;
constexpr int64_t LargestBlock = 0x4000000;

using DecoderPointer = ZVReleasePointer<IZVDecoder>;

DecoderPointer CreateDecoder(const ZVBuffer& input)
{
    IZVCompression* const compression = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetCompression(true);
    return DecoderPointer(compression == nullptr ? nullptr : compression->CreateGzipDecoder(input.GetData(), input.GetUsed()));
}

int64_t RoundUp(int64_t size)
{
    return (size + OutputStep - 1) / OutputStep * OutputStep;
}

// Gives the inflated content to a function that takes bytes and a count, block by block. False also when that function returned
// false.
template <class Take>
bool Inflate(const ZVBuffer& input, const ZVGzipContent::Limit& limit, const Take& take)
{
    const DecoderPointer decoder = CreateDecoder(input);
    if (decoder == nullptr)
    {
        Source.Log("There is nothing that inflates gzip content");
        return false;
    }
    ZVBuffer block;
    block.Grow(std::min(RoundUp(input.GetUsed() * 3), LargestBlock));
    int64_t total = 0;
    while (true)
    {
        const int64_t count = decoder->Read(block.GetData(), block.GetAllocated());
        if (count < 1)
            break;
        const int64_t taken = std::min(count, limit.Bytes - total);
        if (taken < count && limit.FailIfLarger)
        {
            Source.Log("The content inflates to more than %d bytes", limit.Bytes);
            return false;
        }
        if (!take(block.GetData(), taken))
            return false;
        total += taken;
        if (taken < count)
            return true;
    }
    // Input that was cut at the limit ends in the middle, and what it gave until then is what was wanted.
    const bool isCut = !limit.FailIfLarger && input.GetUsed() >= limit.Bytes;
    const bool isDamaged = decoder->HasFailed() && !isCut;
    if (isDamaged)
        Source.Log("The gzip content is damaged");
    return !isDamaged && total > 0;
}
}

bool ZVGzipContent::InflateBuffer(ZVBuffer& buffer, const Limit& limit)
{
    ZVBuffer output;
    const auto append = [&output](const uint8_t* bytes, int64_t count)
    {
        const int64_t wanted = output.GetUsed() + count;
        if (wanted > output.GetAllocated())
            output.Grow(RoundUp(std::max(wanted, output.GetAllocated() * 3 / 2)));
        output.Append(bytes, count);
        return true;
    };
    if (!Inflate(buffer, limit, append))
        return false;
    buffer = std::move(output);
    return true;
}

bool ZVGzipContent::InflateFile(const ZVString& path, const Limit& limit)
{
    ZVBuffer input;
    CFileLoader loader;
    loader.SetStreaming(false);
    if (!loader.Load(ZVFilename::FromPath(path), input))
        return false;

    CFileReplacement replacement(path, L"inflated");
    CFileSink& sink = replacement.GetSink();
    const auto write = [&sink](const uint8_t* bytes, int64_t count) { return sink.Write(bytes, count) == count; };
    return Inflate(input, limit, write) && sink.Close(ZVLoadEnd::Whole) && replacement.Commit();
}
