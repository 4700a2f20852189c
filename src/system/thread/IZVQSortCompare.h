#pragma once

#include <cstdint>

// The order of a sort. A sort may ask from two threads at once.
template <class T>
class IZVQSortCompare
{
public:
    // Below 0, 0 or above 0 as first comes before, with or after second. The answers must agree with each other for the result to
    // be sorted. Must not throw.
    virtual int32_t Compare(const T& first, const T& second) = 0;
    virtual ~IZVQSortCompare() = default;
};
