#include "siblings/image/CPixels.h"

#include <cstring>
#include <new>
#include <sys/mman.h>

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

namespace
{
// The system gives a large picture its memory page by page, which takes longer than filling it. In pages of this size it does not.
constexpr size_t HugePage = size_t {2} << 20;

// The bytes have no values yet.
uint8_t* Allocate(size_t size)
{
    const bool isLarge = size >= 2 * HugePage;
    void* const bytes = isLarge ? std::aligned_alloc(HugePage, (size + HugePage - 1) / HugePage * HugePage) : std::malloc(size);
    if (bytes == nullptr)
        throw std::bad_alloc();
    // Where there are no such pages, the usual ones do.
    if (isLarge)
        madvise(bytes, size, MADV_HUGEPAGE);
    return static_cast<uint8_t*>(bytes);
}
}

CPixels::CPixels(int32_t width, int32_t height)
    : m_bytes(Allocate(static_cast<size_t>(width) * CPixelView::PixelSize * static_cast<size_t>(height))),
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
