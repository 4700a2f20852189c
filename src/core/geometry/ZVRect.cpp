#include "core/geometry/ZVRect.h"

#include <algorithm>
#include <cstdlib>

uint32_t ZVRect::GetHash() const
{
    // Sides are small numbers that often differ in one place only: a prime above them keeps apart what a sum would mix.
    constexpr uint32_t Factor = 31'337;
    uint32_t hash = 0;
    for (const int32_t side : {Left, Top, Right, Bottom})
        hash = hash * Factor + static_cast<uint32_t>(side);
    return hash;
}

bool ZVRect::IsNear(const ZVRect& other, int32_t distance) const
{
    const auto isNear = [distance](int32_t side, int32_t otherSide) { return std::abs(int64_t {side} - otherSide) <= distance; };
    return isNear(Left, other.Left) && isNear(Top, other.Top) && isNear(Right, other.Right) && isNear(Bottom, other.Bottom);
}

void ZVRect::Unite(const ZVRect& other)
{
    Left = std::min(Left, other.Left);
    Top = std::min(Top, other.Top);
    Right = std::max(Right, other.Right);
    Bottom = std::max(Bottom, other.Bottom);
}

ZVString ZVRect::GetText(const wchar_t* separator) const
{
    return ZVFormat(L"%d%s%d%s%d%s%d", Left, separator, Top, separator, Right, separator, Bottom);
}
