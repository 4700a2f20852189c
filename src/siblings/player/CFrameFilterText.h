#pragma once

#include "video/codec/ZVCodecHeaders.h"

#include <cstdint>
#include <string>

// What decides how a frame becomes a picture for the screen.
struct CFrameLook
{
    int Width = 0;
    int Height = 0;
    int Format = AV_PIX_FMT_NONE;
    // The size with square pixels.
    int ScreenWidth = 0;
    int ScreenHeight = 0;
    bool IsRGB = false;
    bool IsGray = false;
    AVColorSpace Matrix = AVCOL_SPC_UNSPECIFIED;
    AVColorRange Range = AVCOL_RANGE_UNSPECIFIED;
    AVColorPrimaries Primaries = AVCOL_PRI_UNSPECIFIED;
    AVColorTransferCharacteristic Transfer = AVCOL_TRC_UNSPECIFIED;
    // The brightest light in the film, in candelas a square metre; only of high dynamic range.
    int32_t PeakNits = 0;
    bool IsInterlaced = false;
    bool IsMirrored = false;

    // High dynamic range is what the transfer says, whatever else a film claims.
    static bool IsHDR(AVColorTransferCharacteristic transfer)
    {
        return transfer == AVCOL_TRC_SMPTE2084 || transfer == AVCOL_TRC_ARIB_STD_B67;
    }
    bool IsHDR() const { return IsHDR(Transfer); }
    bool operator==(const CFrameLook&) const = default;
};

namespace CFrameFilterText
{
// The light that zscale takes for white, and that an SDR screen shows as its brightest: the reference white of ITU-R BT.2408.
inline constexpr int32_t WhiteNits = 203;

// Filters that change nothing: the conversion to the format of the pictures is then all that is done.
inline constexpr char PlainText[] = "null";

// The text of the filters that make such frames into what the screen shows: whole frames instead of fields, mirrored if need be,
// high dynamic range brought into the range of ordinary screens, RGB, square pixels. Numbers are integers and fractions, since the
// filters read decimals by the locale.
std::string Get(const CFrameLook& look);
}
