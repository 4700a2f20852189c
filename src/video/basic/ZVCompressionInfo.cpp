#include "video/basic/ZVCompressionInfo.h"

namespace
{
ZVString OrUnknown(const ZVString& codec)
{
    return codec.IsEmpty() ? ZVString(L"unknown codec") : codec;
}
}

ZVString ZVCompressionInfo::GetText(const ZVString& extension) const
{
    if (AudioOnly)
        return AudioCodec;
    if (VideoOnly)
        return ZVFormat(L"%s video (video: %s)", extension, OrUnknown(VideoCodec));
    return ZVFormat(L"%s video (video: %s, audio: %s)", extension, OrUnknown(VideoCodec), OrUnknown(AudioCodec));
}
