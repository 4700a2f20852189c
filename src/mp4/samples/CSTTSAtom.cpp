#include "mp4/samples/CSTTSAtom.h"

uint64_t CSTTSAtom::GetTotalDuration() const
{
    uint64_t duration = 0;
    for (uint32_t run = 0; run < GetRunCount(); ++run)
        duration += uint64_t {GetSampleCount(run)} * GetSampleDelta(run);
    return duration;
}

uint64_t CSTTSAtom::CountSamples() const
{
    uint64_t count = 0;
    for (uint32_t run = 0; run < GetRunCount(); ++run)
        count += GetSampleCount(run);
    return count;
}
