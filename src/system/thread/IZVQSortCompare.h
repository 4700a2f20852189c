#pragma once

#include <cstdint>

// The order of a sort. A sort may ask from two threads at once.
template <class T>
class IZVQSortCompare
{
public:
    // Negative, 0 or positive when first comes before, beside or after second. The result is sorted only if the answers do not
    // contradict each other. Must not throw.
    virtual int32_t Compare(const T& first, const T& second) = 0;
    virtual ~IZVQSortCompare() = default;
};
