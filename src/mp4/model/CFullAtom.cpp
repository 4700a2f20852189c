#include "mp4/model/CFullAtom.h"

#include "mp4/model/Exception.h"

namespace
{
// From one timescale to another, rounded; false when 64 bits are too few or there is no timescale.
bool Rescale(uint64_t& duration, const CTimescales& scales)
{
    if (scales.Own == scales.Other)
        return true;
    if (scales.Other == 0 || __builtin_mul_overflow(duration, scales.Own, &duration) ||
        __builtin_add_overflow(duration, scales.Other / 2, &duration))
        return false;
    duration /= scales.Other;
    return true;
}
}

void CFullAtom::AddDuration(uint64_t& duration, const CFullAtom& other, uint64_t more, const CTimescales& scales)
{
    if (duration == GetUnknownDuration() || more == other.GetUnknownDuration())
    {
        duration = GetUnknownDuration();
        return;
    }
    if (!Rescale(more, scales) || __builtin_add_overflow(duration, more, &duration) || duration == UINT64_MAX)
        ThrowException(L"%s: The durations cannot be added", GetTypeName());
    if (duration >= UINT32_MAX && m_version == 0)
        m_version = 1;
}
