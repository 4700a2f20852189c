#pragma once

#include "system/thread/IZVQSortCompare.h"

#include <cstdint>

struct ILocExtent;

// A piece of an item, and where it lies in the body of idat.
struct ExtentOffsetDataForSorting
{
    ILocExtent* Extent;
    uint64_t Offset;
};

// The order of the pieces in the body.
class ExtentOffsetCompare final : public IZVQSortCompare<ExtentOffsetDataForSorting>
{
public:
    int32_t Compare(const ExtentOffsetDataForSorting& first, const ExtentOffsetDataForSorting& second) override
    {
        return first.Offset < second.Offset ? -1 : first.Offset > second.Offset ? 1 : 0;
    }
};
