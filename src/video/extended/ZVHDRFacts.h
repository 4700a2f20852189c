#pragma once

#include "video/codec/CZVAVLibraries.h"

#include <cstdint>

class ZVPropertyMap;

// What the side data of streams and frames says of high dynamic range, written into the result. The libraries must be loaded.
namespace ZVHDRFacts
{
inline constexpr wchar_t Format[] = L"HDR Format";
inline constexpr wchar_t ColorSpace[] = L"Color Space";

// "HDR10" or "HLG" by the transfer function of the stream; others write nothing.
void ApplyTransfer(ZVPropertyMap& properties, AVColorTransferCharacteristic transfer);

// Mastering display (SMPTE ST 2086) and content light level (CTA-861.3), in nits. Either may be null.
void ApplyHdrMetadata(ZVPropertyMap& properties, const CZVAVLibraries& codec, const AVMasteringDisplayMetadata* mastering,
                      const AVContentLightMetadata* light);

// A frame has dynamic metadata (SMPTE ST 2094-40): "HDR10+", unless a better format is known.
void ApplyDynamic(ZVPropertyMap& properties);

// Dolby Vision from the record of the container.
void ApplyDolbyVision(ZVPropertyMap& properties, const AVDOVIDecoderConfigurationRecord& config);
// Dolby Vision from the metadata of a frame. A format from the record stays; the peak luminance is set in any case.
void ApplyDolbyVision(ZVPropertyMap& properties, const AVDOVIMetadata& metadata);
}
