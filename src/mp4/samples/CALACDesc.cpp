#include "mp4/samples/CALACDesc.h"

#include "core/bytes/ZVByteCursor.h"
#include "mp4/samples/CCodecNumber.h"

namespace
{
// Places in a cookie.
constexpr int64_t BitDepthPlace = 29;
constexpr int64_t ChannelsPlace = 33;
constexpr int64_t SampleRatePlace = 44;

// What makes sense there.
constexpr int32_t MinimumBitDepth = 8;
constexpr int32_t MaximumBitDepth = 32;
constexpr int32_t MaximumChannels = 31;

void AddNumber(std::vector<uint8_t>& bytes, uint32_t number)
{
    for (int32_t shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<uint8_t>(number >> shift));
}
}

std::vector<uint8_t> CALACDesc::MakeCookie() const
{
    constexpr uint32_t ALAC = FourCC("alac");
    std::vector<uint8_t> cookie;
    for (const uint32_t number : {uint32_t {12}, FourCC("frma"), ALAC, static_cast<uint32_t>(GetSize()), ALAC,
                                  uint32_t {GetVersion()} << 24 | GetFlags()})
        AddNumber(cookie, number);
    const auto body = GetBody().View();
    cookie.insert(cookie.end(), body.begin(), body.end());
    return cookie;
}

CStreamDescription CALACDesc::Parse() const
{
    CStreamDescription description;
    description.ObjectType = CCodecNumber::ALAC;
    description.RawConfig = MakeCookie();
    ZVByteCursor<std::endian::big, ZVZeroPastEnd> cursor(
        ZVByteSpan(description.RawConfig.data(), static_cast<int64_t>(description.RawConfig.size())));
    cursor.SeekTo(BitDepthPlace);
    if (const int32_t bitDepth = cursor.Read<uint8_t>(); bitDepth >= MinimumBitDepth && bitDepth <= MaximumBitDepth)
        description.SampleSize = bitDepth;
    cursor.SeekTo(ChannelsPlace);
    if (const int32_t channels = cursor.Read<uint8_t>(); channels <= MaximumChannels)
        description.Channels = channels;
    cursor.SeekTo(SampleRatePlace);
    description.SampleRate = cursor.Read<int32_t>();
    return description;
}
