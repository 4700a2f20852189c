#include "siblings/image/RotatePixels.h"

#include <algorithm>

namespace
{
// The side of the squares that a picture is turned by. A column of the source is a row of the target; within a square both stay
// in the fastest memory of the processor.
constexpr int32_t BlockSide = 32;

// Where a pixel of the target comes from: the source at Start, one step on for each column and each row of the target.
struct Walk
{
    const uint8_t* Start;
    ptrdiff_t ColumnStep;
    ptrdiff_t RowStep;
};

Walk MakeWalk(const CPixelView& source, int32_t quarterTurns)
{
    constexpr ptrdiff_t right = CPixelView::PixelSize;
    const ptrdiff_t down = source.Stride;
    const uint8_t* const lastRow = source.Row(source.Height - 1);
    const ptrdiff_t lastColumn = (source.Width - 1) * right;
    switch (quarterTurns)
    {
    case 1:
        return {lastRow, -down, right};
    case 2:
        return {lastRow + lastColumn, -right, -down};
    default:
        return {source.First + lastColumn, down, -right};
    }
}

void CopyRow(uint8_t* target, const uint8_t* source, ptrdiff_t step, int32_t count)
{
    for (; count > 0; --count, target += CPixelView::PixelSize, source += step)
        std::copy_n(source, CPixelView::PixelSize, target);
}
}

CPixels RotatePixels(const CPixelView& source, int32_t quarterTurns)
{
    const bool isSideways = quarterTurns % 2 != 0;
    const int32_t width = isSideways ? source.Height : source.Width;
    const int32_t height = isSideways ? source.Width : source.Height;
    const Walk walk = MakeWalk(source, quarterTurns);

    CPixels target(width, height);
    for (int32_t top = 0; top < height; top += BlockSide)
        for (int32_t left = 0; left < width; left += BlockSide)
            for (int32_t y = top; y < std::min(top + BlockSide, height); ++y)
                CopyRow(target.Row(y) + static_cast<ptrdiff_t>(left) * CPixelView::PixelSize,
                        walk.Start + y * walk.RowStep + left * walk.ColumnStep, walk.ColumnStep,
                        std::min(BlockSide, width - left));
    return target;
}
