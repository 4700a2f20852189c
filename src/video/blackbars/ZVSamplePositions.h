#pragma once

#include <cstdint>

// The places of a film, in seconds, where frames are looked at: its beginning, 45 seconds into it and, if its length is known,
// seven more, an eighth of the length apart. They need not be in order.
class ZVSamplePositions
{
public:
    // The length in microseconds, not positive when it is not known.
    explicit ZVSamplePositions(int64_t duration);

    int32_t GetCount() const { return m_count; }
    int32_t Get(int32_t index) const { return m_seconds[index]; }

    // Whether a place lies before the end, which it does when that is not known. Its microseconds are counted in 32 bits and wrap
    // beyond 2147 seconds, but a film in which they do is longer than any wrapped value.
    bool IsBeforeEnd(int32_t index) const;

    // Whether the first place counts. A film's opening, with its logos, tells less than the other places when there are enough.
    bool IsOpeningCounted() const { return m_count <= FewPositions; }

private:
    static constexpr int32_t FewPositions = 3;
    static constexpr int32_t Parts = 8;

    int64_t m_duration;
    int32_t m_count = 2;
    int32_t m_seconds[1 + Parts] = {0, 45};
};
