#pragma once

#include "contracts/IZVImage.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

// Pixels in somebody's memory, 4 bytes each: B, G, R and alpha. A row starts Stride bytes after the one above it, before it when
// Stride is negative. Without pixels First is null and everything is 0.
struct CPixelView
{
    static constexpr int32_t PixelSize = 4;
    static constexpr uint8_t Opaque = 255;

    const uint8_t* Row(int32_t y) const { return First + static_cast<ptrdiff_t>(y) * Stride; }
    // True if no pixel lets anything through.
    bool IsOpaque() const;

    const uint8_t* First = nullptr;
    int32_t Width = 0;
    int32_t Height = 0;
    int32_t Stride = 0;
};

// A block of pixels of our own, with no space between the rows.
class CPixels
{
public:
    // The widest picture whose rows 32 bits can count.
    static constexpr int32_t MaximumWidth = INT32_MAX / CPixelView::PixelSize;

    CPixels() = default;
    // The pixels have no values yet. Throws std::bad_alloc.
    CPixels(int32_t width, int32_t height);
    // Copies the pixels of a view. Throws std::bad_alloc.
    explicit CPixels(const CPixelView& source);

    CPixelView View() const { return {m_bytes.get(), m_width, m_height, m_width * CPixelView::PixelSize}; }
    uint8_t* Row(int32_t y) { return m_bytes.get() + static_cast<size_t>(y) * RowSize(); }
    size_t RowSize() const { return static_cast<size_t>(m_width) * CPixelView::PixelSize; }
    bool IsEmpty() const { return m_bytes == nullptr; }
    void FillAlpha(uint8_t alpha);

private:
    struct BytesDeleter
    {
        void operator()(uint8_t* bytes) const { std::free(bytes); }
    };

    std::unique_ptr<uint8_t, BytesDeleter> m_bytes;
    int32_t m_width = 0;
    int32_t m_height = 0;
};
