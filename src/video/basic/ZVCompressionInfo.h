#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// The codecs of a film, from which its property "Compression" is made. A film without streams is both: audio alone and video alone.
struct ZVCompressionInfo
{
    ZVString VideoCodec;
    int32_t VideoReserved = 0;
    ZVString AudioCodec;
    int32_t AudioReserved = 0;
    bool AudioOnly = true;
    bool VideoOnly = true;

    // The codecs in words: of audio alone the codec, which may be empty, otherwise "mkv video (video: H264, audio: AC-3)", where
    // the first word is the extension.
    ZVString GetText(const ZVString& extension) const;
};
