// The bytes of a Blu-ray disc's clip information file.

#include "Require.h"
#include "core/bytes/ZVByteSpan.h"
#include "disc/bluray/BlurayStreamClipFile.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    BlurayStreamClipFile file(L"00001.clpi");
    file.Scan(ZVByteSpan(data, static_cast<int64_t>(size)));
    // One byte counts the streams.
    Require(file.Streams.GetCount() <= UINT8_MAX);
    Require(file.Scanned || file.Streams.GetCount() == 0);
    for (const auto& entry : file.Streams)
    {
        Require(entry.Value->PID == entry.Key);
        Require(entry.Value->Language().GetLength() <= 3);
        entry.Value->StreamLabel();
    }
    return 0;
}
