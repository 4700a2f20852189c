#include "mp4/samples/CCodecNumber.h"

#include "mp4/model/FourCC.h"

namespace
{
struct EntryCodec
{
    uint32_t Type;
    int32_t Number;
};

constexpr EntryCodec EntryCodecs[] = {
    {FourCC("mp4v"), CCodecNumber::MPEG4Visual},
    {FourCC("jpeg"), CCodecNumber::JPEG       },
    {FourCC("mp4a"), CCodecNumber::MPEG4Audio },
    {FourCC("avc1"), CCodecNumber::AVC1       },
    {FourCC("rle "), CCodecNumber::Animation  },
    {FourCC("SVQ3"), CCodecNumber::SVQ3       },
    {FourCC("twos"), CCodecNumber::Twos       },
    {FourCC("sowt"), CCodecNumber::Sowt       },
    {FourCC("SVQ1"), CCodecNumber::SVQ1       },
    {FourCC("raw "), CCodecNumber::Raw        },
    {FourCC("ulaw"), CCodecNumber::Ulaw       },
    {FourCC("ac-3"), CCodecNumber::AC3        },
    {FourCC("ec-3"), CCodecNumber::EAC3       },
};
}

int32_t CCodecNumber::FromEntryType(uint32_t type)
{
    for (const EntryCodec& codec : EntryCodecs)
        if (codec.Type == type)
            return codec.Number;
    return Unknown;
}
