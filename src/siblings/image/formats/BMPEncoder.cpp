// The writing half of BMPFormat.

#include "siblings/image/formats/BMPFormat.h"

#include <vector>

namespace
{
constexpr uint32_t FileHeaderSize = 14;
// With alpha the version 4 is needed, whose header holds the masks and a colour space.
constexpr uint32_t OpaqueHeaderSize = 40;
constexpr uint32_t AlphaHeaderSize = 108;
constexpr size_t OpaquePixelSize = 3;
constexpr uint32_t MaskCompression = 3;
constexpr uint32_t ColourSpaceSRGB = 0x73524742;
constexpr uint32_t Masks[] = {0xff0000, 0x00ff00, 0x0000ff, 0xff000000};

// 96 dots an inch.
constexpr uint32_t PixelsPerMetre = 3780;

class Header
{
public:
    Header(const CPixelView& picture, bool isOpaque, uint32_t pixelBytes)
    {
        const uint32_t size = isOpaque ? OpaqueHeaderSize : AlphaHeaderSize;
        Put<uint16_t>('B' | 'M' << 8);
        Put<uint32_t>(FileHeaderSize + size + pixelBytes);
        Put<uint32_t>(0);
        Put<uint32_t>(FileHeaderSize + size);
        Put<uint32_t>(size);
        Put<uint32_t>(static_cast<uint32_t>(picture.Width));
        Put<uint32_t>(static_cast<uint32_t>(picture.Height));
        Put<uint16_t>(1);
        Put<uint16_t>(isOpaque ? 24 : 32);
        Put<uint32_t>(isOpaque ? 0 : MaskCompression);
        Put<uint32_t>(pixelBytes);
        Put<uint32_t>(PixelsPerMetre);
        Put<uint32_t>(PixelsPerMetre);
        Put<uint32_t>(0);
        Put<uint32_t>(0);
        if (isOpaque)
            return;
        for (const uint32_t mask : Masks)
            Put<uint32_t>(mask);
        Put<uint32_t>(ColourSpaceSRGB);
        // The end points and the gammas of other colour spaces.
        m_bytes.resize(FileHeaderSize + size);
    }

    const std::vector<uint8_t>& GetBytes() const { return m_bytes; }

private:
    template <class Integer>
    void Put(uint32_t value)
    {
        for (size_t index = 0; index < sizeof(Integer); ++index)
            m_bytes.push_back(static_cast<uint8_t>(value >> 8 * index));
    }

    std::vector<uint8_t> m_bytes;
};

// Leaves out the alpha of each pixel.
void CopyOpaque(const uint8_t* source, int32_t count, uint8_t* target)
{
    for (; count > 0; --count, source += CPixelView::PixelSize, target += OpaquePixelSize)
    {
        target[0] = source[0];
        target[1] = source[1];
        target[2] = source[2];
    }
}

// The last row comes first.
bool AppendRows(const CPixelView& picture, bool isOpaque, size_t rowSize, CByteSink& sink)
{
    std::vector<uint8_t> row(rowSize);
    for (int32_t y = picture.Height - 1; y >= 0; --y)
    {
        if (isOpaque)
            CopyOpaque(picture.Row(y), picture.Width, row.data());
        if (!sink.Append(isOpaque ? row.data() : picture.Row(y), rowSize))
            return false;
    }
    return true;
}
}

bool BMPFormat::Encode(const CPixelView& picture, CByteSink& sink, std::string& message)
{
    const bool isOpaque = picture.IsOpaque();
    const size_t pixelSize = isOpaque ? OpaquePixelSize : CPixelView::PixelSize;
    const size_t rowSize = (static_cast<size_t>(picture.Width) * pixelSize + 3) / 4 * 4;
    const uint64_t pixelBytes = uint64_t {rowSize} * static_cast<uint64_t>(picture.Height);
    if (pixelBytes + FileHeaderSize + AlphaHeaderSize > UINT32_MAX)
    {
        message = "the file would be larger than 4 gigabytes";
        return false;
    }
    const Header header(picture, isOpaque, static_cast<uint32_t>(pixelBytes));
    if (sink.Append(header.GetBytes().data(), header.GetBytes().size()) && AppendRows(picture, isOpaque, rowSize, sink))
        return true;
    message = "there is not enough memory";
    return false;
}
