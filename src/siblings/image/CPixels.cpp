#include "siblings/image/CPixels.h"

#include <cstring>

bool CPixelView::IsOpaque() const
{
    for (int32_t y = 0; y < Height; ++y)
    {
        // One sum for a row, without a branch in the loop.
        const uint8_t* const row = Row(y);
        uint8_t common = Opaque;
        for (ptrdiff_t x = 0; x < Width; ++x)
            common &= row[x * PixelSize + 3];
        if (common != Opaque)
            return false;
    }
    return true;
}

CPixels::CPixels(int32_t width, int32_t height)
    :  // Without "()" the block is not cleared first.
      m_bytes(new uint8_t[static_cast<size_t>(width) * CPixelView::PixelSize * static_cast<size_t>(height)]),
      m_width(width),
      m_height(height)
{
}

CPixels::CPixels(const CPixelView& source) : CPixels(source.Width, source.Height)
{
    for (int32_t y = 0; y < m_height; ++y)
        memcpy(Row(y), source.Row(y), RowSize());
}

void CPixels::FillAlpha(uint8_t alpha)
{
    for (int32_t y = 0; y < m_height; ++y)
        for (uint8_t *pixel = Row(y), *const end = pixel + RowSize(); pixel != end; pixel += CPixelView::PixelSize)
            pixel[3] = alpha;
}
