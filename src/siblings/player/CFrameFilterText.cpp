#include "siblings/player/CFrameFilterText.h"

#include <cstdio>

namespace
{
// Each field is completed from its neighbours; frames that are whole pass.
constexpr char Deinterlace[] = "yadif=mode=send_frame:parity=auto:deint=interlaced";
constexpr char Mirror[] = "hflip";

// Light from 0 to the white of the screen in linear numbers, the colours of HD, a curve that leaves what is darker than three fifths of
// the white as it is and bends what is brighter, and back to the numbers of a screen. Of the known chains this one comes nearest to
// the SDR version of a chart: 3.7 of 255 on average, where the usual one (100 candelas and the curve "hable") is off by 21.
constexpr char ToneMap[] = "zscale=t=linear:npl=%d,format=gbrpf32le,zscale=p=bt709,tonemap=mobius:param=3/5:desat=0:peak=%d/%d,"
                           "zscale=t=bt709:m=gbr:r=full,format=gbrp";

// The tone mapping takes whole blocks of a colour that several pixels share.
constexpr char ColourForEachPixel[] = "format=yuv444p16";

// The conversion below takes all grays for those of the full range.
constexpr char FullRange[] = "zscale=rin=limited:r=full,format=gray|gray9|gray10|gray12|gray16";

struct MatrixName
{
    AVColorSpace Matrix;
    const char* Name;
};

// The matrices that the filter knows, by its names.
constexpr MatrixName MatrixNames[] = {
    {AVCOL_SPC_BT709,      "bt709"    },
    {AVCOL_SPC_FCC,        "fcc"      },
    {AVCOL_SPC_BT470BG,    "bt470"    },
    {AVCOL_SPC_SMPTE170M,  "smpte170m"},
    {AVCOL_SPC_SMPTE240M,  "smpte240m"},
    {AVCOL_SPC_BT2020_NCL, "bt2020"   },
    {AVCOL_SPC_BT2020_CL,  "bt2020"   },
};

const char* GetMatrixName(AVColorSpace matrix)
{
    for (const MatrixName& name : MatrixNames)
        if (name.Matrix == matrix)
            return name.Name;
    return MatrixNames[0].Name;
}

std::string Format(const char* format, auto... values)
{
    char text[256];
    snprintf(text, sizeof text, format, values...);
    return text;
}

std::string GetScale(const CFrameLook& look)
{
    std::string text = "scale=";
    if (look.ScreenWidth != look.Width || look.ScreenHeight != look.Height)
        text += Format("w=%d:h=%d:", look.ScreenWidth, look.ScreenHeight);
    // Tone mapping has made it RGB.
    if (look.IsRGB || look.IsHDR())
        return text + "flags=bicubic";
    return text + Format("in_color_matrix=%s:in_range=%s", GetMatrixName(look.Matrix),
                         look.Range == AVCOL_RANGE_JPEG ? "full" : "limited");
}
}

std::string CFrameFilterText::Get(const CFrameLook& look)
{
    std::string text;
    if (look.IsInterlaced)
        text += std::string(Deinterlace) + ",";
    if (look.IsMirrored)
        text += std::string(Mirror) + ",";
    if (look.IsHDR() && !look.IsRGB && (look.Width % 2 != 0 || look.Height % 2 != 0))
        text += std::string(ColourForEachPixel) + ",";
    if (look.IsGray && look.Range == AVCOL_RANGE_MPEG && !look.IsHDR())
        text += std::string(FullRange) + ",";
    if (look.IsHDR())
        text += Format(ToneMap, WhiteNits, look.PeakNits, WhiteNits) + ",";
    return text + GetScale(look);
}
