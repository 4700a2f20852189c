#pragma once

#include "core/string/ZVString.h"
#include "video/codec/CZVAVLibraries.h"

// How the product calls a stream's codec: "H264 High L4.1", "HEVC Main 10 L5.1", "AC-3", "TrueHD Atmos". "Unknown" for a codec
// without a name in the libraries. The libraries must be loaded.
ZVString CodecName(const CZVAVLibraries& codec, const AVCodecParameters& parameters);

// The name alone, without profile and level: "H264", "HEVC", "E-AC3". Empty for a codec without a name in the libraries.
ZVString PlainCodecName(const CZVAVLibraries& codec, AVCodecID id);
