// The reading half of BMPFormat: all header versions, from 1 to 32 bits a pixel, with masks and with run lengths.

#include "core/bytes/ZVByteCursor.h"
#include "siblings/image/formats/BMPFormat.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

namespace
{
using Cursor = ZVByteCursor<std::endian::little, ZVZeroPastEnd>;

constexpr int32_t FileHeaderSize = 14;
constexpr int32_t PixelStartPosition = 10;

// The header of OS/2, whose numbers are shorter and whose palette has no fourth byte.
constexpr uint32_t OldHeaderSize = 12;
constexpr uint32_t CommonHeaderSize = 40;
// A header of this size has the masks in itself; they follow a smaller one.
constexpr uint32_t AlphaMaskHeaderSize = 56;
constexpr uint32_t MaximumHeaderSize = 124;

enum Compression : uint32_t
{
    Plain = 0,
    RunLengths8 = 1,
    RunLengths4 = 2,
    Masks = 3,
    AlphaMasks = 6,
};

constexpr size_t ChannelCount = 4;
constexpr uint32_t Masks16[ChannelCount] = {0x001f, 0x03e0, 0x7c00, 0};
constexpr uint32_t Masks32[ChannelCount] = {0x0000ff, 0x00ff00, 0xff0000, 0};

struct Kind
{
    uint32_t Bits;
    uint32_t Compression;
};

constexpr Kind Kinds[] = {
    {1,  Plain      },
    {4,  Plain      },
    {8,  Plain      },
    {16, Plain      },
    {24, Plain      },
    {32, Plain      },
    {8,  RunLengths8},
    {4,  RunLengths4},
    {16, Masks      },
    {32, Masks      },
    {16, AlphaMasks },
    {32, AlphaMasks },
};

// The bits of a pixel that hold one channel, and the way from their value to a byte.
class Channel
{
public:
    void Set(uint32_t mask)
    {
        m_mask = mask;
        m_shift = mask == 0 ? 0 : std::countr_zero(mask);
    }
    uint8_t Read(uint32_t pixel, uint8_t without) const
    {
        if (m_mask == 0)
            return without;
        const uint64_t maximum = m_mask >> m_shift;
        return static_cast<uint8_t>((uint64_t {(pixel & m_mask) >> m_shift} * UINT8_MAX + maximum / 2) / maximum);
    }

private:
    uint32_t m_mask = 0;
    int m_shift = 0;
};

class Decoder
{
public:
    explicit Decoder(const ZVByteSpan& bytes) : m_bytes(bytes), m_cursor(bytes) {}

    bool Decode(const CImageLimits& limits, CPixels& pixels, std::string& message);

private:
    bool ReadHeader();
    void ReadMasks(uint32_t headerSize);
    void ReadPalette(int32_t entrySize, uint32_t count);
    void ReadRow(Cursor& row, uint8_t* pixel) const;
    void ReadRuns(CPixels& pixels);
    bool ReadRun(CPixels& pixels);
    void ReadJump(uint8_t code);
    void PutIndex(CPixels& pixels, uint32_t index);

    const ZVByteSpan m_bytes;
    Cursor m_cursor;
    uint32_t m_pixelStart = 0;
    int64_t m_width = 0;
    int64_t m_height = 0;
    bool m_isTopDown = false;
    Kind m_kind {};
    Channel m_channels[ChannelCount];
    uint8_t m_palette[256][CPixelView::PixelSize] = {};
    // Where the next pixel of a run goes; rows count from the bottom.
    int64_t m_x = 0;
    int64_t m_y = 0;
};

bool Decoder::Decode(const CImageLimits& limits, CPixels& pixels, std::string& message)
{
    if (!ReadHeader())
    {
        message = "its header is of an unknown kind";
        return false;
    }
    if (!limits.Allow(m_width, m_height, message))
        return false;
    const bool hasRuns = m_kind.Compression == RunLengths8 || m_kind.Compression == RunLengths4;
    // A picture that is not there needs no memory.
    const int64_t rowSize = (m_width * m_kind.Bits + 31) / 32 * 4;
    if (!hasRuns && m_bytes.Find(m_pixelStart, rowSize * (m_height - 1) + (m_width * m_kind.Bits + 7) / 8) == nullptr)
    {
        message = "it is cut";
        return false;
    }
    pixels = CPixels(static_cast<int32_t>(m_width), static_cast<int32_t>(m_height));
    if (hasRuns)
        ReadRuns(pixels);
    else
        for (int64_t y = 0; y < m_height; ++y)
        {
            Cursor row(m_bytes, m_pixelStart + y * rowSize);
            ReadRow(row, pixels.Row(static_cast<int32_t>(m_isTopDown ? y : m_height - 1 - y)));
        }
    return true;
}

bool Decoder::ReadHeader()
{
    m_cursor.SeekTo(PixelStartPosition);
    m_pixelStart = m_cursor.Read<uint32_t>();
    const auto headerSize = m_cursor.Read<uint32_t>();
    const bool isOld = headerSize == OldHeaderSize;
    if (!isOld && (headerSize < CommonHeaderSize || headerSize > MaximumHeaderSize))
        return false;
    m_width = isOld ? m_cursor.Read<uint16_t>() : m_cursor.Read<int32_t>();
    m_height = isOld ? m_cursor.Read<uint16_t>() : m_cursor.Read<int32_t>();
    m_isTopDown = m_height < 0;
    m_height = std::abs(m_height);
    m_cursor.Skip(sizeof(uint16_t));
    m_kind.Bits = m_cursor.Read<uint16_t>();
    m_kind.Compression = isOld ? uint32_t {Plain} : m_cursor.Read<uint32_t>();

    const auto isSame = [this](const Kind& kind) { return kind.Bits == m_kind.Bits && kind.Compression == m_kind.Compression; };
    if (std::none_of(std::begin(Kinds), std::end(Kinds), isSame))
        return false;
    // The size of the pixels and the size on paper come before the count of colours.
    m_cursor.Skip(isOld ? 0 : 12);
    const uint32_t colours = isOld ? 0 : m_cursor.Read<uint32_t>();
    ReadMasks(headerSize);
    m_cursor.SeekTo(FileHeaderSize + int64_t {headerSize});
    if (m_kind.Bits <= 8)
    {
        const uint32_t maximum = 1U << m_kind.Bits;
        ReadPalette(isOld ? 3 : 4, colours == 0 ? maximum : std::min(colours, maximum));
    }
    return true;
}

void Decoder::ReadMasks(uint32_t headerSize)
{
    uint32_t masks[ChannelCount];
    std::copy_n(m_kind.Bits == 16 ? Masks16 : Masks32, ChannelCount, masks);
    if (m_kind.Compression == Masks || m_kind.Compression == AlphaMasks)
    {
        m_cursor.SeekTo(FileHeaderSize + CommonHeaderSize);
        // They are stored from red to blue.
        for (const int channel : {2, 1, 0})
            masks[channel] = m_cursor.Read<uint32_t>();
        if (headerSize >= AlphaMaskHeaderSize || m_kind.Compression == AlphaMasks)
            masks[3] = m_cursor.Read<uint32_t>();
    }
    for (size_t channel = 0; channel < ChannelCount; ++channel)
        m_channels[channel].Set(masks[channel]);
}

// A colour that the file does not have is black.
void Decoder::ReadPalette(int32_t entrySize, uint32_t count)
{
    for (uint32_t index = 0; index < std::size(m_palette); ++index)
    {
        const auto colour = index < count ? static_cast<uint32_t>(m_cursor.ReadUnsigned(entrySize)) : 0;
        for (size_t channel = 0; channel < 3; ++channel)
            m_palette[index][channel] = static_cast<uint8_t>(colour >> 8 * channel);
        m_palette[index][3] = CPixelView::Opaque;
    }
}

void Decoder::ReadRow(Cursor& row, uint8_t* pixel) const
{
    uint32_t value = 0;
    uint32_t left = 0;
    for (int64_t x = 0; x < m_width; ++x, pixel += CPixelView::PixelSize)
    {
        if (m_kind.Bits > 8)
        {
            value = static_cast<uint32_t>(row.ReadUnsigned(static_cast<int32_t>(m_kind.Bits / 8)));
            for (size_t channel = 0; channel < ChannelCount; ++channel)
                pixel[channel] = m_channels[channel].Read(value, channel == 3 ? CPixelView::Opaque : 0);
            continue;
        }
        // The first pixel has the highest bits.
        if (left == 0)
        {
            value = row.Read<uint8_t>();
            left = 8;
        }
        left -= m_kind.Bits;
        memcpy(pixel, m_palette[value >> left & ((1U << m_kind.Bits) - 1)], CPixelView::PixelSize);
    }
}

// What the runs leave out has the first colour.
void Decoder::ReadRuns(CPixels& pixels)
{
    for (int32_t y = 0; y < m_height; ++y)
        for (uint8_t *pixel = pixels.Row(y), *const end = pixel + pixels.RowSize(); pixel != end; pixel += CPixelView::PixelSize)
            memcpy(pixel, m_palette[0], CPixelView::PixelSize);
    m_cursor.SeekTo(m_pixelStart);
    while (m_y < m_height && m_bytes.Find(m_cursor.GetPosition(), 2) != nullptr && ReadRun(pixels))
        continue;
}

// Reads a run of one colour, or of two in turns, or a run of single colours, or a jump. False for the end.
bool Decoder::ReadRun(CPixels& pixels)
{
    const auto count = m_cursor.Read<uint8_t>();
    const auto code = m_cursor.Read<uint8_t>();
    const bool isHalf = m_kind.Bits == 4;
    const auto indexAt = [isHalf](uint8_t byte, int32_t place)
    { return isHalf ? static_cast<uint32_t>(place % 2 == 0 ? byte >> 4 : byte & 0xf) : byte; };
    for (int32_t place = 0; place < count; ++place)
        PutIndex(pixels, indexAt(code, place));
    if (count > 0)
        return true;
    if (code < 3)
    {
        ReadJump(code);
        return code != 1;
    }
    const int64_t start = m_cursor.GetPosition();
    uint8_t byte = 0;
    for (int32_t place = 0; place < code; ++place)
    {
        if (!isHalf || place % 2 == 0)
            byte = m_cursor.Read<uint8_t>();
        PutIndex(pixels, indexAt(byte, place));
    }
    // Such a run takes an even number of bytes.
    const int32_t bytes = isHalf ? (code + 1) / 2 : code;
    m_cursor.SeekTo(start + (bytes + 1) / 2 * 2);
    return true;
}

// To the next row, or by a distance that follows.
void Decoder::ReadJump(uint8_t code)
{
    if (code == 0)
    {
        m_x = 0;
        ++m_y;
    }
    else if (code == 2)
    {
        m_x += m_cursor.Read<uint8_t>();
        m_y += m_cursor.Read<uint8_t>();
    }
}

void Decoder::PutIndex(CPixels& pixels, uint32_t index)
{
    if (m_x >= m_width || m_y >= m_height)
        return;
    const auto row = static_cast<int32_t>(m_isTopDown ? m_y : m_height - 1 - m_y);
    memcpy(pixels.Row(row) + m_x * CPixelView::PixelSize, m_palette[index], CPixelView::PixelSize);
    ++m_x;
}
}

bool BMPFormat::IsStart(const ZVByteSpan& bytes)
{
    const uint8_t* const start = bytes.Find(0, FileHeaderSize + OldHeaderSize);
    return start != nullptr && start[0] == 'B' && start[1] == 'M';
}

bool BMPFormat::Decode(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message)
{
    return Decoder(bytes).Decode(limits, pixels, message);
}
