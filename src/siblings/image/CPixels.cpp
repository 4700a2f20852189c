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

// Two pixels at a time; the last pixel of an odd count by itself.
void CPixels::FillAlpha(uint8_t alpha)
{
    constexpr uint64_t ColourBytes = 0x00ff'ffff'00ff'ffff;
    const uint64_t alphas = uint64_t {alpha} << 24 | uint64_t {alpha} << 56;
    const size_t size = RowSize() * static_cast<size_t>(m_height);
    uint8_t* pixels = m_bytes.get();
    uint8_t* const end = pixels + size;
    for (; end - pixels >= static_cast<ptrdiff_t>(sizeof alphas); pixels += sizeof alphas)
    {
        uint64_t two;
        memcpy(&two, pixels, sizeof two);
        two = (two & ColourBytes) | alphas;
        memcpy(pixels, &two, sizeof two);
    }
    if (pixels != end)
        pixels[3] = alpha;
}
