#include "mp4/samples/CESDSAtom.h"

#include "core/bytes/ZVByteCursor.h"

namespace
{
// Tags of descriptors (ISO/IEC 14496-1, 7.2.2.1).
constexpr uint8_t StreamTag = 3;
constexpr uint8_t DecoderConfigTag = 4;
constexpr uint8_t DecoderSpecificTag = 5;

// Flags of a stream descriptor: what stands behind them.
constexpr uint8_t DependsOnStream = 0x80;
constexpr uint8_t HasURL = 0x40;
constexpr uint8_t HasClockStream = 0x20;

constexpr int64_t StreamIDSize = 2;

class Descriptor
{
public:
    explicit Descriptor(const CAtomBytes& bytes)
        : m_cursor(ZVByteSpan(bytes.View().data(), static_cast<int64_t>(bytes.View().size())))
    {
    }

    // A number, or 0 if it is not there whole; then nothing that follows is there either.
    uint32_t Read(int32_t width)
    {
        const int64_t end = m_cursor.GetPosition() + width;
        const auto value = static_cast<uint32_t>(m_cursor.ReadUnsigned(width));
        m_cursor.SeekTo(end);
        return value;
    }

    void Skip(int64_t count) { m_cursor.Skip(count); }

    // Seven bits a byte, of which all but the last have the top bit; four bytes at most.
    int64_t ReadLength()
    {
        int64_t length = 0;
        for (int32_t count = 0; count < 4; ++count)
        {
            const uint32_t byte = Read(1);
            length = length << 7 | (byte & 0x7f);
            if ((byte & 0x80) == 0)
                break;
        }
        return length;
    }

    std::string_view ReadBytes(int64_t count) { return m_cursor.ReadBytes(count); }

private:
    ZVByteCursor<std::endian::big, ZVZeroPastEnd> m_cursor;
};

// Up to the decoder's own descriptor. The lengths are not needed: what matters stands at the front of each descriptor.
bool SkipToDecoderConfig(Descriptor& descriptor)
{
    if (descriptor.Read(1) != StreamTag)
        return false;
    descriptor.ReadLength();
    descriptor.Skip(StreamIDSize);
    const uint32_t flags = descriptor.Read(1);
    if ((flags & DependsOnStream) != 0)
        descriptor.Skip(StreamIDSize);
    if ((flags & HasURL) != 0)
        descriptor.Skip(descriptor.Read(1));
    if ((flags & HasClockStream) != 0)
        descriptor.Skip(StreamIDSize);
    return descriptor.Read(1) == DecoderConfigTag;
}
}

CStreamDescription CESDSAtom::Parse() const
{
    CStreamDescription description;
    Descriptor descriptor(GetBody());
    if (!SkipToDecoderConfig(descriptor))
        return description;
    descriptor.ReadLength();
    description.ObjectType = static_cast<int32_t>(descriptor.Read(1));
    descriptor.Skip(4);  // the type of the stream and the size of its buffer
    description.MaximumBitRate = descriptor.Read(4);
    description.AverageBitRate = descriptor.Read(4);
    if (descriptor.Read(1) == DecoderSpecificTag)
    {
        const std::string_view config = descriptor.ReadBytes(descriptor.ReadLength());
        description.RawConfig.assign(config.begin(), config.end());
    }
    return description;
}
