#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// A rectangle of whole pixels. Right and bottom are the first column and row outside it.
struct ZVRect
{
    int32_t Left = 0;
    int32_t Top = 0;
    int32_t Right = 0;
    int32_t Bottom = 0;

    bool operator==(const ZVRect&) const = default;
    // In order of the left sides, then of the tops, the right sides and the bottoms.
    auto operator<=>(const ZVRect&) const = default;
    uint32_t GetHash() const;

    bool IsEmpty() const { return Right <= Left || Bottom <= Top; }
    int64_t GetWidth() const { return int64_t {Right} - Left; }
    int64_t GetHeight() const { return int64_t {Bottom} - Top; }

    // Whether no side is further than a distance from the same side of another rectangle.
    bool IsNear(const ZVRect& other, int32_t distance) const;
    // Grows so that another rectangle is inside too.
    void Unite(const ZVRect& other);

    // Left, top, right and bottom in decimal digits with a separator between them, such as "0x132x1920x948".
    ZVString GetText(const wchar_t* separator) const;
};
